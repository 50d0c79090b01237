#include <charconv>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/text.h"

namespace anomalis {
namespace {

double parsed(std::string_view text) {
    double value = -12345;
    EXPECT_TRUE(parse_number(text, value)) << text;
    return value;
}

TEST(ParseNumber, takes_signs_points_exponents_and_blanks_around) {
    EXPECT_EQ(parsed("5"), 5);
    EXPECT_EQ(parsed("+5.25"), 5.25);
    EXPECT_EQ(parsed("-.5"), -0.5);
    EXPECT_EQ(parsed("5."), 5);
    EXPECT_EQ(parsed("  12 "), 12);
    EXPECT_EQ(parsed("\t12\t"), 12);
    EXPECT_EQ(parsed("1e3"), 1000);
    EXPECT_EQ(parsed("1.5E-3"), 0.0015);
    EXPECT_EQ(parsed("+1e+3"), 1000);
    EXPECT_TRUE(std::signbit(parsed("-0")));
}

TEST(ParseNumber, refuses_what_is_no_number) {
    double value = 0;
    for (const char* text : {"",     " ",    "+",        "-",   ".",     "-.",  "e5",    "1e",  "1e+",
                             "--1",  "+-1",  "-+1",      "1 2", "1.2.3", "1,5", "0x10",  "nan", "inf",
                             "-inf", "+nan", "infinity", "*",   "1d5",   "12a", "\"1\"", "1_0"}) {
        EXPECT_FALSE(parse_number(text, value)) << text;
        EXPECT_FALSE(is_numeric(text)) << text;
    }
}

TEST(ParseNumber, refuses_a_number_too_large_for_a_double) {
    double value = 0;
    for (const std::string& text :
         {std::string("1e999"), std::string("-1e999"), std::string("0.001e400"),
          std::string("1e99999999999999999999"), std::string(400, '9'), std::string(400, '9') + "e-50"})
        EXPECT_FALSE(parse_number(text, value)) << text;
}

TEST(ParseNumber, a_number_too_small_for_a_double_is_0) {
    EXPECT_EQ(parsed("1e-999"), 0);
    EXPECT_EQ(parsed("1000e-999"), 0);
    EXPECT_EQ(parsed("1e-99999999999999999999"), 0);
    EXPECT_EQ(parsed("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(parsed("0." + std::string(400, '0') + "1e20"), 0);
    EXPECT_EQ(parsed("0e999"), 0);
}

/// The short way for plain decimals must give the same bits as the system's own conversion.
TEST(ParseNumber, rounds_as_the_system_does) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 200000; ++i) {
        std::string text = std::to_string(random() >> (random() % 64));
        text.insert(random() % (text.size() + 1), random() % 4 == 0 ? "" : ".");
        if (random() % 2 == 0) text.insert(0, "-");
        double expected = 0;
        ASSERT_EQ(std::from_chars(text.data(), text.data() + text.size(), expected).ec, std::errc()) << text;
        ASSERT_EQ(parsed(text), expected) << text;
    }
}

/// Every text of a small alphabet and a length: the one scan must agree with the two it stands for.
TEST(NextNumber, agrees_with_taking_a_token_and_reading_it) {
    std::mt19937 random(13);
    const std::string_view alphabet = "0123456789012345678901234567890123456789.-+e  \t,;'\"x";
    for (int i = 0; i < 200000; ++i) {
        std::string text(random() % 40, ' ');
        for (char& c : text) c = alphabet[random() % alphabet.size()];
        std::string_view one(text);
        std::string_view two(text);
        while (!one.empty() && !two.empty()) {
            double got = 0;
            double want = 0;
            const bool numeric = parse_number(next_token(two), want);
            ASSERT_EQ(next_number(one, got), numeric) << text;
            if (numeric) {
                ASSERT_EQ(got, want) << text;
            }
        }
        ASSERT_EQ(trim_blanks(one), trim_blanks(two)) << text;
    }
}

TEST(PrefixNumber, an_overflow_is_a_fault) {
    EXPECT_THROW(prefix_number("1e999 m"), Fault);
    EXPECT_EQ(prefix_number("+12.5 m"), 12.5);
}

TEST(ParseSingle, takes_what_fits_a_single) {
    EXPECT_EQ(parse_single(" 1.5 "), 1.5F);
    EXPECT_EQ(parse_single("3.4e38"), 3.4e38F);
    EXPECT_EQ(parse_single("1e-60"), 0.0F);
    for (const char* text : {"", "x", "1e39", "-1e39", "1e999", "nan", "1 2"})
        EXPECT_FALSE(parse_single(text)) << text;
}

}  // namespace
}  // namespace anomalis
