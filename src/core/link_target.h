#pragma once

#include <string>

namespace anomalis {

/// The file that a path stands for when links are followed, also a link to a file that is not there yet: what
/// a write goes to. The path itself where that cannot be found out.
std::string behind_links(std::string path);

}  // namespace anomalis
