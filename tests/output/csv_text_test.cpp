#include "output/csv_text.h"

#include <gtest/gtest.h>
#include <limits>

namespace anomalis::output {
namespace {

std::string words(std::string_view value) {
    CsvText csv;
    csv.words(value);
    return csv.text();
}

TEST(CsvText, numbers_read_back_as_themselves_and_show_that_they_may_have_a_fraction) {
    CsvText csv;
    csv.number(0.1);
    csv.number(0.1F);
    csv.number(100.0);
    csv.number(-0.0);
    csv.number(1e300);
    csv.number(412345.6789012345);
    csv.whole(-3);
    csv.end_row();
    EXPECT_EQ(csv.text(), "0.1,0.1,100.0,-0.0,1e+300,412345.6789012345,-3\n");
}

TEST(CsvText, a_missing_value_is_an_empty_field) {
    CsvText csv;
    csv.number(-1e32);
    csv.number(std::numeric_limits<double>::quiet_NaN());
    csv.number(-std::numeric_limits<float>::infinity());
    csv.nothing();
    csv.end_row();
    EXPECT_EQ(csv.text(), ",,,\n");
}

TEST(CsvText, words_are_quoted_only_where_they_must_be) {
    EXPECT_EQ(words(" plain text; 'so' "), "plain text; 'so'");
    EXPECT_EQ(words("a,b"), "\"a,b\"");
    EXPECT_EQ(words("2\" pipe"), "\"2\"\" pipe\"");
    EXPECT_EQ(words(""), "");
}

TEST(CsvText, no_name_is_a_formula_for_a_spreadsheet) {
    EXPECT_EQ(words("=1+1"), "\"'=1+1\"");
    EXPECT_EQ(words("+dyke"), "\"'+dyke\"");
    EXPECT_EQ(words("-2"), "\"'-2\"");
    EXPECT_EQ(words("@SUM(A1)"), "\"'@SUM(A1)\"");
    EXPECT_EQ(words("\t=cmd|' /C calc'!A0"), "\"'=cmd|' /C calc'!A0\"");
    EXPECT_EQ(words("\r\n -a,\"b\""), "\"'-a,\"\"b\"\"\"");
    EXPECT_EQ(words("a=b"), "a=b");
}

TEST(CsvText, words_stay_on_one_line_without_control_characters) {
    EXPECT_EQ(words("a\r\nb\nc\td"), "a b c d");
    EXPECT_EQ(words(std::string_view("a\0b\x7F"
                                     "c",
                                     5)),
              "a b c");
}

TEST(CsvText, what_is_no_utf8_is_taken_as_latin_1) {
    EXPECT_EQ(words("\xC3\xA4 \xE6\xBC\xA2 \xF0\x9F\x8C\x8D"), "\xC3\xA4 \xE6\xBC\xA2 \xF0\x9F\x8C\x8D");
    EXPECT_EQ(words("\xE4"), "\xC3\xA4");
    EXPECT_EQ(words("\xC0\x80"), "\xC3\x80\xC2\x80") << "longer than needed";
    EXPECT_EQ(words("\xE0\x9F\xBF"), "\xC3\xA0\xC2\x9F\xC2\xBF");
    EXPECT_EQ(words("\xF5\x80\x80\x80"), "\xC3\xB5\xC2\x80\xC2\x80\xC2\x80");
    EXPECT_EQ(words("\xE6\xBC"), "\xC3\xA6\xC2\xBC") << "cut short";
}

}  // namespace
}  // namespace anomalis::output
