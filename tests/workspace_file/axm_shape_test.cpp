#include "workspace_file/axm_shape.h"

#include <gtest/gtest.h>

#include "workspace_file/axm_samples.h"

namespace anomalis::workspace_file {
namespace {

std::string table_of_data(int columns, int lines) {
    std::string text = "a heading\n";
    for (int line = 0; line < lines; ++line) {
        for (int column = 0; column < columns; ++column) text += std::to_string(line + column) + ".5 ";
        text += "\n";
    }
    return text;
}

TEST(AxmShape, every_file_that_is_written_has_it_in_all_its_line_ends) {
    for (const std::string end : {"\r\n", "\n", "\r"})
        EXPECT_TRUE(has_workspace_shape(joined(whole_file(2), end)));
    EXPECT_TRUE(has_workspace_shape(joined(definition_lines())));
    EXPECT_TRUE(has_workspace_shape("\xEF\xBB\xBF" + joined(whole_file())));
}

TEST(AxmShape, the_short_lines_of_old_files_have_it) {
    std::vector<std::string> lines = whole_file();
    lines[0] = "";
    lines[1] = " 2 1 1 2 0 0 3";
    lines[3] = " 7";
    lines[4] = "56000 0 10";
    EXPECT_TRUE(has_workspace_shape(joined(lines)));
}

TEST(AxmShape, a_damaged_line_or_two_leave_it_so_that_the_damage_is_told_by_its_line) {
    for (std::size_t first = 1; first < 11; ++first)
        for (std::size_t second = first; second < 11; ++second) {
            std::vector<std::string> lines = whole_file();
            lines[first] = "56x -65x abc";
            lines[second] = "";
            EXPECT_TRUE(has_workspace_shape(joined(lines))) << first << ", " << second;
        }
}

TEST(AxmShape, a_file_that_was_cut_has_it_from_its_second_line_on) {
    const std::vector<std::string> lines = whole_file();
    for (std::size_t count = 0; count <= lines.size(); ++count)
        EXPECT_EQ(
            has_workspace_shape(joined({lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count)})),
            count >= 2)
            << count;
}

TEST(AxmShape, no_table_of_data_has_it) {
    for (int columns = 1; columns <= 20; ++columns)
        for (const int lines : {10, 11, 12, 100})
            EXPECT_FALSE(has_workspace_shape(table_of_data(columns, lines))) << columns << ", " << lines;
}

TEST(AxmShape, neither_prose_nor_bytes_nor_nothing_has_it) {
    std::string bytes;
    for (int i = 0; i < 4096; ++i) bytes += static_cast<char>((i * 7919) >> 3);
    for (const std::string& text :
         {std::string(), std::string("\n\n\n\n\n\n\n\n\n\n\n\n"), std::string(100, '\0'), bytes,
          std::string("# Anomalis\n\nExplains 2 anomalies.\n\n1. build\n2. run\n3. read\n"),
          std::string("{\"a\": [1, 2, 3],\n 1, 2\n}\n"), std::string("one line without an end")})
        EXPECT_FALSE(has_workspace_shape(text)) << text.substr(0, 20);
}

}  // namespace
}  // namespace anomalis::workspace_file
