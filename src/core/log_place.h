#pragma once

#include <string>

namespace anomalis {

/// Where a session log that is turned on now is written: beside the work, in the current folder. An old file
/// there is deleted.
std::string log_path_here();

}  // namespace anomalis
