#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <span>

namespace anomalis {

/// True for a positive 0, as memory is that nobody has written yet.
inline bool is_clear(float value) {
    return std::bit_cast<std::uint32_t>(value) == 0;
}

inline bool all_clear(std::span<const float> values) {
    return std::ranges::all_of(values, is_clear);
}

/// Makes all values 0. What is 0 is not written: a row of a long line that nobody uses takes no memory
/// (core/zero_allocator.h).
inline void make_zero(std::span<float> values) {
    std::fill(std::ranges::find_if_not(values, is_clear), values.end(), 0.0F);
}

}  // namespace anomalis
