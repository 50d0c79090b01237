#include "core/numbers.h"

#include <clocale>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <locale>
#include <random>

#include "core/append_number.h"
#include "core/failure.h"

namespace anomalis {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

TEST(NumberToText, a_single_has_up_to_seven_digits) {
    EXPECT_EQ(number_to_text(0.0F), " 0");
    EXPECT_EQ(number_to_text(-0.0F), " 0");
    EXPECT_EQ(number_to_text(0.5F), " 0.5");
    EXPECT_EQ(number_to_text(-0.5F), "-0.5");
    EXPECT_EQ(number_to_text(0.1F), " 0.1");
    EXPECT_EQ(number_to_text(2.67F), " 2.67");
    EXPECT_EQ(number_to_text(1.0F / 3), " 0.3333333");
    EXPECT_EQ(number_to_text(123456.789F), " 123456.8");
    EXPECT_EQ(number_to_text(-99999.0F), "-99999");
    EXPECT_EQ(number_to_text(56000.0F), " 56000");
}

TEST(ShortestText, has_no_blank_in_front) {
    EXPECT_EQ(shortest_text(0.1F), "0.1");
    EXPECT_EQ(shortest_text(-0.5F), "-0.5");
    EXPECT_EQ(shortest_text(1.0 / 3), "0.333333333333333");
    EXPECT_EQ(shortest_text(-7), "-7");
    EXPECT_EQ(shortest_text(7), "7");
    EXPECT_EQ(shortest_text(infinity), "Inf");
}

TEST(RoundTripText, reads_back_as_the_same_number) {
    EXPECT_EQ(round_trip_text(0.1F), "0.1");
    EXPECT_EQ(round_trip_text(0.1), "0.1");
    EXPECT_EQ(round_trip_text(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(round_trip_text(1e22), "1e+22");
    std::mt19937 random(7);
    for (int i = 0; i < 1000; ++i) {
        const double value =
            std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 200) - 100);
        double read = 0;
        ASSERT_TRUE(parse_number(round_trip_text(value), read));
        EXPECT_EQ(read, value);
    }
}

TEST(NumberToText, a_single_changes_its_notation_at_the_limits) {
    EXPECT_EQ(number_to_text(1e-4F), " 0.0001");
    EXPECT_EQ(number_to_text(9.9999e-5F), " 9.9999E-05");
    EXPECT_EQ(number_to_text(9999999.0F), " 9999999");
    EXPECT_EQ(number_to_text(9999999.5F), " 1E+07");
    EXPECT_EQ(number_to_text(1e7F), " 1E+07");
    EXPECT_EQ(number_to_text(-16777216.0F), "-1.677722E+07");
    EXPECT_EQ(number_to_text(1e32F), " 1E+32");
    EXPECT_EQ(number_to_text(std::numeric_limits<float>::max()), " 3.402823E+38");
    EXPECT_EQ(number_to_text(std::numeric_limits<float>::denorm_min()), " 1.401298E-45");
}

TEST(NumberToText, a_double_has_up_to_fifteen_digits) {
    EXPECT_EQ(number_to_text(0.0), " 0");
    EXPECT_EQ(number_to_text(0.1 + 0.2), " 0.3");
    EXPECT_EQ(number_to_text(1.0 / 3), " 0.333333333333333");
    EXPECT_EQ(number_to_text(-2.0 / 3), "-0.666666666666667");
    EXPECT_EQ(number_to_text(7412345.678), " 7412345.678");
    EXPECT_EQ(number_to_text(1e-4), " 0.0001");
    EXPECT_EQ(number_to_text(9.99e-5), " 9.99E-05");
    EXPECT_EQ(number_to_text(999999999999999.0), " 999999999999999");
    EXPECT_EQ(number_to_text(999999999999999.9), " 1E+15");
    EXPECT_EQ(number_to_text(1e15), " 1E+15");
    EXPECT_EQ(number_to_text(-1.25e100), "-1.25E+100");
    EXPECT_EQ(number_to_text(1e-300), " 1E-300");
}

TEST(NumberToText, an_integer_keeps_all_digits) {
    EXPECT_EQ(number_to_text(std::int32_t{0}), " 0");
    EXPECT_EQ(number_to_text(std::int32_t{16711680}), " 16711680");
    EXPECT_EQ(number_to_text(std::numeric_limits<std::int32_t>::min()), "-2147483648");
}

TEST(NumberToText, what_is_no_number_is_shown_as_such) {
    EXPECT_EQ(number_to_text(std::nanf("")), " NaN");
    EXPECT_EQ(number_to_text(infinity), " Inf");
    EXPECT_EQ(number_to_text(-infinity), "-Inf");
}

TEST(FormatNumber, halves_go_away_from_zero_on_the_decimal_value) {
    EXPECT_EQ(format_number(0.005, "0.00"), "0.01");
    EXPECT_EQ(format_number(-0.005, "0.00"), "-0.01");
    EXPECT_EQ(format_number(0.005F, "0.00"), "0.01");
    EXPECT_EQ(format_number(1.005, "0.00"), "1.01");
    EXPECT_EQ(format_number(2.675, "0.00"), "2.68");
    EXPECT_EQ(format_number(2.675F, "0.00"), "2.68");
    EXPECT_EQ(format_number(0.5, "0"), "1");
    EXPECT_EQ(format_number(1.5, "0"), "2");
    EXPECT_EQ(format_number(2.5, "0"), "3");
    EXPECT_EQ(format_number(-2.5, "0"), "-3");
    EXPECT_EQ(format_number(0.49999, "0"), "0");
    EXPECT_EQ(format_number(0.0049999, "0.00"), "0.00");
}

TEST(FormatNumber, zero_has_no_sign) {
    EXPECT_EQ(format_number(-0.0, "0.00"), "0.00");
    EXPECT_EQ(format_number(-0.004, "0.00"), "0.00");
    EXPECT_EQ(format_number(-0.4F, "0"), "0");
}

TEST(FormatNumber, a_carry_lengthens_the_number) {
    EXPECT_EQ(format_number(0.995, "0.00"), "1.00");
    EXPECT_EQ(format_number(9.995, "0.00"), "10.00");
    EXPECT_EQ(format_number(-999.9996, "0.000"), "-1000.000");
}

TEST(FormatNumber, digits_are_padded_on_both_sides) {
    EXPECT_EQ(format_number(0.0, "0.0000"), "0.0000");
    EXPECT_EQ(format_number(50000.0F, "0.000"), "50000.000");
    EXPECT_EQ(format_number(2.67F, "0.000"), "2.670");
    EXPECT_EQ(format_number(0.00001, "0.00"), "0.00");
    EXPECT_EQ(format_number(1e20, "0.0"), "100000000000000000000.0");
    EXPECT_EQ(format_number(std::int32_t{-2147483647 - 1}, "0"), "-2147483648");
    EXPECT_EQ(format_number(123456789.0F, "0"), "123456800");
}

TEST(FormatNumber, optional_digits_are_left_off_when_they_are_zero) {
    EXPECT_EQ(format_number(1.5, "0.##"), "1.5");
    EXPECT_EQ(format_number(1.0, "0.##"), "1");
    EXPECT_EQ(format_number(1.0, "0.0#"), "1.0");
    EXPECT_EQ(format_number(1.256, "0.0#"), "1.26");
}

TEST(IsNumeric, accepts_what_a_person_writes_as_a_number) {
    for (const char* text :
         {"0", "12", "-3", "+3", ".5", "5.", "-.5", "+5.", "1e5", "1E5", "1e+5", "1.5E-05", "  7  ", "\t7\t",
          "007", "1e-999", "0.0000000001e-320", "1e308", "-1.7976931348623157e308"})
        EXPECT_TRUE(is_numeric(text)) << text;
    EXPECT_TRUE(is_numeric(std::string(400, '0') + "1"));
    EXPECT_TRUE(is_numeric("0." + std::string(400, '0') + "1"));
    EXPECT_TRUE(is_numeric(std::string("1") + std::string(400, '0') + "e-300"));
}

TEST(IsNumeric, refuses_everything_else) {
    for (const char* text : {"",         " ",          "*",
                             ".",        "+",          "-",
                             "+-3",      "--3",        "-+3",
                             "1 2",      "- 5",        "1.2.3",
                             "1,5",      "1e",         "1e+",
                             "e5",       "1e5.5",      "nan",
                             "-nan",     "inf",        "-inf",
                             "Infinity", "0x10",       "&H10",
                             "1d5",      "12abc",      "5%",
                             "$5",       "<no value>", "1e999",
                             "-1e999",   "0.001e999",  "1e99999999999999999999"})
        EXPECT_FALSE(is_numeric(text)) << text;
    EXPECT_FALSE(is_numeric(std::string(400, '9')));
    EXPECT_FALSE(is_numeric(std::string(800, '9') + "e-300"));
    EXPECT_FALSE(is_numeric(std::string_view("5\0", 2)));
}

TEST(PrefixNumber, takes_the_longest_leading_number) {
    EXPECT_EQ(prefix_number("12abc"), 12);
    EXPECT_EQ(prefix_number("1.2.3"), 1.2);
    EXPECT_EQ(prefix_number("1,5"), 1);
    EXPECT_EQ(prefix_number("5-3"), 5);
    EXPECT_EQ(prefix_number("+3"), 3);
    EXPECT_EQ(prefix_number("1e3x"), 1000);
    EXPECT_EQ(prefix_number("1e"), 1);
    EXPECT_EQ(prefix_number("1e+"), 1);
    EXPECT_EQ(prefix_number("0x10"), 0);
    EXPECT_EQ(prefix_number("1e-999"), 0);
    EXPECT_EQ(prefix_number("5e-1e7"), 0.5);
}

TEST(PrefixNumber, is_zero_when_there_is_none) {
    for (const char* text : {"", "   ", "abc", ".", "-", "--3", "e5", "nan", "inf", "*", "\"5\""})
        EXPECT_EQ(prefix_number(text), 0) << text;
}

TEST(PrefixNumber, skips_blanks_before_and_inside_the_number) {
    EXPECT_EQ(prefix_number("  - 5"), -5);
    EXPECT_EQ(prefix_number("1 234\t567 m"), 1234567);
    EXPECT_EQ(prefix_number("12 e 2"), 1200);
}

TEST(PrefixNumber, a_number_too_large_is_an_overflow) {
    EXPECT_THROW(prefix_number("1e999"), Fault);
    EXPECT_THROW(prefix_number("-1e999 m"), Fault);
}

TEST(RoundToEven, ties_go_to_the_even_neighbour) {
    EXPECT_EQ(round_to_even(0.5), 0);
    EXPECT_EQ(round_to_even(1.5), 2);
    EXPECT_EQ(round_to_even(2.5), 2);
    EXPECT_EQ(round_to_even(-0.5), 0);
    EXPECT_EQ(round_to_even(-1.5), -2);
    EXPECT_EQ(round_to_even(-2.5), -2);
    EXPECT_EQ(round_to_even(2.5000001), 3);
    EXPECT_EQ(round_to_even(0.49999999999999994), 0);
}

TEST(RoundToEven, overflows_beyond_32_bits) {
    EXPECT_EQ(round_to_even(2147483647.4), 2147483647);
    EXPECT_EQ(round_to_even(-2147483648.5), std::numeric_limits<std::int32_t>::min());
    for (const double value : {2147483647.5, -2147483649.0, 1e300, -1e300, std::nan(""), HUGE_VAL, -HUGE_VAL})
        EXPECT_THROW(round_to_even(value), Fault) << value;
}

TEST(ToSingle, overflows_where_a_single_ends) {
    EXPECT_EQ(to_single(0.1), 0.1F);
    EXPECT_EQ(to_single(1e-60), 0.0F);
    EXPECT_EQ(to_single(3.4028235e38), std::numeric_limits<float>::max());
    EXPECT_EQ(to_single(HUGE_VAL), infinity);
    EXPECT_THROW(to_single(3.4029e38), Fault);
    EXPECT_THROW(to_single(-1e300), Fault);
}

/// A comma for the point and groups of three, as in much of the world.
class CommaPoint : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Numbers, do_not_depend_on_the_locale) {
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaPoint));
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "nl_NL.UTF-8", "pt_BR.UTF-8"})
        if (std::setlocale(LC_ALL, name)) break;
    EXPECT_EQ(number_to_text(1234.5F), " 1234.5");
    EXPECT_EQ(number_to_text(std::int32_t{1234567}), " 1234567");
    EXPECT_EQ(format_number(1234567.5, "0.00"), "1234567.50");
    EXPECT_TRUE(is_numeric("1.5"));
    EXPECT_FALSE(is_numeric("1,5"));
    EXPECT_EQ(prefix_number("1.5"), 1.5);
    std::locale::global(before);
    std::setlocale(LC_ALL, "C");
}

