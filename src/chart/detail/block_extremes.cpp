#include "chart/detail/block_extremes.h"

#include <algorithm>

#include "chart/detail/axis_transform.h"

namespace anomalis::chart {

namespace {

/// The lowest or the highest so far: its value, and where it is or from where it is to be looked for.
struct Best {
    double value;
    std::size_t from;
};

std::size_t place_of(std::span<const double> values, const Best& best) {
    std::size_t at = best.from;
    while (values[at] != best.value) ++at;
    return at;
}

}  // namespace

void BlockExtremes::build(std::span<const double> values) {
    blocks_.clear();
    for (std::size_t first = 0; first + block <= values.size(); first += block) {
        double low = values[first];
        double high = values[first];
        for (std::size_t i = 1; i < block; ++i) {
            low = std::min(low, values[first + i]);
            high = std::max(high, values[first + i]);
        }
        blocks_.push_back(is_null(low) ? Range{1.0, 0.0} : Range{low, high});
    }
}

BlockExtremes::Stretch BlockExtremes::find(std::span<const double> values, std::size_t first,
                                           std::size_t end) const {
    Best low{values[first], first};
    Best high = low;
    std::size_t i = first + 1;
    while (i < end) {
        const std::size_t number = i / block;
        if (i % block == 0 && i + block <= end && blocks_[number].low <= blocks_[number].high) {
            if (blocks_[number].low < low.value) low = {blocks_[number].low, i};
            if (blocks_[number].high > high.value) high = {blocks_[number].high, i};
            i += block;
            continue;
        }
        if (is_null(values[i])) break;
        if (values[i] < low.value) low = {values[i], i};
        if (values[i] > high.value) high = {values[i], i};
        ++i;
    }
    return {i, place_of(values, low), place_of(values, high)};
}

}  // namespace anomalis::chart
