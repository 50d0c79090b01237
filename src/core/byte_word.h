#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

// Eight characters at once in one 64-bit word, the first in its lowest byte on every processor.
namespace anomalis {

using ByteWord = std::uint64_t;
inline constexpr std::size_t word_bytes = sizeof(ByteWord);

inline constexpr ByteWord every_byte(unsigned char value) {
    return 0x0101010101010101ULL * value;
}

/// REQUIRES: eight characters can be read at `at`.
inline ByteWord load_word(const char* at) {
    ByteWord word = 0;
    std::memcpy(&word, at, word_bytes);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
}

/// The place of the first byte whose highest bit is set. REQUIRES: there is one.
inline std::size_t first_marked_byte(ByteWord marks) {
    return static_cast<std::size_t>(std::countr_zero(marks & every_byte(0x80))) / 8;
}

}  // namespace anomalis