constexpr const char* fixed_patterns[] = {"0", "0.0", "0.00", "0.000"};

template <class Real>
void expect_same_text(Real value) {
    for (int decimals = 0; decimals <= most_appended_decimals; ++decimals) {
        std::string text = "x";
        append_fixed(text, value, decimals);
        ASSERT_EQ(text, "x" + format_number(value, fixed_patterns[decimals])) << value;
    }
    std::string text = "x";
    append_default(text, value);
    ASSERT_EQ(text, "x" + number_to_text(value));
    append_round_trip(text = "x", value);
    ASSERT_EQ(text, "x" + round_trip_text(value));
}

void expect_same_texts(double value) {
    expect_same_text(value);
    expect_same_text(static_cast<float>(value));
}

TEST(AppendedNumbers, are_those_of_the_patterns_at_every_size) {
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> digits(-1, 1);
    for (double size = 1e-5; size < 1e18; size *= 10)
        for (int i = 0; i < 100; ++i) expect_same_texts(size * digits(random));
    for (const double value :
         {0.0, -0.0, 999999999.995, 1e9, 9.9e307, -0.004, -0.006, std::nan(""),
          std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()})
        expect_same_texts(value);
}

TEST(AppendedNumbers, ties_and_what_lies_next_to_them) {
    for (int i = -400; i <= 400; ++i) {
        const double tie = i * 0.005;
        for (const double value : {tie, std::nextafter(tie, 1e9), std::nextafter(tie, -1e9), tie + 7e6}) {
            expect_same_texts(value);
            expect_same_text(std::nextafter(static_cast<float>(value), 1e9F));
        }
        expect_same_texts(56000 + i / 32.0);
    }
}

TEST(AppendedNumbers, digits_that_carry_over_a_power_of_ten) {
    for (int exponent = -6; exponent <= 17; ++exponent) {
        float single = static_cast<float>(std::pow(10.0, exponent));
        double number = std::pow(10.0, exponent);
        for (int i = 0; i < 8;
             ++i, single = std::nextafter(single, 0.0F), number = std::nextafter(number, 0.0)) {
            expect_same_text(single);
            expect_same_text(number);
        }
    }
}

TEST(AppendHundredths, is_the_pattern_of_two_decimals) {
    std::string text = "x";
    append_hundredths(text, -31.415);
    EXPECT_EQ(text, "x" + format_number(-31.415, "0.00"));
}

}  // namespace
}  // namespace anomalis
