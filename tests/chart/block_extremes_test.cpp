#include "chart/detail/block_extremes.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "chart/detail/axis_transform.h"

namespace anomalis::chart {
namespace {

using Values = std::vector<double>;

/// The same by looking at every value.
BlockExtremes::Stretch plainly(const Values& values, std::size_t first, std::size_t end) {
    BlockExtremes::Stretch found{first + 1, first, first};
    for (; found.end < end && !is_null(values[found.end]); ++found.end) {
        if (values[found.end] < values[found.lowest]) found.lowest = found.end;
        if (values[found.end] > values[found.highest]) found.highest = found.end;
    }
    return found;
}

TEST(BlockExtremes, finds_what_a_look_at_every_value_finds) {
    std::mt19937 random(7);
    for (const std::size_t count : {1U, 2U, 63U, 64U, 65U, 128U, 1000U, 5000U}) {
        // Few different values, so that many tie, and some nulls.
        Values values(count);
        for (double& value : values) value = static_cast<double>(random() % 9) - 4.0;
        for (std::size_t i = 0; i < count / 700; ++i) values[random() % count] = null_value;
        BlockExtremes extremes;
        extremes.build(values);
        for (int trial = 0; trial < 300; ++trial) {
            const std::size_t first = random() % count;
            const std::size_t end = first + 1 + random() % (count - first);
            if (is_null(values[first])) continue;
            const auto expected = plainly(values, first, end);
            const auto found = extremes.find(values, first, end);
            EXPECT_EQ(found.end, expected.end);
            EXPECT_EQ(found.lowest, expected.lowest);
            EXPECT_EQ(found.highest, expected.highest);
        }
    }
}

TEST(BlockExtremes, a_new_row_replaces_the_old_one) {
    BlockExtremes extremes;
    Values values(200, 1.0);
    values[100] = 9.0;
    extremes.build(values);
    values[100] = 1.0;
    values[150] = -9.0;
    extremes.build(values);
    const auto found = extremes.find(values, 0, 200);
    EXPECT_EQ(found.highest, 0U);
    EXPECT_EQ(found.lowest, 150U);
}

TEST(BlockExtremes, a_stretch_that_changes_is_found_as_in_a_row_built_anew) {
    std::mt19937 random(11);
    Values values(4500);
    for (double& value : values) value = static_cast<double>(random() % 1000);
    BlockExtremes kept;
    kept.build(values);
    for (int change = 0; change < 60; ++change) {
        const std::size_t from = random() % values.size();
        const std::size_t to = std::min(from + 1 + random() % 700, values.size());
        for (std::size_t i = from; i < to; ++i) values[i] = static_cast<double>(random() % 1000);
        if (change % 3 == 0) values[from] = null_value;
        kept.update(values, from, to);
        for (int trial = 0; trial < 40; ++trial) {
            const std::size_t first = random() % values.size();
            const std::size_t end = first + 1 + random() % (values.size() - first);
            if (is_null(values[first])) continue;
            const auto expected = plainly(values, first, end);
            const auto found = kept.find(values, first, end);
            EXPECT_EQ(found.end, expected.end);
            EXPECT_EQ(found.lowest, expected.lowest);
            EXPECT_EQ(found.highest, expected.highest);
        }
    }
}

}  // namespace
}  // namespace anomalis::chart
