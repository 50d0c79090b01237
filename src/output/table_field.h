#pragma once

#include <string>
#include <string_view>

// Private to this room.
namespace anomalis::output {

/// What stands in the tables with a fixed layout where there is no number: a parameter of another channel, or
/// a sum beyond what single precision holds. Readers of data files drop a record with it.
inline constexpr std::string_view no_number = "*";

/// Writes a number with so many decimals; `no_number` for one that is not finite. Returns the place behind
/// it; `at` has room for `longest_fixed` characters.
char* write_field(char* at, float value, int decimals);
char* write_field(char* at, double value, int decimals);

/// The same as a text.
std::string fixed_field(float value, int decimals);
std::string fixed_field(double value, int decimals);

}  // namespace anomalis::output
