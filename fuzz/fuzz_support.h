#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace anomalis {

/// What must hold for every input: where it does not, the fuzzer has found something.
inline void require(bool holds) {
    if (!holds) std::abort();
}

/// Takes an input apart; zeros come when it is used up.
class ByteSource {
  public:
    ByteSource(const std::uint8_t* data, std::size_t size)
        : rest_(reinterpret_cast<const char*>(data), size) {}

    bool empty() const { return rest_.empty(); }
    std::uint8_t byte() { return static_cast<std::uint8_t>(text(1).empty() ? 0 : taken_.front()); }
    bool flag() { return byte() % 2 == 1; }
    /// At most so many bytes.
    std::string_view text(std::size_t size) {
        taken_ = rest_.substr(0, std::min(size, rest_.size()));
        rest_.remove_prefix(taken_.size());
        return taken_;
    }
    std::string_view rest() { return text(rest_.size()); }
    std::int32_t integer() {
        std::uint32_t bits = 0;
        for (int i = 0; i < 4; ++i) bits = bits << 8 | byte();
        return std::bit_cast<std::int32_t>(bits);
    }
    /// As people mistype or files hold it: a common value, an extreme one, a round one, or any bits.
    float number() {
        constexpr float largest = std::numeric_limits<float>::max();
        constexpr std::array<float, 24> known{0,
                                              -0.0F,
                                              1,
                                              -1,
                                              30,
                                              45,
                                              89.99999F,
                                              90,
                                              180,
                                              360,
                                              1e-45F,
                                              1e-7F,
                                              0.001F,
                                              1e6F,
                                              1e30F,
                                              -1e30F,
                                              1.8e19F,
                                              1e38F,
                                              largest,
                                              -largest,
                                              -99999,
                                              std::numeric_limits<float>::infinity(),
                                              -std::numeric_limits<float>::infinity(),
                                              std::numeric_limits<float>::quiet_NaN()};
        const std::uint8_t choice = byte();
        if (choice < 128) return known[choice % known.size()];
        if (choice < 240) return static_cast<float>(integer() >> 14) / 8;
        return std::bit_cast<float>(integer());
    }

  private:
    std::string_view rest_;
    std::string_view taken_;
};

}  // namespace anomalis
