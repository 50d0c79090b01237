#include <gtest/gtest.h>

#include "manual/sample_sheet.h"

namespace anomalis::manual {

namespace {

bool holds(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

}  // namespace

TEST(ManPages, a_program_has_its_own_and_one_a_command) {
    const auto pages = man_pages(sample_sheet());
    ASSERT_EQ(pages.size(), 2U);
    EXPECT_EQ(pages[0].path, "man/man1/prog-x.1");
    EXPECT_EQ(pages[1].path, "man/man1/prog-x-dig.1");
    EXPECT_TRUE(holds(pages[0].text, "\\fBprog\\-x\\-dig\\fR(1)"));
}

TEST(ManPages, what_is_keyed_keeps_its_hyphens_and_signs_are_not_requests) {
    const std::string page = man_pages(sample_sheet())[1].text;
    EXPECT_TRUE(holds(page, "\\fB\\-o\\fR, \\fB\\-\\-output\\fR \\fIFILE\\fR"));
    EXPECT_TRUE(holds(page, "\n\\&.starts with a point\n"));
    EXPECT_TRUE(holds(page, "It\\(aqs a back\\eslash"));
    EXPECT_TRUE(holds(page, "Dig with \\-\\-tool spade:"));
    EXPECT_TRUE(holds(page, "prog dig a.axm \\-o b.png"));
}

TEST(ManPages, an_option_tells_whether_it_is_needed_repeated_and_what_is_usual) {
    const std::string page = man_pages(sample_sheet())[1].text;
    EXPECT_TRUE(holds(page, "not there. Needed."));
    EXPECT_TRUE(holds(page, "Role. May be given several times."));
    EXPECT_TRUE(holds(page, "With it [spade]."));
}

TEST(ManPages, sections_without_content_are_left_out) {
    const auto pages = man_pages(sample_sheet());
    EXPECT_TRUE(holds(pages[0].text, ".SH \"EXIT STATUS\""));
    EXPECT_FALSE(holds(pages[1].text, ".SH \"EXIT STATUS\""));
    EXPECT_FALSE(holds(pages[0].text, ".SH \"FILES\""));
}

}  // namespace anomalis::manual
