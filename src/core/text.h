#pragma once

#include <string>
#include <string_view>

namespace anomalis {

/// Without blanks (not tabs) at both ends.
std::string_view trim_blanks(std::string_view text);

/// Takes the first token off `line` and leaves the rest. Blanks and tabs skip; a comma, semicolon or
/// apostrophe ends a token and is dropped; a double-quoted token may hold any of them. An empty field
/// gives an empty token. The token and the rest point into the text that `line` pointed to.
std::string_view next_token(std::string_view& line);

/// Takes the first token off `line` as `next_token` does and reads it as `parse_number` does, in one scan.
/// False when the token is not numeric; it is taken off all the same.
bool next_number(std::string_view& line, double& value);

/// False for "NO" and "FALSE" in any case and for "0", otherwise true.
bool text_to_flag(std::string_view text);
/// "Yes" or "No".
std::string flag_to_text(bool flag);
/// The text before its first NUL, trimmed of blanks.
std::string trim_at_nul(std::string_view text);
/// The text with each line break (CR, LF or CR LF) turned into a blank, for places that hold one line.
std::string single_line(std::string_view text);
/// ASCII letters compared without regard to case.
bool equal_ignoring_case(std::string_view a, std::string_view b);

}  // namespace anomalis
