#pragma once

#include <string>
#include <vector>

namespace anomalis::diagnostics {

/// The settings as their file holds them, both locations, one "section\key = value" a line. A file that is
/// missing or cannot be understood gives a line that says so.
std::vector<std::string> settings_lines(const std::string& settings_path);

}  // namespace anomalis::diagnostics
