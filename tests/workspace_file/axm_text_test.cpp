#include "workspace_file/axm_text.h"

#include <gtest/gtest.h>

#include "core/failure.h"

namespace anomalis::workspace_file {
namespace {

TEST(AxmLines, a_line_ends_at_cr_lf_or_both) {
    AxmLines lines("one\r\ntwo\nthree\rfour");
    EXPECT_EQ(lines.next(), "one");
    EXPECT_EQ(lines.next(), "two");
    EXPECT_EQ(lines.next(), "three");
    EXPECT_FALSE(lines.at_end());
    EXPECT_EQ(lines.next(), "four");
    EXPECT_TRUE(lines.at_end());
    EXPECT_EQ(lines.number(), 4);
}

TEST(AxmLines, an_empty_line_is_a_line) {
    AxmLines lines("\r\n\r\nx\r\n");
    EXPECT_EQ(lines.next(), "");
    EXPECT_EQ(lines.next(), "");
    EXPECT_EQ(lines.next(), "x");
    EXPECT_TRUE(lines.at_end());
}

TEST(AxmLines, blanks_at_both_ends_go_but_tabs_and_other_letters_stay) {
    AxmLines lines("  \tÅsele dyke  \n");
    EXPECT_EQ(lines.next(), "\tÅsele dyke");
}

TEST(AxmLines, a_byte_order_mark_is_passed_over) {
    AxmLines lines("\xEF\xBB\xBFsurvey.dat\r\n");
    EXPECT_EQ(lines.next(), "survey.dat");
}

TEST(AxmLines, reading_past_the_end_names_the_line_wanted) {
    AxmLines lines("one\n");
    lines.next();
    EXPECT_THROW(lines.next(), Fault);
    EXPECT_EQ(lines.number(), 2);
}

TEST(LineItems, missing_and_unreadable_numbers_are_0) {
    LineItems items("7 abc 2.5x");
    EXPECT_EQ(items.integer(), 7);
    EXPECT_EQ(items.integer(), 0);
    EXPECT_EQ(items.number(), 2.5);
    EXPECT_FALSE(items.left());
    EXPECT_EQ(items.single(), 0.0F);
}

TEST(LineItems, integers_round_a_tie_to_the_even_one) {
    LineItems items("2.5 3.5 -2.5 1E+2");
    EXPECT_EQ(items.integer(), 2);
    EXPECT_EQ(items.integer(), 4);
    EXPECT_EQ(items.integer(), -2);
    EXPECT_EQ(items.integer(), 100);
}

TEST(LineItems, a_value_stays_when_no_text_is_left) {
    LineItems items("4 ");
    std::int32_t first = 1;
    float second = 2;
    items.if_left(first);
    items.if_left(second);
    EXPECT_EQ(first, 4);
    EXPECT_EQ(second, 2.0F);
}

TEST(LineItems, numbers_out_of_range_overflow) {
    EXPECT_THROW(LineItems("3000000000").integer(), Fault);
    EXPECT_THROW(LineItems("1e39").single(), Fault);
    EXPECT_THROW(LineItems("1e999").number(), Fault);
}

TEST(AxmWriter, positive_numbers_stand_two_blanks_apart) {
    AxmWriter out;
    out << 2 << -3 << 0.5F << 1e32F << 412345.678 << "No" << 2.0F;
    EXPECT_EQ(out.text(), " 2 -3  0.5  1E+32  412345.678 No 2 ");
}

TEST(AxmWriter, a_line_break_in_a_text_becomes_a_blank) {
    AxmWriter out;
    out << "two\r\nlines\nand\rthree";
    out.end_line();
    EXPECT_EQ(out.text(), "two lines and three\r\n");
}

}  // namespace
}  // namespace anomalis::workspace_file
