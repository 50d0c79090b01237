#include "edit/interval_text.h"

#include <gtest/gtest.h>

#include "core/worth_text.h"

namespace anomalis::edit {

namespace {

constexpr double open = FittedParameter::open;

FittedParameter interval(float value, double lower, double upper) {
    return {.value = value, .lower = lower, .upper = upper};
}

}  // namespace

TEST(IntervalText, numbers_have_the_digits_that_they_are_worth) {
    EXPECT_EQ(text_of_worth(257.4, 12), "257");
    EXPECT_EQ(text_of_worth(257.4, 3.1), "257.4");
    EXPECT_EQ(text_of_worth(257.4, 0.31), "257.40");
    EXPECT_EQ(text_of_worth(0.0212, 0.0004), "0.02120");
    EXPECT_EQ(text_of_worth(5, 0), "5.0");
}

TEST(IntervalText, an_even_interval_is_half_of_it_either_way) {
    EXPECT_EQ(interval_mark(interval(257.4F, 247.1, 267.7)), "±10");
    EXPECT_EQ(interval_mark(interval(62, 61.69, 62.31)), "±0.31");
    EXPECT_EQ(interval_words(interval(257.4F, 247.1, 267.7)), "247 to 268");
    EXPECT_EQ(interval_mark(interval(0, -1.2e9, 1.2e9)), "±1e9");
}

TEST(IntervalText, sides_that_differ_by_more_than_a_fifth_are_both_told) {
    EXPECT_EQ(interval_mark(interval(100, 96, 112)), "-4.0 +12.0");
    EXPECT_EQ(interval_mark(interval(100, 90, 111)), "±11");
}

TEST(IntervalText, a_side_that_the_data_leave_open_is_a_bound) {
    EXPECT_EQ(interval_mark(interval(90, open, 140)), "<140");
    EXPECT_EQ(interval_words(interval(90, open, 140)), "below 140");
    EXPECT_EQ(interval_mark(interval(90, 35, open)), ">35.0");
    EXPECT_EQ(interval_words(interval(90, 35, open)), "above 35.0");
}

TEST(IntervalText, nothing_known_is_said_so) {
    FittedParameter nothing = interval(90, open, open);
    EXPECT_EQ(interval_mark(nothing), "±?");
    EXPECT_EQ(interval_words(nothing), "not determined");
    nothing.at_limit = true;
    EXPECT_EQ(interval_mark(nothing), "at limit");
    EXPECT_EQ(interval_words(nothing), "held by its limit");
}

}  // namespace anomalis::edit
