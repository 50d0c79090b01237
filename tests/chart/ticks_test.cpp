#include "chart/detail/ticks.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "chart/detail/axis_marks.h"
#include "chart/detail/tick_text.h"
#include "chart/tick_rule.h"

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

TEST(Ticks, shorter_ones_cut_an_interval_into_round_parts) {
    EXPECT_EQ(make_minor_ticks({0.0, 100.0}, 100.0, 20.0, 0.0).size(), 9U);
    EXPECT_EQ(make_minor_ticks({0.0, 200.0}, 200.0, 2.0, 0.0).size(), 3U);
    EXPECT_EQ(make_minor_ticks({0.0, 50.0}, 50.0, 8.0, 0.0).size(), 4U);
    EXPECT_TRUE(make_minor_ticks({0.0, 50.0}, 50.0, 7.0, 0.0).empty()) << "nearer than 5 pixels";
    const auto cut = make_minor_ticks({90.0, 190.0}, 100.0, 7.0, 10.0);
    ASSERT_EQ(cut.size(), 4U);
    EXPECT_NEAR(cut[0], 10.0 + 30.0 * 7.0, 1e-9);
}

/// An axis of the tests: every character is `character` wide, a number `height` high.
struct Axis {
    AxisRange range;
    AxisTransform transform;
    double plot_low = 0.0;
    double length = 9000.0;
    double beyond = 500.0;  ///< surface on both sides of the plot
    double character = 90.0;
    double height = 165.0;
    bool sideways = true;

    Axis(double low, double high, double interval) {
        range.full = range.view = {low, high};
        range.tick_interval = interval;
    }
    Axis& zoomed_to(double low, double high) {
        range.view = {low, high};
        range.zoom = range.full.span() / range.view.span();
        return *this;
    }
    double scale() const { return length / range.view.span(); }
    NumberRoom room() const {
        NumberRoom room;
        room.along = {plot_low - beyond, plot_low + length + beyond};
        room.height = height;
        room.sideways = sideways;
        room.width_of = [this](const std::string& text) {
            return character * static_cast<double>(text.size());
        };
        return room;
    }
    AxisMarks marks() const { return make_marks(range, transform, scale(), plot_low, room()); }
    std::string texts() const {
        std::string all;
        for (const AxisNumber& number : marks().numbers) all += (all.empty() ? "" : " ") + number.text;
        return all;
    }
};

TEST(AxisMarks, every_second_fifth_or_tenth_number_is_counted_from_zero) {
    Axis axis(-300.0, 700.0, 100.0);
    EXPECT_EQ(axis.texts(), "-300 -200 -100 0 100 200 300 400 500 600 700");
    axis.length = 4000.0;
    EXPECT_EQ(axis.texts(), "-200 0 200 400 600");
    axis.length = 1700.0;
    EXPECT_EQ(axis.texts(), "0 500");
    axis.length = 400.0;
    EXPECT_EQ(axis.texts(), "0");
    EXPECT_EQ(axis.marks().ticks.size(), 11U) << "the ticks stay";
}

TEST(AxisMarks, a_number_that_would_leave_the_surface_is_left_out) {
    Axis axis(0.0, 1000.0, 200.0);
    EXPECT_EQ(axis.texts(), "0 200 400 600 800 1000");
    axis.beyond = 100.0;
    EXPECT_EQ(axis.texts(), "0 200 400 600 800");
    axis.beyond = 0.0;
    EXPECT_EQ(axis.texts(), "200 400 600 800");
    EXPECT_EQ(axis.marks().ticks.size(), 6U);
}

TEST(AxisMarks, where_one_number_alone_has_room_there_is_one) {
    Axis axis(550.0, 850.0, 100.0);
    axis.length = 1200.0;
    EXPECT_EQ(axis.texts(), "600 800");
    axis.length = 600.0;
    EXPECT_EQ(axis.texts(), "700");
}

TEST(AxisMarks, a_zoomed_axis_takes_a_finer_interval_and_digits_that_tell_neighbours_apart) {
    Axis axis(0.0, 7000.0, 1000.0);
    EXPECT_EQ(axis.zoomed_to(3400.0, 4000.0).texts(), "3400 3500 3600 3700 3800 3900 4000");
    EXPECT_EQ(axis.zoomed_to(3400.0, 3400.8).texts(),
              "3400.0 3400.1 3400.2 3400.3 3400.4 3400.5 3400.6 3400.7 3400.8");
    Axis fine(1.0, 1.0 + 8e-12, 1e-12);
    EXPECT_EQ(fine.texts().substr(0, 18), "1 1.000000000002 1");
    Axis tiny(-3e-12, 3e-12, 1e-12);
    EXPECT_EQ(tiny.texts(), "-3x10^-12 -2x10^-12 -1x10^-12 0 1x10^-12 2x10^-12 3x10^-12");
}

