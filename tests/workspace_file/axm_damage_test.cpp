#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

#include "workspace_file/axm_samples.h"

// Files that are cut, corrupt or no workspace at all.
namespace anomalis::workspace_file {
namespace {

constexpr const char* prefix = "An error occurred while reading the location file : ";

std::vector<std::string> first_lines(const std::vector<std::string>& lines, std::size_t count) {
    return {lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count)};
}

/// Files that end within the first two lines have nothing that tells what they are.
constexpr std::size_t telling_lines = 2;

TEST(AxmDamage, a_file_cut_after_any_line_fails_with_the_line_and_keeps_whole_bodies_where_that_is_wanted) {
    const std::vector<std::string> lines = whole_file(3);
    const std::size_t lines_of_a_body = body_lines().size();
    for (std::size_t count = telling_lines; count < lines.size(); ++count) {
        SCOPED_TRACE(count);
        Reading r;
        r.damaged = Damaged::kept;
        const int status = r.read_lines(first_lines(lines, count));
        const std::size_t behind_heading = count > 12 ? count - 12 : 0;
        const std::size_t whole = std::min<std::size_t>(behind_heading / lines_of_a_body, 3);
        EXPECT_EQ(r.workspace.body_count, static_cast<int>(whole));
        const bool ends_between_parts = count == 11 || count == 12 + 3 * lines_of_a_body;
        EXPECT_EQ(status, ends_between_parts ? 0 : -1);
        if (ends_between_parts) {
            EXPECT_TRUE(r.prompts.messages.empty());
            continue;
        }
        const std::string line = ", line " + std::to_string(count + 1) + ")";
        EXPECT_EQ(r.prompts.messages,
                  std::vector<std::string>{prefix +
                                           ("Input past end of file (" + r.folder.path("model.axm")) + line});
        EXPECT_EQ(r.workspace.model_file, "");
        for (std::size_t number = 1; number <= whole; ++number)
            EXPECT_EQ(r.workspace.body(static_cast<int>(number)).density.max, 4);
    }
}

TEST(AxmDamage, a_file_cut_after_any_line_leaves_the_workspace_as_it_was) {
    const std::vector<std::string> lines = whole_file(3);
    const std::size_t lines_of_a_body = body_lines().size();
    Reading r;
    ASSERT_EQ(r.read_text(joined(whole_file(2))), 0);
    r.workspace.station_count = 5;
    r.workspace.field.intensity = 4711;
    const std::string before = model_parameters_text(0, r.workspace);
    for (std::size_t count = 0; count < lines.size(); ++count)
        for (const int mode : {-1, 0, 3}) {
            const bool ends_between_parts = count == 11 || count == 12 + 3 * lines_of_a_body;
            // Without the bodies the display block is looked for to the end of the file.
            const bool without_block = mode < 0 && count > 11 && count < 13 + 3 * lines_of_a_body;
            const bool bodies_there = mode > 0 && count > 12 + 3 * lines_of_a_body;
            if (ends_between_parts || without_block || bodies_there) continue;
            SCOPED_TRACE(count);
            const std::string path = r.folder.write("cut.axm", joined(first_lines(lines, count)));
            EXPECT_EQ(r.read(path, mode), -1) << mode;
            EXPECT_EQ(model_parameters_text(0, r.workspace), before) << mode;
            EXPECT_EQ(r.workspace.model_file, r.folder.path("model.axm"));
            EXPECT_EQ(r.workspace.station_count, 5);
        }
}

TEST(AxmDamage, a_file_cut_at_any_byte_neither_crashes_nor_hangs) {
    const std::string text = joined(whole_file(2));
    for (std::size_t length = 0; length < text.size(); length += 7) {
        Reading r;
        r.read_text(text.substr(0, length));
        EXPECT_LE(r.workspace.body_count, 2);
        EXPECT_GE(r.workspace.body_capacity, r.workspace.body_count);
        EXPECT_EQ(r.workspace.bodies.size(), static_cast<std::size_t>(r.workspace.body_capacity) + 1);
    }
}

TEST(AxmDamage, an_absurd_count_takes_no_more_memory_than_the_file_has_bodies) {
    Reading r;
    r.damaged = Damaged::kept;
    std::vector<std::string> lines = whole_file(2);
    lines[11] = " 2147483647  7  500  0  0 ";
    EXPECT_EQ(r.read_lines(first_lines(lines, lines.size() - 4)), -1);
    EXPECT_TRUE(r.prompts.told(std::string(prefix) + "Input past end of file"));
    EXPECT_EQ(r.workspace.body_count, 2);
    EXPECT_EQ(r.workspace.body(2).name, "Body no. 2");
    EXPECT_LT(r.workspace.bodies.capacity(), 64U);
}

TEST(AxmDamage, counts_that_are_negative_or_no_numbers_are_no_bodies) {
    for (const std::string count : {"-1", "-2147483648", "abc", "*", "nan", "inf", "0x10"}) {
        SCOPED_TRACE(count);
        Reading r;
        std::vector<std::string> lines = definition_lines();
        lines.push_back(" " + count + "  7  500  0  0 ");
        append(lines, display_lines());
        EXPECT_EQ(r.read_lines(lines), 0);
        EXPECT_EQ(r.workspace.body_count, 0);
        EXPECT_TRUE(r.workspace.display.valid);
    }
}

TEST(AxmDamage, numbers_out_of_range_fail_with_their_line) {
    for (const auto& [number, line] :
         std::vector<std::pair<std::size_t, std::string>>{{2, " 99999999999  1  1  2  0  0  3  4"},
                                                          {3, " 1e999  0  0"},
                                                          {3, " 1e39  0  0"},
                                                          {12, " 3e9  7"}}) {
        SCOPED_TRACE(line);
        Reading r;
        std::vector<std::string> lines = whole_file();
        lines[number - 1] = line;
        EXPECT_EQ(r.read_lines(lines), -1);
        EXPECT_TRUE(r.prompts.told(prefix + ("Overflow (" + r.folder.path("model.axm")) + ", line " +
                                   std::to_string(number) + ")"));
    }
}

TEST(AxmDamage, line_ends_of_any_kind_read_the_same) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        Reading r;
        EXPECT_EQ(r.read_text(joined(whole_file(2), end)), 0);
        EXPECT_EQ(r.workspace.body_count, 2);
        EXPECT_EQ(r.workspace.body(2).name, "Body no. 2");
        EXPECT_EQ(r.workspace.display.form_width, 9900);
    }
}

