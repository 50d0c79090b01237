#pragma once

#include <string>
#include <string_view>

// Private to this room.
namespace anomalis::output {

/// What stands in the tables with a fixed layout where there is no number: a parameter of another channel, or
/// a sum beyond what single precision holds. Readers of data files drop a record with it.
inline constexpr std::string_view no_number = "*";

/// A number by a pattern such as "0.00"; `no_number` for one that is not finite.
std::string fixed_field(float value, std::string_view pattern);
std::string fixed_field(double value, std::string_view pattern);

}  // namespace anomalis::output
