#pragma once

#include <string>

namespace anomalis {

/// Where the program that runs lies, with a separator at the end; "" where the system does not tell.
std::string executable_folder();

}  // namespace anomalis
