#include <gtest/gtest.h>

#include "manual/sample_sheet.h"
#include "manual/workbench_sheet.h"

namespace anomalis::manual {

TEST(Sheet, an_option_shows_its_names_and_what_stands_behind_them) {
    const Sheet dig = sample_sheet().commands[0];
    EXPECT_EQ(option_text(dig.options[0]), "-o, --output FILE");
    EXPECT_EQ(option_text(dig.options[2]), "--tool spade|pick");
    EXPECT_EQ(option_text(dig.options[4]), "-h, --help");
}

TEST(Sheet, many_choices_are_named_by_one_word) {
    EXPECT_EQ(one_of({"a", "b", "c", "d", "e", "f"}, "LETTER").name, "LETTER");
    EXPECT_EQ(one_of({"a", "b"}, "LETTER").name, "a|b");
}

TEST(Sheet, its_usage_names_what_is_needed) {
    EXPECT_EQ(usage_text(sample_sheet().commands[0]), "PLACE -o FILE [options]");
    EXPECT_EQ(usage_text(workbench_sheet()), "[FILE] [options]");
}

TEST(Sheet, a_phrase_ends_where_the_next_begins) {
    EXPECT_EQ(first_phrase("One; two"), "One");
    EXPECT_EQ(first_phrase("One: two. Three"), "One: two");
    EXPECT_EQ(first_phrase("1990.5"), "1990.5");
}

TEST(Sheet, text_is_broken_at_blanks) {
    EXPECT_EQ(wrapped("one two three", 7), "one two\nthree\n");
    EXPECT_EQ(wrapped("longerthanthat a", 7), "longerthanthat\na\n");
}

TEST(Sheet, the_help_of_the_workbench_tells_its_options) {
    const std::string help = help_text(workbench_sheet());
    for (const char* told : {"Usage: anomalis [FILE] [options]", "-h, --help", "-v, --version", "FILE"})
        EXPECT_NE(help.find(told), std::string::npos) << told;
}

}  // namespace anomalis::manual
