#include "core/shown_text.h"

#include <gtest/gtest.h>

namespace anomalis {

TEST(ShownText, plain_texts_of_any_language_stay_as_they_are) {
    for (const std::string text :
         {"", "West dyke", "C:\\data\\line 7.dat", "\xC3\x96st\xC3\xB6lich \xE6\xBC\xA2",
          "<b>bold</b> & \"quoted\"", "\xF0\x9F\x8C\x8D"})
        EXPECT_EQ(shown_text(text), text);
}

TEST(ShownText, control_characters_are_escaped) {
    EXPECT_EQ(shown_text("\x1B[2Jgone"), "\\u{1B}[2Jgone");
    EXPECT_EQ(shown_text("a\x7F"), "a\\u{7F}");
    EXPECT_EQ(shown_text("\xC2\x9B"
                         "31m"),
              "\\u{9B}31m")
        << "the one-byte form of ESC [";
    EXPECT_EQ(shown_text(std::string_view("a\0b", 3)), "a\\u{00}b");
    EXPECT_EQ(shown_text("two\r\nlines\tand a tab"), "two\\r\\nlines\\tand a tab");
}

TEST(ShownText, marks_of_direction_and_separators_are_escaped) {
    EXPECT_EQ(shown_text("gpj.\xE2\x80\xAE"
                         "exe"),
              "gpj.\\u{202E}exe");
    EXPECT_EQ(shown_text("\xE2\x81\xA6\xE2\x81\xA9"), "\\u{2066}\\u{2069}");
    EXPECT_EQ(shown_text("\xE2\x80\xA8"), "\\u{2028}");
    EXPECT_EQ(shown_text("\xEF\xBB\xBF"), "\\u{FEFF}");
}

TEST(ShownText, bytes_that_are_no_utf8_are_told_one_by_one) {
    EXPECT_EQ(shown_text("\xE4"
                         "b\xFF"),
              "\\xE4b\\xFF");
    EXPECT_EQ(shown_text("\x9B"
                         "31m"),
              "\\x9B31m");
}

TEST(ShownText, a_message_keeps_its_lines) {
    EXPECT_EQ(shown_lines("one\n\ttwo\r\x1B"), "one\n\ttwo\\r\\u{1B}");
    EXPECT_EQ(shown_lines("a, b\r\n1, 2\r\n"), "a, b\r\n1, 2\r\n");
    EXPECT_EQ(shown_lines("over\rwritten"), "over\\rwritten") << "it would go back to the start of the line";
}

TEST(ShownText, what_is_shown_is_shown_again_unchanged) {
    const std::string once = shown_text("\x1B\n\xE2\x80\xAE\xFF\\");
    EXPECT_EQ(shown_text(once), once);
}

}  // namespace anomalis
