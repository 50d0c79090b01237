#pragma once

#include <string_view>

namespace anomalis {

/// Major, minor and revision, with points between: what the top of the build description says.
std::string_view application_version();

}  // namespace anomalis
