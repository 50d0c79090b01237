#pragma once

#include <string>
#include <string_view>

#include "core/settings.h"

namespace anomalis {

/// The text of a settings file: "[location root/section]" lines, below each its "key=value" lines. Control
/// characters, backslashes and what would be mistaken for structure stand as "\xHH", so any text can be kept.
std::string settings_text(const SettingsTable& values);

/// Reads such a text. Blank lines and lines that start with "#" are passed over. Raises Fault with the number
/// of the first line that is none of these.
SettingsTable parse_settings(std::string_view text);

}  // namespace anomalis
