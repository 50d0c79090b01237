#include "core/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "core/near_names.h"
#include "core/safe_name.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;

/// All tokens until the line is used up.
std::vector<std::string> tokens(std::string_view line) {
    std::vector<std::string> all;
    while (!line.empty()) all.emplace_back(next_token(line));
    return all;
}

TEST(NextToken, blanks_and_tabs_part_tokens) {
    EXPECT_THAT(tokens("1 2"), ElementsAre("1", "2"));
    EXPECT_THAT(tokens("  1 \t\t 2\t"), ElementsAre("1", "2"));
    EXPECT_THAT(tokens("\t1"), ElementsAre("1"));
}

TEST(NextToken, one_separator_is_dropped_with_the_blanks_before_it) {
    EXPECT_THAT(tokens("1, 2"), ElementsAre("1", "2"));
    EXPECT_THAT(tokens("1 , 2"), ElementsAre("1", "2"));
    EXPECT_THAT(tokens("1;2,3"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(tokens("1,"), ElementsAre("1"));
}

TEST(NextToken, nothing_between_two_separators_is_an_empty_token) {
    EXPECT_THAT(tokens("1,,2"), ElementsAre("1", "", "2"));
    EXPECT_THAT(tokens(",1"), ElementsAre("", "1"));
    EXPECT_THAT(tokens("1, ,;2"), ElementsAre("1", "", "", "2"));
}

TEST(NextToken, an_apostrophe_splits_a_token) {
    EXPECT_THAT(tokens("O'Brien"), ElementsAre("O", "Brien"));
    EXPECT_THAT(tokens("'a'"), ElementsAre("", "a"));
}

TEST(NextToken, a_quoted_token_may_hold_separators) {
    EXPECT_THAT(tokens("\"two words\" 5"), ElementsAre("two words", "5"));
    EXPECT_THAT(tokens("\"a,b;c'd\",5"), ElementsAre("a,b;c'd", "5"));
    EXPECT_THAT(tokens("\"  trimmed  \" 5"), ElementsAre("trimmed", "5"));
    EXPECT_THAT(tokens("\"\",5"), ElementsAre("", "5"));
    EXPECT_THAT(tokens("\"a\"b"), ElementsAre("a", "b"));
}

TEST(NextToken, a_quote_without_a_partner_is_dropped) {
    EXPECT_THAT(tokens("\"two words"), ElementsAre("two", "words"));
    EXPECT_THAT(tokens("\" \t two"), ElementsAre("two"));
    EXPECT_THAT(tokens("1 \"2"), ElementsAre("1", "2"));
}

TEST(NextToken, a_lone_quote_is_nothing) {
    EXPECT_THAT(tokens("\""), ElementsAre(""));
    EXPECT_THAT(tokens("  \"  "), ElementsAre(""));
    EXPECT_THAT(tokens("\"\t"), ElementsAre(""));
    EXPECT_THAT(tokens("5 \""), ElementsAre("5", ""));
}

TEST(NextToken, an_empty_line_gives_an_empty_token_and_stays_empty) {
    for (const char* text : {"", "   ", "\t", " \t \t"}) {
        std::string_view line = text;
        EXPECT_EQ(next_token(line), "");
        EXPECT_EQ(line, "");
    }
}

TEST(NextToken, a_quote_inside_a_token_is_part_of_it) {
    EXPECT_THAT(tokens("5\" 6\""), ElementsAre("5\"", "6\""));
}

TEST(TrimBlanks, takes_blanks_and_leaves_tabs) {
    EXPECT_EQ(trim_blanks("  a b  "), "a b");
    EXPECT_EQ(trim_blanks(" \ta\t "), "\ta\t");
    EXPECT_EQ(trim_blanks("   "), "");
}

TEST(Flags, only_no_false_and_0_are_false) {
    for (const char* text : {"NO", "no", "No", "FALSE", "False", "0"})
        EXPECT_FALSE(text_to_flag(text)) << text;
    for (const char* text : {"YES", "TRUE", "1", "-1", "", "00", "none", "N"})
        EXPECT_TRUE(text_to_flag(text)) << text;
    EXPECT_EQ(flag_to_text(true), "Yes");
    EXPECT_EQ(flag_to_text(false), "No");
    EXPECT_TRUE(text_to_flag(flag_to_text(true)));
    EXPECT_FALSE(text_to_flag(flag_to_text(false)));
}

TEST(TrimAtNul, what_follows_a_nul_is_no_text) {
    EXPECT_EQ(trim_at_nul(std::string_view("  ab \0cd", 8)), "ab");
    EXPECT_EQ(trim_at_nul(std::string_view("\0cd", 3)), "");
    EXPECT_EQ(trim_at_nul(" ab "), "ab");
}

TEST(EqualIgnoringCase, compares_letters_and_lengths) {
    EXPECT_TRUE(equal_ignoring_case("Sphere", "SPHERE"));
    EXPECT_FALSE(equal_ignoring_case("Sphere", "Spheres"));
    EXPECT_FALSE(equal_ignoring_case("a", "b"));
    EXPECT_TRUE(equal_ignoring_case("", ""));
}

TEST(SingleLine, line_breaks_of_every_kind_become_one_blank_each) {
    EXPECT_EQ(single_line("a\r\nb\nc\rd"), "a b c d");
    EXPECT_EQ(single_line("\n\n"), "  ");
    EXPECT_EQ(single_line("plain\ttext"), "plain\ttext");
    EXPECT_EQ(single_line(""), "");
}

TEST(NearNames, CountChangedLettersOrWordsInAnotherOrder) {
    EXPECT_EQ(letters_apart("most", "mots"), 2U);
    EXPECT_EQ(letters_apart("", "abc"), 3U);
    const std::vector<std::string> known{"find", "find-most", "find-kinds", "noise-mag", "line"};
    EXPECT_EQ(nearest_names("mag_noise", known).front(), "noise-mag");
    EXPECT_EQ(nearest_names("FIND MOTS", known).front(), "find-most");
    EXPECT_EQ(nearest_names("kinds", known).front(), "find-kinds");
    EXPECT_EQ(nearest_names("lime", known, 2).size(), 2U);
    EXPECT_TRUE(nearest_names("x", {}).empty());
}

TEST(SafeName, HasWhatAnyFileSystemTakes) {
    EXPECT_EQ(safe_name(" L 10/2:a "), "L_10_2_a");
    EXPECT_EQ(safe_name(".."), "_.");
    EXPECT_EQ(safe_name("größe"), "größe");
    EXPECT_EQ(safe_name(std::string(99, 'a') + "ü").size(), 99U) << "no half of a letter";
}

}  // namespace
}  // namespace anomalis
