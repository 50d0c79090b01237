#include "intake/formats/field_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "intake/formats/line_names.h"

namespace anomalis::intake {
namespace {

double number(std::string_view text, bool decimal_comma = false) {
    double value = 0;
    EXPECT_TRUE(read_number(text, decimal_comma, value)) << text;
    return value;
}

double degrees(std::string_view text) {
    double value = 0;
    EXPECT_TRUE(read_degree_minutes(text, false, value)) << text;
    return value;
}

TEST(FieldValue, words_for_no_value_are_none) {
    for (const char* text :
         {"", "*", "****", "NaN", "nan", "N/A", "NULL", "-", "--", "1.#QNAN", "inf", "None"})
        EXPECT_TRUE(is_null_text(text)) << text;
    for (const char* text : {"0", "-1", "abc", "L10", "-9"}) EXPECT_FALSE(is_null_text(text)) << text;
}

TEST(FieldValue, numbers_with_points_commas_and_exponents_of_fortran) {
    EXPECT_EQ(number("-12.5"), -12.5);
    EXPECT_EQ(number("-12,5", true), -12.5);
    EXPECT_EQ(number("1.5D+03"), 1500);
    EXPECT_EQ(number("+7"), 7);
    EXPECT_EQ(number("1234567890.12345678901"), 1234567890.12345678901);
    double value = 0;
    EXPECT_FALSE(read_number("12,5", false, value));
    EXPECT_FALSE(read_number("12,", true, value));
    EXPECT_FALSE(read_number("1,234,567", true, value));
    EXPECT_FALSE(read_number("nan", false, value));
    EXPECT_FALSE(read_number("", true, value));
}

TEST(FieldValue, degrees_with_minutes_and_seconds_in_all_spellings) {
    const double expected = 140 + 49.0 / 60 + 59.8 / 3600;
    for (const char* text : {"140 49 59.8", "140:49:59.8", "140d49m59.8s",
                             "140\xC2\xB0"
                             "49'59.8\"",
                             "E140 49 59.8", "140 49 59.8 E"})
        EXPECT_DOUBLE_EQ(degrees(text), expected) << text;
    EXPECT_DOUBLE_EQ(degrees("-22 30 00"), -22.5);
    EXPECT_DOUBLE_EQ(degrees("22 30 S"), -22.5);
    EXPECT_DOUBLE_EQ(degrees("-0 30"), -0.5);
    EXPECT_DOUBLE_EQ(degrees("14049.8"), 140 + 49.8 / 60);
    double value = 0;
    EXPECT_FALSE(read_degree_minutes("140 60 00", false, value)) << "minutes end at 60";
    EXPECT_FALSE(read_degree_minutes("1 2 3 4", false, value));
    EXPECT_FALSE(read_degree_minutes("here", false, value));
    EXPECT_TRUE(read_degrees("32.5S", false, value));
    EXPECT_EQ(value, -32.5);
}

TEST(FieldValue, dates_in_all_spellings_are_years) {
    const double first_of_july = 1990 + (181 + 0.5) / 365;
    for (const char* text :
         {"1990-07-01", "1990/07/01", "01/07/1990", "1-Jul-1990", "July 1 1990", "19900701", "900701",
          "01071990", "1071990", "1990-07-01 12:30:00", "01.07.90"}) {
        const auto year = read_date(text);
        ASSERT_TRUE(year) << text;
        EXPECT_NEAR(*year, first_of_july, 1e-9) << text;
    }
    EXPECT_EQ(read_date("1990.5"), 1990.5);
    EXPECT_NEAR(*read_date("12/25/2004"), 2004 + (359 + 0.5) / 366, 1e-9) << "no month is the 25th";
    for (const char* text : {"", "abc", "-99999", "99999999", "1990-13-41", "12", "31/02/1990"})
        EXPECT_FALSE(read_date(text)) << text;
}

TEST(FieldValue, nulls_hold_for_their_decimals) {
    EXPECT_TRUE(is_null_value(-99999.99, {-99999}));
    EXPECT_TRUE(is_null_value(-9999999, {-9999999}));
    EXPECT_FALSE(is_null_value(-999.5, {-9999}));
    EXPECT_FALSE(is_null_value(-98, {-99}));
    EXPECT_FALSE(is_null_value(0.5, {0}));
    EXPECT_TRUE(is_null_value(0, {0}));
    EXPECT_TRUE(is_null_value(-1e32, {}));
    EXPECT_FALSE(is_null_value(52000, {}));
}

TEST(LineNames, numbers_count_by_their_value_and_lines_that_come_again_are_the_same) {
    LineNames names(Encoding::utf8);
    EXPECT_EQ(names.index_of("690.0"), 0);
    EXPECT_EQ(names.index_of("700"), 1);
    EXPECT_EQ(names.index_of("690"), 0);
    EXPECT_EQ(names.index_of("L10"), 2);
    EXPECT_THAT(names.list(), ::testing::ElementsAre("690", "700", "L10"));
}

}  // namespace
}  // namespace anomalis::intake
