#include "core/utf8.h"

#include <gtest/gtest.h>

namespace anomalis {
namespace {

const std::string capital_a_ring = "\xC3\x85";
const std::string earth = "\xE5\x9C\xB0";
const std::string globe = "\xF0\x9F\x8C\x8D";

TEST(Utf8, the_first_character_of_each_length) {
    for (const auto& [text, code] : {std::pair{std::string("a"), U'a'},
                                     {capital_a_ring, U'\u00C5'},
                                     {earth, U'\u5730'},
                                     {globe, U'\U0001F30D'}}) {
        const Utf8Character found = first_character(text + "rest");
        EXPECT_EQ(found.code, code) << text;
        EXPECT_EQ(found.length, text.size()) << text;
        std::string back;
        append_utf8(back, code);
        EXPECT_EQ(back, text);
    }
    EXPECT_EQ(first_character(std::string("\0", 1)).length, 1U);
}

TEST(Utf8, what_is_no_character_has_no_length) {
    for (const char* text : {"", "\x85", "\xC3",
                             "\xC3"
                             "a",
                             "\xE5\x9C",
                             "\xE5\x9C"
                             "a",
                             "\xF0\x9F\x8C", "\xFF", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80",
                             "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80"})
        EXPECT_EQ(first_character(text).length, 0U) << text;
}

TEST(Utf8, characters_beyond_16_bits_are_pairs_in_utf_16) {
    std::u16string text;
    for (const char32_t code : {U'a', U'\u5730', U'\uFFFD', U'\U0001F30D', U'\U0010FFFF'})
        append_utf16(text, code);
    EXPECT_EQ(text, u"a\u5730\uFFFD\U0001F30D\U0010FFFF");
}

}  // namespace
}  // namespace anomalis
