#pragma once

#include <string>

namespace anomalis {

/// Whether what is written to one path would be read from the other: one file on the disk, whatever its names
/// (links of both kinds, "..", another case where the file system does not care). A file that is not there
/// yet is known by its folder and its name. What flows through (terminals, pipes, the null device) is no
/// file.
bool same_file(const std::string& a, const std::string& b);

}  // namespace anomalis
