#include "chart/detail/ticks.h"

#include <cmath>
#include <gtest/gtest.h>

#include "chart/detail/tick_text.h"

namespace anomalis::chart {
namespace {

AxisTransform logarithmic(double cutoff, double base = 10.0) {
    AxisTransform scale;
    scale.type = 1;
    scale.set_base(base);
    scale.set_cutoff(cutoff);
    return scale;
}

std::string log_label(double value, double cutoff, double base = 10.0) {
    return tick_text(value, logarithmic(cutoff, base), "0");
}

TEST(TickFormat, has_the_digits_that_the_interval_needs) {
    EXPECT_EQ(tick_format(1000.0), "0");
    EXPECT_EQ(tick_format(1.0005), "0");
    EXPECT_EQ(tick_format(0.5), "0.0");
    EXPECT_EQ(tick_format(0.25), "0.00");
    EXPECT_EQ(tick_format(1.0 / 3.0), "0.000");
    EXPECT_EQ(tick_format(0.002), "0.000");
}

TEST(TickFormat, small_intervals_do_not_make_every_number_a_zero) {
    EXPECT_EQ(tick_format(0.001), "0.000");
    EXPECT_EQ(tick_format(0.0005), "0.0000");
    EXPECT_EQ(tick_format(1e-5), "0.00000");
    EXPECT_EQ(tick_format(2.5e-7), "0.00000000");
    EXPECT_EQ(tick_format(1e-12), "0.000000000");
}

TEST(Ticks, are_whole_multiples_without_a_negative_zero) {
    const auto ticks = make_ticks({-0.3, 0.3}, 0.1, 10000.0, 0.0);
    ASSERT_EQ(ticks.size(), 7U);
    EXPECT_EQ(ticks[3].value, 0.0);
    EXPECT_FALSE(std::signbit(ticks[3].value));
    EXPECT_EQ(ticks[6].value, 3 * 0.1);
    EXPECT_NEAR(ticks[6].position, 6000.0, 1e-6);
}

TEST(Ticks, a_first_multiple_under_the_low_limit_is_skipped) {
    const auto ticks = make_ticks({240.0, 1260.0}, 500.0, 1.0, 100.0);
    ASSERT_EQ(ticks.size(), 2U);
    EXPECT_EQ(ticks[0].value, 500.0);
    EXPECT_EQ(ticks[0].position, 360.0);
}

TEST(Ticks, stop_at_the_high_limit_for_small_numbers_too) {
    EXPECT_EQ(make_ticks({0.0, 8e-5}, 1e-5, 4000.0 / 8e-5, 0.0).size(), 9U);
}

TEST(Ticks, a_million_in_the_view_become_one_every_two_pixels) {
    const auto ticks = make_ticks({0.0, 1000.0}, 0.001, 13.5, 0.0);
    EXPECT_GT(ticks.size(), 200U);
    for (std::size_t i = 1; i < ticks.size(); ++i)
        EXPECT_GE(ticks[i].position - ticks[i - 1].position, 30.0 - 1e-6);
}

TEST(Ticks, numbers_that_cannot_be_told_apart_have_none) {
    EXPECT_TRUE(make_ticks({1e20, 1e20 + 1e6}, 1.0, 1e-2, 0.0).empty());
    EXPECT_TRUE(make_ticks({0.0, 1.0}, std::nan(""), 100.0, 0.0).empty());
    EXPECT_TRUE(make_ticks({0.0, 1.0}, 0.0, 100.0, 0.0).empty());
}

TEST(LabelRoom, only_a_label_that_is_taken_moves_the_next) {
    LabelRoom room(0.0);
    EXPECT_TRUE(room.take(10.0, 100.0));
    EXPECT_FALSE(room.take(60.0, 150.0));
    EXPECT_FALSE(room.take(100.0, 200.0));
    EXPECT_TRUE(room.take(101.0, 200.0));
}

TEST(TickText, powers_of_ten_stand_for_their_values) {
    for (const auto& [cutoff, text] :
         {std::pair{1000.0, "1000"}, {0.1, "0.1"}, {0.01, "0.01"}, {0.001, "0.001"}, {1.0, "1"}})
        EXPECT_EQ(log_label(1.0, cutoff), text);
    EXPECT_EQ(log_label(1.0, 1e-4), "1x10^-4");
    EXPECT_EQ(log_label(1.0, 1e-6), "1x10^-6");
    EXPECT_EQ(log_label(1.0, 1e6), "1x10^6");
    EXPECT_EQ(log_label(5.0, 1.0), "1x10^4");
    EXPECT_EQ(log_label(-3.0, 1.0), "-100");
    EXPECT_EQ(log_label(0.0, 0.01), "0");
}

TEST(TickText, between_powers_the_value_itself_is_told) {
    EXPECT_EQ(log_label(1.3, 1.0), "2");
    EXPECT_EQ(log_label(-1.3, 1.0), "-2");
    EXPECT_EQ(log_label(2.5, 1.0), "31.6");
    EXPECT_EQ(log_label(7.5, 1.0), "3.16x10^6");
}

TEST(TickText, the_linear_band_has_the_digits_of_its_cutoff) {
    EXPECT_EQ(log_label(0.5, 0.01), "0.005");
    EXPECT_EQ(log_label(0.5, 1.0), "0.5");
    EXPECT_EQ(log_label(-0.5, 100.0), "-50");
}

TEST(TickText, another_base_shows_itself) {
    EXPECT_EQ(log_label(4.0, 1.0, 2.0), "1x2^3");
    EXPECT_EQ(log_label(-4.0, 4.0, 2.0), "-1x2^5");
    EXPECT_EQ(log_label(0.0, 1.0, 2.0), "0");
}

TEST(TickText, a_linear_axis_uses_the_format) {
    EXPECT_EQ(tick_text(-0.00001, AxisTransform{}, "0.00"), "0.00");
    EXPECT_EQ(tick_text(2.5, AxisTransform{}, "0"), "3");
}

}  // namespace
}  // namespace anomalis::chart
