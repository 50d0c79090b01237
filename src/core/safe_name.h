#pragma once

#include <string>
#include <string_view>

namespace anomalis {

/// What can stand in the name of a file on any system: letters, digits, "-", "_", "." and "+"; all else
/// becomes "_", and so does a dot at the start. At most 100 bytes, so that with numbers and endings it stays
/// below what file systems take (255).
std::string safe_name(std::string_view name);

}  // namespace anomalis
