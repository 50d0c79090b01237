#pragma once

#include <string_view>

// What tells a workspace file from any other. Private to this room.
namespace anomalis::workspace_file {

/// So much of the start of a file holds the lines that are looked at.
inline constexpr std::size_t shape_bytes = 65536;

/// True when the lines 2 to 11 of a text have the numbers that those of a workspace file have, as far as the
/// text has them: the first four of them all, or seven of ten, so that damage here and there is told by its
/// line. A table of observed data has as many columns in all lines and is none.
bool has_workspace_shape(std::string_view text);

}  // namespace anomalis::workspace_file
