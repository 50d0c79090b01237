#pragma once

#include <string_view>

namespace anomalis {

/// "0.1.0": major, minor and revision. The top of the build description holds it; package and reports follow.
std::string_view application_version();

}  // namespace anomalis