TEST(AxisMarks, a_logarithmic_axis_has_shorter_ticks_at_2_to_9_and_1_2_5_when_zoomed) {
    Axis axis(1.0, 7.0, 1.0);
    axis.transform.type = 1;
    EXPECT_EQ(axis.texts(), "1 10 100 1000 1x10^4 1x10^5 1x10^6");
    EXPECT_EQ(axis.marks().minor_ticks.size(), 6U * 8U);
    EXPECT_EQ(axis.zoomed_to(2.5, 4.5).texts(), "50 100 200 500 1000 2000");
    EXPECT_EQ(axis.marks().ticks.size(), 6U);
    EXPECT_EQ(axis.marks().minor_ticks.size(), 12U) << "40, 60 to 90, 300, 400, 600 to 900, 3000";
    EXPECT_EQ(axis.zoomed_to(2.0, 2.2).texts().substr(0, 11), "10 11 12 13");
    axis.length = 2500.0;
    EXPECT_EQ(axis.zoomed_to(1.0, 7.0).texts(), "10 1000 1x10^5");
}

TEST(AxisMarks, a_logarithmic_axis_is_two_sided_about_its_linear_band) {
    Axis axis(-2.0, 2.0, 1.0);
    axis.transform.type = 1;
    EXPECT_EQ(axis.texts(), "-10 -1 0 1 10");
    EXPECT_EQ(axis.zoomed_to(-1.4, 1.4).texts(), "-2 -1 -0.5 -0.2 0 0.2 0.5 1 2");
}

/// What must hold of an axis whatever it shows.
void expect_sound(const Axis& axis) {
    const AxisMarks marks = axis.marks();
    const Interval along = axis.room().along;
    const AxisNumber* before = nullptr;
    const auto half = [&](const AxisNumber& number) {
        return (axis.sideways ? number.width : axis.height) / 2.0;
    };
    for (const AxisNumber& number : marks.numbers) {
        EXPECT_GE(number.position - half(number), along.low - 1e-5);
        EXPECT_LE(number.position + half(number), along.high + 1e-5);
        if (before != nullptr) {
            EXPECT_GE(number.position - half(number), before->position + half(*before) + axis.height - 1e-6);
            EXPECT_NE(number.text, before->text);
        }
        EXPECT_TRUE(std::any_of(marks.ticks.begin(), marks.ticks.end(), [&](double tick) {
            return std::abs(tick - number.position) < 1e-6;
        })) << number.text;
        before = &number;
    }
    const Interval view = axis.range.view;
    const double zero = axis.plot_low - view.low * axis.scale();
    // Its text has as many digits as its neighbours have: eight characters at most here.
    const double zero_half = (axis.sideways ? 8.0 * axis.character : axis.height) / 2.0;
    if (view.low <= 0.0 && view.high >= 0.0 && zero - zero_half > along.low &&
        zero + zero_half < along.high) {
        EXPECT_TRUE(std::any_of(marks.numbers.begin(), marks.numbers.end(), [](const AxisNumber& number) {
            return number.zero && std::stod(number.text) == 0.0;
        }));
    }
}

TEST(AxisMarks, numbers_never_touch_and_zero_has_its_own_whatever_the_view_and_the_room) {
    std::mt19937 random(1729);
    const auto uniform = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    int numbered = 0;
    for (int i = 0; i < 2000; ++i) {
        const double span = std::pow(10.0, uniform(-6.0, 7.0));
        const double low = uniform(-2.0, 1.0) * span + (i % 5 == 0 ? uniform(-1e6, 1e6) : 0.0);
        Axis axis(low, low + span, tick_interval(low, low + span));
        if (i % 4 == 0) {
            axis.transform.type = 1;
            const double decades = uniform(0.5, 12.0);
            const double from = uniform(-6.0, 6.0);
            axis.range.full = axis.range.view = {from, from + decades};
            axis.range.tick_interval = 1.0;
        }
        const Interval full = axis.range.full;
        if (i % 3 != 0) {
            const double part = full.span() * std::pow(10.0, uniform(-4.0, 0.0));
            const double begin = full.low + uniform(0.0, 1.0) * (full.span() - part);
            axis.zoomed_to(begin, begin + part);
        }
        axis.plot_low = uniform(0.0, 1000.0);
        axis.length = uniform(60.0, 30000.0);
        axis.beyond = uniform(0.0, 600.0);
        axis.character = uniform(30.0, 200.0);
        axis.height = uniform(60.0, 400.0);
        axis.sideways = i % 2 == 0;
        expect_sound(axis);
        numbered += axis.marks().numbers.empty() ? 0 : 1;
        ASSERT_FALSE(::testing::Test::HasFailure())
            << i << ": " << axis.range.view.low << " to " << axis.range.view.high << ", " << axis.texts();
    }
    EXPECT_GT(numbered, 1700);
}

TEST(AxisMarks, a_zoomed_axis_with_room_has_three_numbers_at_least) {
    std::mt19937 random(42);
    const auto uniform = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int i = 0; i < 500; ++i) {
        Axis axis(0.0, 8000.0, 1000.0);
        if (i % 2 == 0) {
            axis.transform.type = 1;
            axis.range.full = {1.0, 7.0};
            axis.range.tick_interval = 1.0;
        }
        const double part = axis.range.full.span() * std::pow(10.0, uniform(-3.9, -0.1));
        const double begin = axis.range.full.low + uniform(0.0, 1.0) * (axis.range.full.span() - part);
        axis.zoomed_to(begin, begin + part);
        axis.length = 12000.0;
        EXPECT_GE(axis.marks().numbers.size(), 3U) << begin << " to " << begin + part << ": " << axis.texts();
    }
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
