#include "chart/tick_rule.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace anomalis::chart {
namespace {

TEST(TickRule, takes_the_smallest_round_step_that_is_large_enough) {
    EXPECT_DOUBLE_EQ(tick_interval(0.0, 7400.0), 1000.0);
    EXPECT_DOUBLE_EQ(tick_interval(0.0, 8.0), 1.0);
    EXPECT_DOUBLE_EQ(tick_interval(0.0, 8.1), 2.0);
    EXPECT_DOUBLE_EQ(tick_interval(-2413.5, 53.2), 500.0);
    EXPECT_NEAR(tick_interval(-0.0021, 0.0038), 0.001, 1e-15);
}

TEST(TickRule, a_step_equal_up_to_rounding_counts_as_large_enough) {
    EXPECT_NEAR(tick_interval(0.0, 0.8 * (1.0 + 1e-12)), 0.1, 1e-12);
}

TEST(TickRule, an_empty_or_reversed_or_endless_range_gives_one) {
    EXPECT_EQ(tick_interval(3.0, 3.0), 1.0);
    EXPECT_EQ(tick_interval(4.0, 3.0), 1.0);
    EXPECT_EQ(tick_interval(0.0, std::numeric_limits<double>::infinity()), 1.0);
    EXPECT_EQ(tick_interval(std::nan(""), 1.0), 1.0);
}

TEST(TickRule, outward_limits_cut_nothing_and_nearest_limits_may) {
    const TickLimits outward = outward_tick_limits(-2413.5, 53.2);
    EXPECT_DOUBLE_EQ(outward.low, -2500.0);
    EXPECT_DOUBLE_EQ(outward.high, 500.0);
    const TickLimits nearest = nearest_tick_limits(-2413.5, 53.2);
    EXPECT_DOUBLE_EQ(nearest.low, -2500.0);
    EXPECT_DOUBLE_EQ(nearest.high, 0.0);
}

TEST(TickRule, limits_already_round_stay) {
    const TickLimits outward = outward_tick_limits(-0.3, 0.7);
    EXPECT_NEAR(outward.low, -0.4, 1e-12);
    EXPECT_NEAR(outward.high, 0.8, 1e-12);
    const TickLimits exact = outward_tick_limits(0.1, 0.9);
    EXPECT_NEAR(exact.low, 0.1, 1e-12);
    EXPECT_NEAR(exact.high, 0.9, 1e-12);
}

}  // namespace
}  // namespace anomalis::chart
