#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "intake/formats/survey_file.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsNan;

const std::string survey_text =
    "/ exported by hand\n/\n/      X         Y      RADALT     TMI\n/ ======== ========= ======= =======\n"
    "Line 5690\n  450000.0 7550000.0   60.1   52000.5\n  450010.0 7550000.0     *     52001.5\n"
    "Tie 9010\n  450000.0 7550000.0   60.3   *\n//Flight 3\n  450000.0 7550010.0   60.4   52003.5\n"
    "Line 5690\n  450020.0 7550000.0   60.5   52004.5\n";

TEST(XyzLines, rows_belong_to_the_header_above_them) {
    const SurveyOf survey(survey_text, "survey.xyz");
    EXPECT_EQ(survey.layout.format, "XYZ lines");
    EXPECT_TRUE(survey.layout.line_headers);
    EXPECT_EQ(survey.layout.names_row, 3);
    const ReadSurvey read = survey.read();
    EXPECT_THAT(read.line, ElementsAre("5690", "5690", "9010", "9010", "5690"));
    EXPECT_THAT(read.ties, ElementsAre(false, true));
    EXPECT_THAT(read.losses, IsEmpty());
    EXPECT_THAT(read[Role::clearance], ElementsAre(60.1, IsNan(), 60.3, 60.4, 60.5));
    EXPECT_THAT(read[Role::mag], ElementsAre(52000.5, 52001.5, IsNan(), 52003.5, 52004.5));
}

TEST(XyzLines, names_below_the_first_header_and_none_at_all) {
    const SurveyOf below("LINE 10\nx y mag\n450000 7550000 5\n450010 7550000 6\n", "a.xyz");
    EXPECT_EQ(below.layout.names_row, 2);
    EXPECT_EQ(below.read().line_names, std::vector<std::string>{"10"});
    const SurveyOf none(
        "Line L10:1\n450000 7550000 5\n450010 7550000 6\nLine L20:1\n450000 7550010 5\n450010 7550010 8\n",
        "b.xyz");
    EXPECT_EQ(none.layout.columns[0].name, "Column 1");
    EXPECT_THAT(none.read().line_names, ElementsAre("L10:1", "L20:1"));
    EXPECT_TRUE(none.has_remark("by their values"));
}

TEST(XyzLines, a_row_before_any_header_names_no_line) {
    const ReadSurvey read =
        SurveyOf("x y mag\n450000 7550000 5\nLine 10\n450010 7550000 6\n450020 7550000 6\n", "a.xyz").read();
    EXPECT_THAT(read.line, ElementsAre("10", "10"));
    ASSERT_EQ(read.losses.size(), 1U);
    EXPECT_EQ(read.losses[0].why, "it names no line");
    EXPECT_EQ(read.losses[0].first_line, 2);
}

TEST(XyzLines, a_line_of_names_that_begins_with_line_is_no_header) {
    const SurveyOf survey("line east north mag\n10 450000 7550000 5\n10 450010 7550000 6\n", "a.xyz");
    EXPECT_EQ(survey.layout.format, "Text table");
    EXPECT_EQ(survey.role("line"), "line");
}

}  // namespace
}  // namespace anomalis::intake
