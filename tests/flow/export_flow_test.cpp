#include "flow/export_flow.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/paths.h"
#include "edit/line_sample.h"
#include "output/clean_tables.h"
#include "output/tables.h"

namespace anomalis::flow {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(ExportFlow, without_stations_nothing_is_asked) {
    edit::LineSample sample;
    EXPECT_EQ(export_profile_data(sample.workbench).outcome, ExportOutcome::nothing);
    EXPECT_THAT(sample.prompts.save_requests, IsEmpty());
}

TEST(ExportFlow, the_profile_is_calculated_before_it_is_written) {
    edit::LineSample sample;
    sample.add_body(1260, 60);
    sample.load();
    sample.workspace().model_file = "/survey/line 1.axm";
    sample.prompts.save_paths = {sample.folder.path("profile")};
    const Exported exported = export_profile_data(sample.workbench);
    EXPECT_EQ(exported.outcome, ExportOutcome::written);
    EXPECT_EQ(exported.path, sample.folder.path("profile.csv")) << "the ending was added";
    EXPECT_THAT(sample.prompts.messages, IsEmpty()) << "who asked for it tells";
    EXPECT_EQ(sample.folder.read("profile.csv"), output::profile_table_text(sample.workspace()));
    EXPECT_NE(sample.workspace().mag.data(50, row_raw, stage_calculated), 0);
    EXPECT_GT(sample.workspace().stations(1, column_sensor), 0);
    const FileRequest& request = sample.prompts.save_requests.at(0);
    EXPECT_EQ(request.title, "Select the profile data file to create");
    EXPECT_EQ(request.filter, "Profile Data Files (*.csv)|*.csv|All files (*.*)|*.*");
    EXPECT_EQ(request.default_name, "/survey/line 1.csv");
}

TEST(ExportFlow, a_cancel_or_a_no_says_nothing) {
    edit::LineSample sample;
    sample.load();
    const std::string old = sample.folder.write("old.csv", "old");
    sample.prompts.save_paths = {std::nullopt, old};
    EXPECT_EQ(export_profile_data(sample.workbench).outcome, ExportOutcome::cancelled);
    EXPECT_EQ(export_profile_data(sample.workbench).outcome, ExportOutcome::cancelled);
    EXPECT_THAT(sample.prompts.messages, IsEmpty());
    EXPECT_EQ(sample.folder.read("old.csv"), "old");
}

TEST(ExportFlow, a_failure_is_told_and_is_not_complete) {
    edit::LineSample sample;
    sample.load();
    sample.prompts.save_paths = {sample.folder.path("no/such/a.csv")};
    EXPECT_EQ(export_profile_data(sample.workbench).outcome, ExportOutcome::failed);
    EXPECT_EQ(sample.prompts.messages.size(), 1U);
    EXPECT_TRUE(sample.prompts.told("An error occurred while writing the file: "));
}

TEST(ExportFlow, clean_tables_are_calculated_and_written_under_names_of_their_own) {
    edit::LineSample sample;
    EXPECT_EQ(export_clean_profile(sample.workbench).outcome, ExportOutcome::nothing);
    EXPECT_EQ(export_clean_model(sample.workbench).outcome, ExportOutcome::nothing);
    sample.add_body(1260, 60);
    sample.load();
    sample.workspace().model_file = sample.folder.path("line.axm");
    sample.prompts.save_paths = {sample.folder.path("p.csv"), sample.folder.path("m.csv")};
    EXPECT_EQ(export_clean_profile(sample.workbench).outcome, ExportOutcome::written);
    EXPECT_EQ(export_clean_model(sample.workbench).outcome, ExportOutcome::written);
    EXPECT_EQ(sample.folder.read("p.csv"), output::clean_profile_table_text(sample.workspace()));
    EXPECT_EQ(sample.folder.read("m.csv"), output::clean_model_table_text(sample.workspace()));
    EXPECT_EQ(sample.prompts.save_requests[0].default_name, sample.folder.path("line_profile_clean.csv"));
    EXPECT_EQ(sample.prompts.save_requests[1].default_name, sample.folder.path("line_model_clean.csv"));
}

TEST(ExportFlow, a_table_says_what_failed_however_long_ago_it_was_told) {
    edit::LineSample sample;
    ModelBody& body = sample.add_body(1260, 60, pipe);
    body.length.value = 500;
    body.num_sectors = 10'000'000;
    sample.workspace().formulas = Formulas::exact;
    sample.load();
    sample.prompts.save_paths = {sample.folder.path("p.csv"), sample.folder.path("q.csv"),
                                 sample.folder.path("c.csv"), sample.folder.path("m.csv")};
    EXPECT_EQ(export_profile_data(sample.workbench).outcome, ExportOutcome::written);
    EXPECT_EQ(export_profile_data(sample.workbench).outcome, ExportOutcome::written);
    EXPECT_EQ(export_clean_profile(sample.workbench).outcome, ExportOutcome::written);
    EXPECT_EQ(export_clean_model(sample.workbench).outcome, ExportOutcome::written);
    const auto first_line = [&](const char* name) {
        const std::string text = sample.folder.read(name);
        return text.substr(0, text.find_first_of("\r\n"));
    };
    EXPECT_THAT(first_line("p.csv"), HasSubstr("WITH FAILURES"));
    EXPECT_THAT(first_line("p.csv"), HasSubstr("Body 1"));
    EXPECT_EQ(sample.folder.read("q.csv"), sample.folder.read("p.csv")) << "nothing was calculated anew";
    EXPECT_THAT(first_line("c.csv"), EndsWith(",failures"));
    EXPECT_THAT(first_line("m.csv"), EndsWith(",failures"));
}

TEST(ExportFlow, a_picture_goes_beside_the_model) {
    Workspace workspace;
    EXPECT_EQ(screenshot_path(workspace, ScreenshotKind::form, false), "");
    EXPECT_EQ(screenshot_path(workspace, ScreenshotKind::charts, true), "");
    workspace.model_file = "/survey/line 1.axm";
    EXPECT_EQ(screenshot_path(workspace, ScreenshotKind::form, false), "/survey/line 1_model_form.bmp");
    EXPECT_EQ(screenshot_path(workspace, ScreenshotKind::charts, false), "/survey/line 1_model_graph.bmp");
    EXPECT_EQ(screenshot_path(workspace, ScreenshotKind::charts, true), "/survey/line 1_plan.bmp");
    EXPECT_EQ(screenshot_path(workspace, ScreenshotKind::form, true), "/survey/line 1_plan.bmp");
}

TEST(ExportFlow, nothing_is_exported_over_a_file_that_is_open) {
    edit::LineSample sample;
    sample.add_body(1260, 60);
    sample.load();
    sample.workspace().model_file = sample.folder.write("line.axm", "a workspace");
    const std::string data = sample.folder.read("line.dat");
    for (const auto flow : {export_profile_data, export_clean_profile, export_clean_model}) {
        for (const char* name : {"line.dat", "./line.axm"}) {
            sample.prompts.messages.clear();
            sample.prompts.yes_no = {true};
            sample.prompts.save_paths = {sample.folder.path(name)};
            EXPECT_EQ(flow(sample.workbench).outcome, ExportOutcome::failed);
            ASSERT_EQ(sample.prompts.messages.size(), 1U);
            EXPECT_TRUE(sample.prompts.told("Nothing was written")) << sample.prompts.messages[0];
        }
    }
    EXPECT_EQ(sample.folder.read("line.dat"), data);
    EXPECT_EQ(sample.folder.read("line.axm"), "a workspace");
}

}  // namespace
}  // namespace anomalis::flow
