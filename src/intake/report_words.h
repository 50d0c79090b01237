#pragma once

#include <string>
#include <string_view>

// How reports of loads write their numbers.
namespace anomalis::intake {

/// What reads files that the columns of a definition cannot.
inline constexpr const char* import_hint = "Import survey...";

/// So many digits tell enough: "7312", "25.4", "0.072".
std::string short_number(double value);
std::string metres(double value);
/// In km from 1000 m on.
std::string length_text(double length);
/// "1 row", "2 rows".
std::string counted(long count, const char* one, const char* many);
/// A reading of a channel with its unit.
std::string value_text(double value, std::string_view channel);

}  // namespace anomalis::intake
