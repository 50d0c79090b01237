#include "intake/definition.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/survey.h"

namespace anomalis::intake {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Checked {
    int status;
    std::vector<std::string> messages;
};

Checked check(const std::function<void(DataDefinition&)>& change) {
    Survey survey("0 0 0\n");
    change(survey.workspace.definition);
    const DataDefinition before = survey.workspace.definition;
    const int status = check_data_definitions(survey.workspace, survey.prompts);
    EXPECT_EQ(survey.workspace.definition, before);
    return {status, survey.prompts.messages};
}

void expect_refused(const std::string& message, const std::function<void(DataDefinition&)>& change) {
    const Checked checked = check(change);
    EXPECT_EQ(checked.status, 1);
    EXPECT_THAT(checked.messages, ElementsAre(message));
}

void expect_passed(const std::function<void(DataDefinition&)>& change) {
    const Checked checked = check(change);
    EXPECT_EQ(checked.status, 0);
    EXPECT_THAT(checked.messages, IsEmpty());
}

TEST(CheckDefinitions, each_test_has_its_message) {
    expect_refused("No data file has been specified", [](DataDefinition& d) { d.data_file = "  "; });
    expect_refused("The specified data file does not exist", [](DataDefinition& d) { d.data_file += "x"; });
    expect_refused("The number of the first data line must be positive",
                   [](DataDefinition& d) { d.first_data_line = 0; });
    expect_refused("The data read increment must be positive",
                   [](DataDefinition& d) { d.read_increment = 0; });
    expect_refused("The x column location must be positive", [](DataDefinition& d) { d.x_column = 0; });
    expect_refused("The y column location must be positive", [](DataDefinition& d) { d.y_column = -1; });
    expect_refused("You must specify either a mag column or gravity column",
                   [](DataDefinition& d) { d.mag_column = 0; });
}

TEST(CheckDefinitions, only_the_first_objection_is_shown) {
    expect_refused("The data read increment must be positive", [](DataDefinition& d) {
        d.read_increment = -5;
        d.x_column = d.y_column = d.mag_column = 0;
    });
    expect_refused("The x column location must be positive",
                   [](DataDefinition& d) { d.x_column = d.y_column = 0; });
}

TEST(CheckDefinitions, a_folder_is_no_data_file) {
    Survey survey;
    survey.workspace.definition.data_file = survey.folder.folder();
    EXPECT_EQ(check_data_definitions(survey.workspace, survey.prompts), 1);
    EXPECT_THAT(survey.prompts.messages, ElementsAre("The specified data file does not exist"));
}

TEST(CheckDefinitions, the_last_line_must_lie_behind_the_first_unless_it_is_0) {
    expect_refused("The final data line must be greater than the number of header lines",
                   [](DataDefinition& d) { d.first_data_line = d.last_data_line = 7; });
    expect_passed([](DataDefinition& d) { d.first_data_line = 7, d.last_data_line = 8; });
    expect_passed([](DataDefinition& d) { d.first_data_line = 7, d.last_data_line = 0; });
    expect_passed([](DataDefinition& d) { d.last_data_line = -3; });
}

TEST(CheckDefinitions, gravity_alone_is_enough) {
    expect_passed([](DataDefinition& d) { d.mag_column = 0, d.grav_column = 4; });
}

TEST(CheckDefinitions, brings_the_transform_up_to_date) {
    Survey survey("0 0 0\n");
    survey.workspace.transform.rotation = 90;
    EXPECT_EQ(check_data_definitions(survey.workspace, survey.prompts), 0);
    EXPECT_TRUE(survey.workspace.transform.active);
    EXPECT_NEAR(survey.workspace.transform.sin_rotation, 1, 1e-9);
}

TEST(CheckDefinitions, a_refusal_leaves_the_transform) {
    Survey survey("0 0 0\n");
    survey.workspace.transform.rotation = 90;
    survey.workspace.definition.mag_column = 0;
    EXPECT_EQ(check_data_definitions(survey.workspace, survey.prompts), 1);
    EXPECT_FALSE(survey.workspace.transform.active);
}

TEST(DataFileHead, gives_up_to_64_lines_joined_with_CR_LF) {
    Survey survey("first\nsecond\n\nfourth");
    FileHead head;
    EXPECT_EQ(show_data_file_head(survey.workspace, head, survey.prompts), 0);
    EXPECT_THAT(head.lines, ElementsAre("first", "second", "", "fourth"));
    EXPECT_EQ(head.text, "first\r\nsecond\r\n\r\nfourth");

    std::string many;
    for (int i = 1; i <= 100; ++i) many += std::to_string(i) + "\r\n";
    survey.set_file(many);
    EXPECT_EQ(show_data_file_head(survey.workspace, head, survey.prompts), 0);
    ASSERT_EQ(head.lines.size(), 64U);
    EXPECT_EQ(head.lines.back(), "64");
}

TEST(DataFileHead, an_absent_file_changes_nothing) {
    Survey survey;
    FileHead head{{"old"}, "old"};
    EXPECT_EQ(show_data_file_head(survey.workspace, head, survey.prompts), 0);
    survey.workspace.definition.data_file = survey.folder.path("none.dat");
    EXPECT_EQ(show_data_file_head(survey.workspace, head, survey.prompts), 0);
    survey.workspace.definition.data_file = survey.folder.folder();
    EXPECT_EQ(show_data_file_head(survey.workspace, head, survey.prompts), 0);
    EXPECT_EQ(head.text, "old");
    EXPECT_THAT(survey.prompts.messages, IsEmpty());
}

TEST(DataFileHead, an_empty_file_has_an_empty_head) {
    Survey survey("");
    FileHead head{{"old"}, "old"};
    EXPECT_EQ(show_data_file_head(survey.workspace, head, survey.prompts), 0);
    EXPECT_TRUE(head.lines.empty() && head.text.empty());
}

TEST(DataFileHead, a_line_of_ten_million_characters_is_cut) {
    Survey survey("a\r" + std::string(10'000'000, 'x'));
    FileHead head;
    EXPECT_EQ(show_data_file_head(survey.workspace, head, survey.prompts), 0);
    ASSERT_EQ(head.lines.size(), 2U);
    EXPECT_LT(head.lines[1].size(), 20000U);
}

TEST(DataFileHead, a_device_is_told) {
    Survey survey;
    survey.workspace.definition.data_file = "/dev/null";
    FileHead head;
    EXPECT_EQ(show_data_file_head(survey.workspace, head, survey.prompts), -1);
    EXPECT_TRUE(survey.prompts.told("An error occurred while reading the head of the data file: "));
}

}  // namespace
}  // namespace anomalis::intake
