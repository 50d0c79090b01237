#pragma once

#include <optional>
#include <string>

namespace anomalis::house {

/// The room of a source path below src/ ("core/array.h", "chart/qt/widget.cpp"): its folder, a `qt` folder
/// being a room of its own.
std::string room_of(const std::string& path);

/// 0 for core up to 5 for app; no value for chart, which stands beside, and for a folder that is no room.
std::optional<int> floor_of(const std::string& room);

/// What is wrong with a file below src/ including another one there; "" when nothing is.
std::string own_include_error(const std::string& from, const std::string& included);

/// What is wrong with a file below src/ including a header of a library; "" when nothing is.
std::string foreign_include_error(const std::string& from, const std::string& included);

struct Include {
    std::string path;
    bool own;  ///< in quotes
};
/// No value for a line that includes nothing.
std::optional<Include> parse_include(const std::string& line);

}  // namespace anomalis::house
