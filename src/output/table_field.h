#pragma once

#include <string>
#include <string_view>

// Private to this room.
namespace anomalis::output {

/// What stands in the tables with a fixed layout where there is no number: a parameter of another channel, or
/// a sum beyond what single precision holds. Readers of data files drop a record with it.
inline constexpr std::string_view no_number = "*";

/// Appends a number with so many decimals; `no_number` for one that is not finite.
void append_field(std::string& text, float value, int decimals);
void append_field(std::string& text, double value, int decimals);

std::string fixed_field(float value, int decimals);
std::string fixed_field(double value, int decimals);

}  // namespace anomalis::output
