#include "core/line_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "core/failure.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<std::string> lines_of(const std::string& contents, int style) {
    const TempFolder folder;
    LineReader reader(folder.write("lines.dat", contents));
    std::vector<std::string> lines;
    while (!reader.at_end()) lines.emplace_back(reader.next(style));
    EXPECT_EQ(reader.line_number(), static_cast<long>(lines.size()));
    EXPECT_EQ(reader.next(style), "");
    return lines;
}

int style_of(const std::string& contents) {
    const TempFolder folder;
    return LineReader(folder.write("style.dat", contents)).detect_line_style();
}

std::string failure_of(const std::string& path) {
    try {
        LineReader reader(path);
    } catch (const std::exception& failure) {
        return failure.what();
    }
    return "no failure";
}

TEST(LineStyle, a_carriage_return_near_the_start_makes_style_0) {
    EXPECT_EQ(style_of("1 2 3\r4 5 6\r"), 0);
    EXPECT_EQ(style_of("1 2 3\r\n4 5 6\r\n"), 0);
    EXPECT_EQ(style_of(std::string(511, 'a') + "\r"), 0);
}

TEST(LineStyle, no_carriage_return_within_512_characters_makes_style_1) {
    EXPECT_EQ(style_of("1 2 3\n4 5 6\n"), 1);
    EXPECT_EQ(style_of(""), 1);
    EXPECT_EQ(style_of(std::string(512, 'a') + "\r\nb\r\n"), 1);
}

TEST(LineStyle, a_leading_byte_order_mark_makes_style_1) {
    EXPECT_EQ(style_of("\xEF\xBB\xBF"
                       "1 2\r\n3 4\r\n"),
              1);
    EXPECT_EQ(style_of("1\xEF\r\n"), 0);
}

TEST(LineStyle, rewinds_the_file) {
    const TempFolder folder;
    LineReader reader(folder.write("a.dat", "first\nsecond\n"));
    EXPECT_EQ(reader.read_lf_line(), "first");
    EXPECT_EQ(reader.detect_line_style(), 1);
    EXPECT_EQ(reader.line_number(), 0);
    EXPECT_EQ(reader.read_lf_line(), "first");
}

TEST(SystemLine, ends_at_CR_and_at_CR_LF_but_not_at_LF) {
    EXPECT_THAT(lines_of("a\rb\r\nc\nd\r\n\r\r\ne", 0), ElementsAre("a", "b", "c\nd", "", "", "e"));
}

TEST(SystemLine, keeps_every_other_character) {
    EXPECT_THAT(lines_of(std::string("a\tb\0c\xE9", 6) + "\r\n", 0),
                ElementsAre(std::string("a\tb\0c\xE9", 6)));
}

TEST(TolerantLine, ends_at_LF_at_CR_LF_and_at_a_lone_CR) {
    EXPECT_THAT(lines_of("a\nb\r\nc\rd\n\n\r\r\ne", 1), ElementsAre("a", "b", "c", "d", "", "", "", "e"));
}

TEST(TolerantLine, makes_blanks_of_tabs_and_drops_what_cannot_be_printed) {
    EXPECT_THAT(lines_of(std::string("1\t2\0\x01 3~\x7F\xC3\xA9\n", 12), 1), ElementsAre("1 2 3~"));
    EXPECT_THAT(lines_of("\xEF\xBB\xBF"
                         "x y\nz\n",
                         1),
                ElementsAre("x y", "z"));
}

TEST(TolerantLine, gives_a_long_line_in_pieces) {
    const std::string part(LineReader::longest_lf_line, 'a');
    EXPECT_THAT(lines_of(part + "\nb\n", 1), ElementsAre(part, "b"));
    EXPECT_THAT(lines_of(part + "c\nb\n", 1), ElementsAre(part, "c", "b"));
    EXPECT_THAT(lines_of(part + part, 1), ElementsAre(part, part));
}

TEST(LineReader, an_empty_file_has_no_lines) {
    EXPECT_TRUE(lines_of("", 0).empty());
    EXPECT_TRUE(lines_of("", 1).empty());
}

TEST(LineReader, a_last_line_without_an_end_is_a_line) {
    EXPECT_THAT(lines_of("1 2\n3 4", 1), ElementsAre("1 2", "3 4"));
    EXPECT_THAT(lines_of("1 2\r\n3 4", 0), ElementsAre("1 2", "3 4"));
    EXPECT_THAT(lines_of("1 2\r", 0), ElementsAre("1 2"));
}

/// Lines of many lengths put every kind of line end on every place of the buffer's edge.
TEST(LineReader, lines_do_not_depend_on_where_the_buffer_ends) {
    for (const std::string end : {"\n", "\r", "\r\n"}) {
        for (const int style : {0, 1}) {
            if (style == 0 && end == "\n") continue;
            std::string contents;
            std::vector<std::string> expected;
            for (std::size_t i = 0; contents.size() < 300000; ++i) {
                expected.emplace_back(i * 7919 % 1531, static_cast<char>('a' + i % 26));
                contents += expected.back() + end;
            }
            EXPECT_EQ(lines_of(contents, style), expected);
        }
    }
}

TEST(LineReader, a_line_of_ten_million_characters_is_read) {
    const std::string huge(10'000'000, '7');
    const auto whole = lines_of(huge + "\r1\r", 0);
    ASSERT_EQ(whole.size(), 2U);
    EXPECT_EQ(whole[0].size(), huge.size());
    EXPECT_EQ(whole[1], "1");

    std::size_t total = 0;
    const auto pieces = lines_of(huge, 1);
    for (const auto& piece : pieces) total += piece.size();
    EXPECT_EQ(total, huge.size());
    EXPECT_EQ(pieces.size(), huge.size() / LineReader::longest_lf_line + 1);
}

TEST(LineReader, ten_million_characters_that_cannot_be_printed_are_an_empty_line) {
    EXPECT_THAT(lines_of(std::string(10'000'000, '\0') + "\n5\n", 1), ElementsAre("", "5"));
}

TEST(LineReader, tells_why_a_file_cannot_be_opened) {
    const TempFolder folder;
    EXPECT_EQ(failure_of(folder.path("none.dat")),
              "No such file or directory (" + folder.path("none.dat") + ")");
    EXPECT_EQ(failure_of(folder.folder()), "Is a directory (" + folder.folder() + ")");
    EXPECT_EQ(failure_of("/dev/null"), "Not a regular file (/dev/null)");
    EXPECT_THAT(failure_of(""), HasSubstr("No such file"));
}

TEST(LineReader, does_not_wait_for_a_pipe) {
    const TempFolder folder;
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(failure_of(folder.path("pipe")), "Not a regular file (" + folder.path("pipe") + ")");
}

}  // namespace
}  // namespace anomalis
