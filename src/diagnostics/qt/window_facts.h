#pragma once

#include <string>
#include <vector>

namespace anomalis::diagnostics {

/// The window system: the library at work and the one it was built with, its platform, font, screens.
std::vector<std::string> window_component_lines();

}  // namespace anomalis::diagnostics
