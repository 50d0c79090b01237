#pragma once

#include <string>

// Names in plans. Private to this room.
namespace anomalis::survey {

/// The same text for names that mean one line: "5690" and "5690.0", "l10a" and "L10A".
std::string meant_name(const std::string& name);

/// The folder of a line or workspace of that name; never "".
std::string folder_name_of_line(const std::string& name);

}  // namespace anomalis::survey
