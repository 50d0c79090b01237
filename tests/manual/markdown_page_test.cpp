#include <gtest/gtest.h>

#include "manual/sample_sheet.h"

namespace anomalis::manual {

TEST(MarkdownPage, a_bar_in_a_cell_is_no_border) {
    const std::string page = markdown_page(sample_sheet());
    EXPECT_NE(page.find("| `--tool spade\\|pick` | With it [spade] |\n"), std::string::npos) << page;
}

TEST(MarkdownPage, a_command_has_a_heading_its_usage_and_its_examples) {
    const std::string page = markdown_page(sample_sheet());
    for (const char* told :
         {"# Commands of prog-x\n", "\n## dig\n", "| [dig](#dig) |", "\nprog-x dig PLACE -o FILE",
          "```sh\nprog dig a.axm -o b.png\n```", "Dig with `--tool` spade:"})
        EXPECT_NE(page.find(told), std::string::npos) << told;
}

}  // namespace anomalis::manual
