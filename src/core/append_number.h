#pragma once

#include <cstddef>
#include <string>

// Numbers put behind a text by whole numbers alone, for tables and drawings of millions of them. The same
// characters as those of core/numbers.h.
namespace anomalis {

inline constexpr int most_appended_decimals = 3;

/// Appends `format_number` by the pattern "0", "0.0", "0.00" or "0.000"; `decimals` from 0 to 3.
void append_fixed(std::string& text, float value, int decimals);
void append_fixed(std::string& text, double value, int decimals);

/// The same where `at` points; returns the place behind it. There must be room for `longest_fixed`
/// characters, and more of it than the number takes may be written to.
inline constexpr std::size_t longest_fixed = 320;
char* write_fixed(char* at, float value, int decimals);
char* write_fixed(char* at, double value, int decimals);

/// Appends `number_to_text`, the default form with a blank or a minus sign in front.
void append_default(std::string& text, float value);
void append_default(std::string& text, double value);

/// Appends `round_trip_text`, the fewest digits that read back as the very same number.
void append_round_trip(std::string& text, float value);
void append_round_trip(std::string& text, double value);

}  // namespace anomalis
