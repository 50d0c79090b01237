#include "edit/body_palette.h"

#include <algorithm>
#include <array>
#include <vector>

#include "core/workspace.h"

namespace anomalis::edit {

namespace {

/// Neighbours in this order differ in lightness too.
constexpr std::array<std::int32_t, 6> palette{
    0xB27200,  // blue
    0x009FE6,  // orange
    0x739E00,  // bluish green
    0x005ED5,  // vermilion
    0xE9B456,  // sky blue
    0x42E4F0   // yellow
};

int squared_distance(std::int32_t left, std::int32_t right) {
    int sum = 0;
    for (const int shift : {0, 8, 16}) {
        const int step = (left >> shift & 0xFF) - (right >> shift & 0xFF);
        sum += step * step;
    }
    return sum;
}

std::size_t nearest(std::int32_t colour) {
    const auto found = std::ranges::min_element(
        palette, {}, [&](std::int32_t candidate) { return squared_distance(candidate, colour); });
    return static_cast<std::size_t>(found - palette.begin());
}

}  // namespace

std::span<const std::int32_t> body_palette() {
    return palette;
}

std::int32_t next_body_colour(std::span<const std::int32_t> used) {
    std::array<int, palette.size()> times{};
    for (const std::int32_t colour : used) ++times.at(nearest(colour));
    return palette.at(static_cast<std::size_t>(std::ranges::min_element(times) - times.begin()));
}

std::int32_t next_body_colour(const Workspace& workspace) {
    std::vector<std::int32_t> used;
    for (int number = 1; number <= workspace.body_count; ++number)
        used.push_back(workspace.body(number).colour);
    return next_body_colour(used);
}

}  // namespace anomalis::edit
