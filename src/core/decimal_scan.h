#pragma once

#include <cstddef>
#include <cstdint>

#include "core/byte_word.h"

namespace anomalis {

/// Powers of ten that a double holds exactly, as far as `scan_decimal` needs them.
inline constexpr double exact_powers_of_ten[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
inline constexpr std::ptrdiff_t most_exact_digits = 15;

inline constexpr std::uint64_t powers_of_ten[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};

inline bool is_decimal_digit(char c) {
    return static_cast<unsigned char>(c - '0') <= 9;
}

/// Appends the run of digits at `at` to `digits`. Returns the place behind it.
inline const char* scan_digits(const char* at, const char* end, std::uint64_t& digits) {
    if (end - at >= static_cast<std::ptrdiff_t>(word_bytes)) {
        // Bytes 0 to 9 are digits; in any other the highest bit is set in the word or when 118 is added. The
        // first mark is right: only bytes behind it can have taken a borrow or a carry.
        ByteWord word = load_word(at) - every_byte('0');
        const ByteWord marks = (word | (word + every_byte(118))) & every_byte(0x80);
        if (marks != 0) {
            const std::size_t count = first_marked_byte(marks);
            if (count == 0) return at;
            // The digits move to the end of eight, zeros before them; then pairs, fours and the eight join.
            word <<= 8 * (word_bytes - count);
            word = word * 10 + (word >> 8);
            constexpr ByteWord pairs = 0x000000FF000000FFULL;
            const ByteWord outer = (word & pairs) * (100 + (1000000ULL << 32));
            const ByteWord inner = ((word >> 16) & pairs) * (1 + (10000ULL << 32));
            digits = digits * powers_of_ten[count] + ((outer + inner) >> 32);
            return at + count;
        }
    }
    for (; at != end && is_decimal_digit(*at); ++at) digits = digits * 10 + static_cast<unsigned>(*at - '0');
    return at;
}

/// The number at `at`, as nearly all numbers of a survey are: a sign and up to 15 digits with one point.
/// Digits and power of ten are then exact in a double, so that one division rounds rightly (Clinger 1990).
/// Returns the place behind it, or null when there is no such number; the caller looks at what follows.
inline const char* scan_decimal(const char* at, const char* end, double& value) {
    const bool negative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) ++at;
    std::uint64_t digits = 0;
    const char* const first = at;
    at = scan_digits(at, end, digits);
    std::ptrdiff_t count = at - first;
    std::ptrdiff_t decimals = 0;
    if (at != end && *at == '.') {
        const char* const point = ++at;
        at = scan_digits(at, end, digits);
        decimals = at - point;
        count += decimals;
    }
    if (count == 0 || count > most_exact_digits) return nullptr;
    const double size =
        static_cast<double>(static_cast<std::int64_t>(digits)) / exact_powers_of_ten[decimals];
    value = negative ? -size : size;
    return at;
}

}  // namespace anomalis
