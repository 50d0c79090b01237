#pragma once

#include <string>
#include <vector>

namespace anomalis::diagnostics {

/// A day number (days since 30 December 1899, local time) as "2026-11-20 22:10".
std::string day_text(double date);

/// The shared libraries that this process holds at the moment, by path.
std::vector<std::string> loaded_libraries();

/// The version that a library carries in its name once links are followed ("6.4.2" of "libQt6Core.so.6.4.2"),
/// else "N/A".
std::string library_version(const std::string& path);

/// "Full Path Name: ... Version: ... Size:  ... Date: ..." in one line, or "... was not found".
std::string file_line(const std::string& path);

}  // namespace anomalis::diagnostics
