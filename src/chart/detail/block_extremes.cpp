#include "chart/detail/block_extremes.h"

#include <algorithm>
#include <array>

#include "chart/detail/axis_transform.h"

namespace anomalis::chart {

namespace {

/// Values of a block of a level, from 1; 1 for the values themselves.
std::size_t size_of(std::size_t level) {
    std::size_t size = 1;
    for (; level > 0; --level) size *= BlockExtremes::block;
    return size;
}

}  // namespace

void BlockExtremes::build(std::span<const double> values) {
    std::size_t levels = 0;
    for (std::size_t count = values.size() / block; count > 0; count /= block) {
        if (levels_.size() <= levels) levels_.emplace_back();
        levels_[levels++].resize(count);
    }
    levels_.resize(levels);
    update(values, 0, values.size());
}

void BlockExtremes::update(std::span<const double> values, std::size_t first, std::size_t end) {
    for (std::size_t level = 0; level < levels_.size(); ++level) {
        first /= block;
        end = std::min((end + block - 1) / block, levels_[level].size());
        for (std::size_t number = first; number < end; ++number) {
            std::array<double, block> low, high;
            for (std::size_t i = 0; i < block; ++i) {
                const std::size_t at = number * block + i;
                low[i] = level == 0 ? values[at] : levels_[level - 1][at].low;
                high[i] = level == 0 ? low[i] : levels_[level - 1][at].high;
            }
            bool whole = true;
            for (std::size_t i = 0; i < block; ++i) whole &= low[i] <= high[i] && !is_null(low[i]);
            for (std::size_t half = block / 2; half > 0; half /= 2)
                for (std::size_t i = 0; i < half; ++i) {
                    low[i] = std::min(low[i], low[i + half]);
                    high[i] = std::max(high[i], high[i + half]);
                }
            levels_[level][number] = whole ? Range{low[0], high[0]} : Range{};
        }
    }
}

/// The highest level of which a whole block begins at `i` and ends by `end`; 0: only the value.
std::size_t BlockExtremes::level_at(std::size_t i, std::size_t end) const {
    std::size_t level = 0;
    for (std::size_t size = block; level < levels_.size(); ++level, size *= block)
        if (i % size != 0 || i + size > end || !levels_[level][i / size].whole()) break;
    return level;
}

std::size_t BlockExtremes::place_of(std::span<const double> values, Best best, double Range::*side) const {
    std::size_t number = best.from / size_of(best.level);
    for (std::size_t level = best.level; level > 0; --level) {
        number *= block;
        const auto value_of = [&](std::size_t n) {
            return level == 1 ? values[n] : levels_[level - 2][n].*side;
        };
        while (value_of(number) != best.value) ++number;
    }
    return number;
}

BlockExtremes::Stretch BlockExtremes::find(std::span<const double> values, std::size_t first,
                                           std::size_t end) const {
    Best low{values[first], first, 0};
    Best high = low;
    std::size_t i = first + 1;
    while (i < end) {
        const std::size_t level = level_at(i, end);
        if (level == 0 && is_null(values[i])) break;
        const std::size_t size = size_of(level);
        const Range range = level == 0 ? Range{values[i], values[i]} : levels_[level - 1][i / size];
        if (range.low < low.value) low = {range.low, i, level};
        if (range.high > high.value) high = {range.high, i, level};
        i += size;
    }
    return {i, place_of(values, low, &Range::low), place_of(values, high, &Range::high)};
}

}  // namespace anomalis::chart
