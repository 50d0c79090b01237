#include "flow/take_line.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "edit/change.h"
#include "edit/line_sample.h"
#include "flow/open_flow.h"
#include "flow/save_flow.h"
#include "model/refresh_model.h"
#include "support/fresh_load.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

/// A saved model with its line on show.
struct TakeLine : edit::LineSample {
    TakeLine() {
        add_body(1260, 60);
        model_path = folder.path("old.axm");
        workspace_file::write_model_parameters(0, model_path, workspace(), prompts);
        open_model_file(workbench, ReadMode::everything, model_path);
        load_line(workbench);
        other_data = folder.write("other.dat", edit::east_line_text(7));
    }
    void set_dip(float dip) {
        workspace().body(1).dip.value = dip;
        edit::note_change(workbench, {"dip", "", false});
    }
    std::string model_path, other_data;
};

}  // namespace

TEST(TakeLine, a_new_data_file_starts_an_untitled_model) {
    TakeLine sample;
    start_with_data_file(sample.workbench, sample.other_data);
    const Workspace& w = sample.workspace();
    EXPECT_EQ(w.model_file, "");
    EXPECT_EQ(w.body_count, 0);
    EXPECT_EQ(w.station_count, 0);
    EXPECT_TRUE(w.source.field_missing);
    EXPECT_TRUE(sample.workbench.unsaved);
    EXPECT_EQ(window_caption(sample.workbench), "Anomalis: untitled, other.dat");
    EXPECT_TRUE(sample.prompts.messages.empty());
    EXPECT_TRUE(load_line(sample.workbench).loaded);
    EXPECT_EQ(w.station_count, 7);
}

TEST(TakeLine, undo_brings_back_name_line_and_saved_mark_in_one_step) {
    TakeLine sample;
    model::refresh_model(sample.session);
    const int stations = sample.workspace().station_count;
    start_with_data_file(sample.workbench, sample.other_data);
    load_line(sample.workbench);
    // Not even the data file is needed.
    std::filesystem::remove(sample.data_path);
    const edit::HistoryStep step = edit::undo_change(sample.workbench);
    EXPECT_TRUE(step.another_file);
    EXPECT_TRUE(step.line_back);
    EXPECT_FALSE(step.line_wanted);
    EXPECT_EQ(sample.workspace().model_file, sample.model_path);
    EXPECT_EQ(sample.workspace().station_count, stations);
    EXPECT_EQ(sample.workspace().body_count, 1);
    EXPECT_FALSE(sample.workbench.unsaved);
    EXPECT_EQ(window_caption(sample.workbench), "Anomalis: old.axm");
}

TEST(TakeLine, undo_brings_back_unsaved_changes_and_the_steps_before_them) {
    TakeLine sample;
    const float before = sample.workspace().body(1).dip.value;
    sample.set_dip(33);
    start_with_data_file(sample.workbench, sample.other_data);
    EXPECT_EQ(sample.workbench.history.undo_name(), "data file");
    edit::undo_change(sample.workbench);
    EXPECT_EQ(sample.workspace().body(1).dip.value, 33);
    EXPECT_TRUE(sample.workbench.unsaved);
    edit::undo_change(sample.workbench);
    EXPECT_EQ(sample.workspace().body(1).dip.value, before);
    EXPECT_FALSE(sample.workbench.unsaved);
}

TEST(TakeLine, redo_brings_the_new_line_again) {
    TakeLine sample;
    start_with_data_file(sample.workbench, sample.other_data);
    load_line(sample.workbench);
    edit::undo_change(sample.workbench);
    const edit::HistoryStep step = edit::redo_change(sample.workbench);
    EXPECT_TRUE(step.line_back);
    EXPECT_EQ(sample.workspace().station_count, 7);
    EXPECT_EQ(sample.workspace().model_file, "");
    EXPECT_EQ(window_caption(sample.workbench), "Anomalis: untitled, other.dat");
    EXPECT_TRUE(sample.workbench.unsaved);
}

TEST(TakeLine, what_comes_back_is_what_a_fresh_load_gives) {
    TakeLine sample;
    start_with_data_file(sample.workbench, sample.other_data);
    load_line(sample.workbench);
    edit::undo_change(sample.workbench);
    sample.set_dip(20);
    edit::undo_change(sample.workbench);
    model::refresh_model(sample.session);
    EXPECT_EQ(difference_from_fresh_load(sample.workspace()), "");
}

