#pragma once

#include <cstdint>
#include <limits>

// Counts whose factors a person typed: what is beyond 64 bits stays at the largest number.
namespace anomalis {

inline constexpr std::uint64_t largest_count = std::numeric_limits<std::uint64_t>::max();

constexpr std::uint64_t saturating_sum(std::uint64_t a, std::uint64_t b) {
    return a > largest_count - b ? largest_count : a + b;
}

constexpr std::uint64_t saturating_product(std::uint64_t a, std::uint64_t b) {
    return b != 0 && a > largest_count / b ? largest_count : a * b;
}

/// The whole part of a number; what is none, and what is below 0, is 0.
constexpr std::uint64_t saturating_count(double value) {
    if (!(value > 0)) return 0;
    return value >= 18446744073709551615.0 ? largest_count : static_cast<std::uint64_t>(value);
}

}  // namespace anomalis