TEST(AxmDamage, mixed_line_ends_and_a_last_line_without_one_read_whole) {
    const std::vector<std::string> ends = {"\n", "\r\n", "\r"};
    std::string text;
    const std::vector<std::string> lines = whole_file();
    for (std::size_t i = 0; i < lines.size(); ++i)
        text += lines[i] + (i + 1 < lines.size() ? ends[i % 3] : "");
    Reading r;
    EXPECT_EQ(r.read_text("\xEF\xBB\xBF" + text), 0);
    EXPECT_EQ(r.workspace.definition.data_file, r.folder.path("survey.dat"));
    EXPECT_EQ(r.workspace.display.form_height, 11500);
}

TEST(AxmDamage, letters_beyond_ascii_survive_with_every_line_end) {
    for (const std::string end : {"\r\n", "\n"}) {
        Reading r;
        std::vector<std::string> lines = whole_file();
        lines[12] = " 2  0  1  255  0  Åsele 磁気";
        EXPECT_EQ(r.read_text(joined(lines, end)), 0);
        EXPECT_EQ(r.workspace.body(1).name, "Åsele 磁気");
    }
}

TEST(AxmDamage, what_is_no_file_is_told_and_leaves_the_model_alone) {
    Reading r;
    ASSERT_EQ(r.read_lines(whole_file(2)), 0);
    ASSERT_EQ(::mkfifo(r.folder.path("pipe").c_str(), 0600), 0);
    for (const std::string& path : {r.folder.path("missing.axm"), r.folder.folder(), std::string("/dev/null"),
                                    std::string("/dev/zero"), r.folder.path("pipe"), std::string()}) {
        SCOPED_TRACE(path);
        r.prompts.messages.clear();
        EXPECT_EQ(r.read(path), -1);
        ASSERT_EQ(r.prompts.messages.size(), 1U);
        EXPECT_TRUE(r.prompts.messages[0].starts_with(prefix));
        EXPECT_NE(r.prompts.messages[0].find(path), std::string::npos);
        EXPECT_EQ(r.workspace.body_count, 2);
        EXPECT_EQ(r.workspace.model_file, r.folder.path("model.axm"));
    }
}

TEST(AxmDamage, binary_content_is_no_workspace) {
    Reading r;
    std::string bytes;
    for (int i = 0; i < 4096; ++i) bytes += static_cast<char>((i * 7919) >> 3);
    EXPECT_EQ(r.read_text(bytes), -1);
    EXPECT_TRUE(r.prompts.told(std::string(prefix) + "Not a workspace file"));
    EXPECT_EQ(r.workspace.body_count, 0);
}

TEST(AxmDamage, what_was_kept_of_a_damaged_file_can_be_worked_with) {
    Reading r;
    r.damaged = Damaged::kept;
    const std::vector<std::string> lines = whole_file(3);
    ASSERT_EQ(r.read_lines(first_lines(lines, 25)), -1);
    EXPECT_EQ(r.workspace.body_count, 1);
    reserve_next_body(r.workspace);
    EXPECT_GT(r.workspace.body_capacity, r.workspace.body_count);
    EXPECT_EQ(write_model_parameters(0, r.folder.path("again.axm"), r.workspace, r.prompts), 0);
    EXPECT_EQ(r.read_lines(lines), 0);
    EXPECT_EQ(r.workspace.body_count, 3);
}

}  // namespace
}  // namespace anomalis::workspace_file