TEST(TakeLine, two_untitled_models_are_two) {
    TakeLine sample;
    start_with_data_file(sample.workbench, sample.other_data);
    start_with_data_file(sample.workbench, sample.data_path);
    sample.prompts.save_paths.push_back(sample.folder.path("second.axm"));
    EXPECT_EQ(save_model(SaveMode::with_dialog, sample.workbench, {}), SaveOutcome::saved);
    EXPECT_EQ(window_caption(sample.workbench), "Anomalis: second.axm");
    edit::undo_change(sample.workbench);
    EXPECT_EQ(sample.workspace().model_file, "") << "the name belongs to the second one";
    EXPECT_EQ(window_caption(sample.workbench), "Anomalis: untitled, other.dat");
    EXPECT_TRUE(sample.workbench.unsaved);
}

TEST(TakeLine, opening_a_workspace_keeps_the_former_one_with_its_fit_and_its_line) {
    TakeLine sample;
    sample.workspace().fit = FitRecord{};
    sample.workspace().fit->date = "2026-01-02";
    const std::string other = sample.folder.path("new.axm");
    std::filesystem::copy_file(sample.model_path, other);
    EXPECT_EQ(open_model_file(sample.workbench, ReadMode::everything, other), OpenOutcome::opened);
    EXPECT_FALSE(sample.workspace().fit);
    EXPECT_FALSE(sample.workbench.unsaved);
    EXPECT_TRUE(edit::undo_change(sample.workbench).line_back);
    ASSERT_TRUE(sample.workspace().fit);
    EXPECT_EQ(sample.workspace().fit->date, "2026-01-02");
    EXPECT_EQ(sample.workspace().model_file, sample.model_path);
}

TEST(TakeLine, a_long_line_is_loaded_again_instead_of_kept) {
    TakeLine sample;
    const std::string data = sample.folder.write("long.dat", edit::east_line_text(50'001));
    set_data_file(sample.workbench, data);
    load_line(sample.workbench);
    start_with_data_file(sample.workbench, sample.other_data);
    const edit::HistoryStep step = edit::undo_change(sample.workbench);
    EXPECT_FALSE(step.line_back);
    EXPECT_TRUE(step.line_wanted);
    EXPECT_EQ(sample.workspace().definition.data_file, data);
    EXPECT_EQ(sample.workspace().model_file, sample.model_path);
}

TEST(TakeLine, many_lines_one_after_the_other_come_back_all) {
    TakeLine sample;
    for (int i = 0; i < 7; ++i) {
        start_with_data_file(sample.workbench,
                             sample.folder.write(std::to_string(i) + ".dat", edit::east_line_text(5 + i)));
        load_line(sample.workbench);
    }
    for (int i = 5; i >= 0; --i) {
        const edit::HistoryStep step = edit::undo_change(sample.workbench);
        if (step.line_wanted) load_line(sample.workbench);
        EXPECT_EQ(sample.workspace().station_count, 5 + i);
    }
    edit::undo_change(sample.workbench);
    EXPECT_EQ(sample.workspace().model_file, sample.model_path);
}

TEST(TakeLine, an_example_is_opened_as_a_copy_that_never_writes_it) {
    TakeLine sample;
    std::filesystem::permissions(sample.model_path, std::filesystem::perms::owner_read);
    const auto recent = sample.workbench.recent_files;
    EXPECT_EQ(open_copy(sample.workbench, sample.model_path), OpenOutcome::opened);
    EXPECT_EQ(sample.workspace().body_count, 1);
    EXPECT_EQ(sample.workspace().model_file, "");
    EXPECT_EQ(sample.workbench.recent_files, recent);
    EXPECT_EQ(window_caption(sample.workbench), "Anomalis: untitled, copy of old.axm");
    EXPECT_TRUE(load_line(sample.workbench).loaded);
    EXPECT_EQ(save_model(SaveMode::to_model_file, sample.workbench, {}), SaveOutcome::nameless);
    EXPECT_EQ(open_copy(sample.workbench, sample.folder.path("gone.axm")), OpenOutcome::missing);
}

TEST(TakeLine, what_the_import_met_is_told_by_the_load_of_its_table) {
    TakeLine sample;
    intake::LoadReport met;
    met.line = "5690";
    met.lines_in_file = 12;
    met.dropped = {{"a field is missing", "tmi", 3, 17}};
    Workspace fresh = workspace_of_new_line(sample.workbench);
    fresh.definition = sample.workspace().definition;
    start_untitled(sample.workbench, std::move(fresh), {"import of line 5690", "line 5690", met});
    EXPECT_EQ(sample.workbench.history.undo_name(), "import of line 5690");
    const LoadResult result = load_line(sample.workbench);
    ASSERT_TRUE(sample.workbench.reports.load);
    EXPECT_EQ(sample.workbench.reports.load->line, "5690");
    EXPECT_EQ(sample.workbench.reports.load->lines_in_file, 12);
    ASSERT_EQ(sample.workbench.reports.load->dropped.size(), 1U);
    EXPECT_EQ(sample.workbench.reports.load->stations, sample.workspace().station_count);
    EXPECT_TRUE(result.loaded);
}

}  // namespace anomalis::flow
