#pragma once

// What the steps of a filter cost, in units of core/pacer.h. Private to this room.
namespace anomalis::filter {

inline constexpr double row_units = 1;     ///< a value that is copied, widened, tested or shifted
inline constexpr double tap_units = 0.5;   ///< a tap at a station
inline constexpr double window_units = 4;  ///< a value under up to four terms of a kernel

/// As much as is done without a word with the pacer.
inline constexpr double piece_units = 4e6;

}  // namespace anomalis::filter
