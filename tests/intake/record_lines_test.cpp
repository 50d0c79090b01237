#include "intake/record_lines.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "core/workspace.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;

constexpr LineUse comment = LineUse::comment, passed = LineUse::passed_over, taken = LineUse::record;

std::vector<LineUse> uses(const DataDefinition& definition, const std::vector<std::string_view>& lines) {
    RecordLines rule(definition);
    std::vector<LineUse> found;
    for (const std::string_view line : lines) {
        if (rule.ended()) break;
        found.push_back(rule.take(record_text(line)));
        if (found.back() == taken) rule.accept_record();
    }
    return found;
}

TEST(RecordLines, the_text_of_a_line_starts_behind_blanks_and_tabs) {
    EXPECT_EQ(record_text(" \t 1 2 \t "), "1 2 \t");
    EXPECT_EQ(record_text("1"), "1");
    for (const char* blank : {"", " ", "\t", " \t \t"}) EXPECT_EQ(record_text(blank), "");
}

TEST(RecordLines, blank_lines_use_up_the_step_and_comments_do_not) {
    DataDefinition definition;
    EXPECT_THAT(uses(definition, {"1", "", "\t", "! c", "\\ c", "2"}),
                ElementsAre(taken, passed, passed, comment, comment, taken));
    definition.read_increment = 2;
    EXPECT_THAT(uses(definition, {"10", "11", "! c", "12", "", "\t", "13", "14", "15"}),
                ElementsAre(passed, taken, comment, passed, passed, passed, taken, passed, taken));
}

TEST(RecordLines, the_final_line_counts_comments_and_ends_at_a_record_alone) {
    DataDefinition definition;
    definition.last_data_line = 2;
    EXPECT_THAT(uses(definition, {"! c", "", "1", "2"}), ElementsAre(comment, passed, taken));
    EXPECT_THAT(uses(definition, {"1", "2", "3"}), ElementsAre(taken, taken));
    RecordLines rule(definition);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(rule.take("not a number"), taken);
    EXPECT_FALSE(rule.ended()) << "none of them gave its values";
}

}  // namespace
}  // namespace anomalis::intake
