#pragma once

#include <string>
#include <string_view>

// Names and paths come from files: whatever stands in them must not steer a terminal, break a line that it
// stands in or turn round the order of what is read.
namespace anomalis {

/// The text as it may be shown: control characters (C0, DEL, C1), line and paragraph separators and the marks
/// that change the direction of writing as \u{HEX}, line breaks and tabs as \n, \r and \t, bytes that are no
/// UTF-8 as \xHH. All else, a backslash too, stands as it is.
std::string shown_text(std::string_view text);

/// The same for a text of several lines, whose line breaks (LF, CR LF) and tabs stay.
std::string shown_lines(std::string_view text);

/// Whether a character is one of those that are never shown as they are.
bool is_hidden_control(char32_t code);

}  // namespace anomalis
