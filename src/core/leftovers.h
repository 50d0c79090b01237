#pragma once

#include <string>
#include <string_view>

namespace anomalis {

/// The name, but for its last six letters "XXXXXX", under which this process writes beside a file. It is
/// short, since the file's own name may be as long as names can be, hidden, and tells who writes.
std::string temporary_name(const std::string& folder);

/// True for a name that `temporary_name` made in this or another process, in whatever folder.
bool is_temporary_name(std::string_view name);

/// Removes from a folder the temporary files of this user whose writer has ended. Nothing else is touched,
/// and a folder of very many files is searched in part.
void remove_leftovers(const std::string& folder);

}  // namespace anomalis
