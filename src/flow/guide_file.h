#pragma once

#include <string>
#include <vector>

namespace anomalis::flow {

/// Where the guide of the workbench may stand: below "share/anomalis" beside the program's "bin" where it is
/// installed, beside the program or above it where it is built.
std::vector<std::string> guide_file_places(const std::string& exe_folder);

/// The first of these places that holds the guide; "" when none does.
std::string find_guide_file(const std::string& exe_folder);

}  // namespace anomalis::flow
