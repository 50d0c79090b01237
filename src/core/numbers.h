#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Numbers as text. Always a point, whatever the locale; the C locale is never asked.
namespace anomalis {

/// The default text form: a blank or a minus sign, then the digits. A single has up to 7 significant
/// digits, a double up to 15; fixed for 0 and 1e-4 <= |v| < 1e7 (single) or 1e15 (double), else "d.dddE+dd".
std::string number_to_text(float value);
std::string number_to_text(double value);
std::string number_to_text(std::int32_t value);

/// The same without the blank in front.
std::string shortest_text(float value);
std::string shortest_text(double value);
std::string shortest_text(std::int32_t value);

/// The fewest digits that read back as the very same number, in the C++ form ("1e+22"); for tables that other
/// programs reckon with.
std::string round_trip_text(float value);
std::string round_trip_text(double value);

/// Fixed digits by a pattern such as "0", "0.00" or "0.##" (an optional digit for each #).
/// Halves go away from zero on the decimal value (a single by its 7 digits, a double by its 15); no "-0.00".
std::string format_number(float value, std::string_view pattern);
std::string format_number(double value, std::string_view pattern);
std::string format_number(std::int32_t value, std::string_view pattern);

/// Appends `format_number(value, "0.00")`, fast enough for drawings of millions of corners.
void append_hundredths(std::string& text, double value);

/// True for: blanks, a sign, digits with at most one point, an exponent, blanks; finite in a double.
bool is_numeric(std::string_view text);

/// The same test with the number, found in one scan. A number too small for a double is 0. A text that is not
/// numeric gives false, and `value` is then of no use.
bool parse_number(std::string_view text, double& value);

/// The same for a number that is kept as a single; nothing when the text is not numeric or does not fit.
std::optional<float> parse_single(std::string_view text);

/// The longest leading number, 0 if there is none. Blanks before and inside it are skipped. Raises Fault
/// overflow when the number is too large for a double.
double prefix_number(std::string_view text);

/// To the nearest integer, ties to the even one. Out of the range of 32 bits it raises Fault overflow.
std::int32_t round_to_even(double value);

/// A value narrowed to single precision; raises Fault overflow when it is finite and does not fit.
float to_single(double value);

}  // namespace anomalis
