#include "edit/history.h"

#include <gtest/gtest.h>
#include <random>

#include "core/numbers.h"
#include "edit/change.h"
#include "edit/line_sample.h"
#include "edit/settings_boxes.h"
#include "model/refresh_model.h"
#include "model/stale.h"
#include "support/stale_body.h"
#include "workspace_file/axm.h"

namespace anomalis::edit {

namespace {

History::Clock::time_point test_now;

/// A line with three sheets, all of it saved.
struct HistorySample : LineSample {
    HistorySample() {
        load();
        for (const double distance : {600.0, 1250.0, 1900.0}) add_body(distance, 60);
        for (ModelBody& body : workspace().bodies) body.response.assign(workspace().station_count);
        model::refresh_model(session);
        start_history(workbench);
    }

    /// The file of the model on display: map positions follow the distances there.
    std::string text() {
        model::refresh_model(session);
        return workspace_file::model_parameters_text(0, workspace());
    }
    void set_dip(int number, float dip, const std::string& gesture = {}) {
        workspace().body(number).dip.value = dip;
        invalidate_body(workspace().body(number));
        note_change(workbench, {"dip of body " + std::to_string(number), gesture, false});
    }
    float dip(int number) { return workspace().body(number).dip.value; }
    void remove_all() {
        workspace().body_count = 0;
        note_change(workbench, {"delete all bodies", "", true});
    }
    void remove(int number) {
        Workspace& w = workspace();
        for (int i = number; i < w.body_count; ++i) w.body(i) = w.body(i + 1);
        --w.body_count;
        note_change(workbench, {"delete", "", true});
    }
};

}  // namespace

TEST(History, takes_a_change_back_and_makes_it_again) {
    HistorySample sample;
    const float before = sample.dip(2);
    EXPECT_FALSE(sample.workbench.history.can_undo());
    sample.set_dip(2, 35);
    EXPECT_EQ(sample.workbench.history.undo_name(), "dip of body 2");
    EXPECT_TRUE(undo_change(sample.workbench).moved);
    EXPECT_EQ(sample.dip(2), before);
    EXPECT_EQ(sample.workbench.history.redo_name(), "dip of body 2");
    EXPECT_FALSE(undo_change(sample.workbench).moved);
    EXPECT_TRUE(redo_change(sample.workbench).moved);
    EXPECT_EQ(sample.dip(2), 35);
    EXPECT_FALSE(redo_change(sample.workbench).moved);
}

TEST(History, calculates_the_old_curve_again) {
    HistorySample sample;
    const std::vector<float> before = [&] {
        const auto row = sample.workspace().mag.data.row(row_residual, stage_calculated);
        return std::vector<float>(row.begin(), row.end());
    }();
    sample.set_dip(1, 20);
    model::refresh_model(sample.session);
    undo_change(sample.workbench);
    model::refresh_model(sample.session);
    const auto row = sample.workspace().mag.data.row(row_residual, stage_calculated);
    EXPECT_EQ(std::vector<float>(row.begin(), row.end()), before);
}

TEST(History, keeps_the_responses_of_bodies_that_did_not_change) {
    HistorySample sample;
    sample.set_dip(2, 35);
    model::refresh_model(sample.session);
    undo_change(sample.workbench);
    model::find_stale(sample.workspace());
    EXPECT_TRUE(sample.workspace().body(1).mag_response_valid);
    EXPECT_FALSE(sample.workspace().body(2).mag_response_valid);
    EXPECT_TRUE(sample.workspace().body(3).mag_response_valid);
    model::refresh_model(sample.session);
    sample.remove(1);
    undo_change(sample.workbench);
    model::find_stale(sample.workspace());
    EXPECT_FALSE(sample.workspace().body(1).mag_response_valid);
    EXPECT_TRUE(sample.workspace().body(2).mag_response_valid);
    EXPECT_TRUE(sample.workspace().body(3).mag_response_valid);
}

TEST(History, goes_back_more_than_a_hundred_steps_and_no_further_than_it_keeps) {
    HistorySample sample;
    const float first = sample.dip(1);
    for (int i = 1; i <= 150; ++i) sample.set_dip(1, first + static_cast<float>(i) / 8);
    int steps = 0;
    while (undo_change(sample.workbench).moved) ++steps;
    EXPECT_EQ(steps, 150);
    EXPECT_EQ(sample.dip(1), first);
    for (int i = 1; i <= 1000; ++i) sample.set_dip(1, first + static_cast<float>(i) / 16);
    EXPECT_EQ(sample.workbench.history.steps(), History::kept_steps);
}

TEST(History, merges_the_steps_of_one_gesture) {
    HistorySample sample;
    const float first = sample.dip(1);
    for (int i = 1; i <= 20; ++i) sample.set_dip(1, first + static_cast<float>(i), "bar:dip:1");
    sample.set_dip(2, 40, "bar:dip:2");
    EXPECT_EQ(sample.workbench.history.steps(), 2U);
    undo_change(sample.workbench);
    undo_change(sample.workbench);
    EXPECT_EQ(sample.dip(1), first);
    redo_change(sample.workbench);
    EXPECT_EQ(sample.dip(1), first + 20);
}

TEST(History, ends_a_gesture_with_a_pause_an_undo_or_a_save) {
    HistorySample sample;
    sample.workbench.history.set_clock([] { return test_now; });
    sample.set_dip(1, 10, "bar");
    test_now += History::gesture_pause + std::chrono::milliseconds(1);
    sample.set_dip(1, 11, "bar");
    EXPECT_EQ(sample.workbench.history.steps(), 2U);
    note_saved(sample.workbench);
    sample.set_dip(1, 12, "bar");
    EXPECT_EQ(sample.workbench.history.steps(), 3U);
    undo_change(sample.workbench);
    sample.set_dip(1, 13, "bar");
    EXPECT_EQ(sample.workbench.history.steps(), 3U);
}

TEST(History, forgets_what_could_be_made_again_when_something_else_is_done) {
    HistorySample sample;
    sample.set_dip(1, 10);
    undo_change(sample.workbench);
    sample.set_dip(2, 10);
    EXPECT_FALSE(sample.workbench.history.can_redo());
}

TEST(History, takes_no_step_where_nothing_differs) {
    HistorySample sample;
    note_change(sample.workbench, {"sort", "", true});
    EXPECT_FALSE(sample.workbench.history.can_undo());
    EXPECT_FALSE(sample.workbench.unsaved);
    EXPECT_TRUE(sample.session.model_changed);
}

TEST(History, brings_all_bodies_back_that_were_deleted_by_accident) {
    HistorySample sample;
    const std::string before = sample.text();
    sample.remove_all();
    const HistoryStep step = undo_change(sample.workbench);
    EXPECT_TRUE(step.moved);
    EXPECT_FALSE(step.line_lost);
    EXPECT_EQ(sample.workspace().body_count, 3);
    EXPECT_EQ(sample.text(), before);
    EXPECT_EQ(sample.workbench.view.current_body, 1);
    EXPECT_EQ(sample.workspace().body(3).response.rows(), sample.workspace().station_count);
    model::refresh_model(sample.session);
    EXPECT_FALSE(sample.prompts.told("Subscript"));
}

TEST(History, makes_the_body_that_came_back_the_current_one) {
    HistorySample sample;
    sample.workbench.view.current_body = 1;
    sample.remove(2);
    undo_change(sample.workbench);
    EXPECT_EQ(sample.workbench.view.current_body, 2);
    redo_change(sample.workbench);
    EXPECT_EQ(sample.workbench.view.current_body, 2);  // the one that took its place
    EXPECT_EQ(sample.workspace().body(2).distance.value, 1900);
}

TEST(History, stays_at_the_current_body_when_that_is_among_the_changed_ones) {
    HistorySample sample;
    sample.workbench.view.current_body = 3;
    for (int i = 1; i <= 3; ++i) sample.workspace().body(i).susc.value *= 2;
    note_change(sample.workbench, {"inversion", "", false});
    undo_change(sample.workbench);
    EXPECT_EQ(sample.workbench.view.current_body, 3);
    sample.set_dip(2, 3);
    undo_change(sample.workbench);
    EXPECT_EQ(sample.workbench.view.current_body, 2);
}

TEST(History, forgets_the_parameters_of_a_run_with_the_list_they_belong_to) {
    HistorySample sample;
    InversionState& inversion = sample.session.inversion;
    inversion.inversion_params.assign(2);
    sample.set_dip(1, 12);
    undo_change(sample.workbench);
    EXPECT_EQ(inversion.inversion_params.count(), 2);
    const int revision = sample.workbench.list_revision;
    sample.remove(1);
    EXPECT_EQ(inversion.inversion_params.count(), 0);
    EXPECT_EQ(sample.workbench.list_revision, revision + 1);
    inversion.inversion_params.assign(2);
    undo_change(sample.workbench);
    EXPECT_EQ(inversion.inversion_params.count(), 0);
    EXPECT_EQ(sample.workbench.list_revision, revision + 2);
}

TEST(History, takes_settings_back_without_another_load) {
    HistorySample sample;
    change_settings_box(sample.workbench, SettingsBox::residual_filter_width, "12");
    change_settings_box(sample.workbench, SettingsBox::sensor_offset, "0.05");
    model::refresh_model(sample.session);
    EXPECT_TRUE(undo_change(sample.workbench).settings);
    EXPECT_EQ(sample.workspace().sensor_offset, 10);
    model::find_stale(sample.workspace());
    EXPECT_FALSE(sample.workspace().elevations_ready);
    const HistoryStep step = undo_change(sample.workbench);
    EXPECT_EQ(sample.workspace().processing.residual_filter_width, 0);
    EXPECT_FALSE(step.line_lost);
    model::find_stale(sample.workspace());
    EXPECT_FALSE(sample.workspace().mag.observed_filtered);
    EXPECT_EQ(sample.workspace().station_count, LineSample::stations);
}

TEST(History, wants_the_line_again_when_another_column_is_taken_back) {
    HistorySample sample;
    sample.workspace().definition.mag_column = 3;
    drop_stations(sample.workspace());
    note_change(sample.workbench, {"data definition", "definition:9", false});
    const HistoryStep step = undo_change(sample.workbench);
    EXPECT_TRUE(step.line_lost);
    EXPECT_TRUE(step.line_wanted);
    EXPECT_EQ(sample.workspace().definition.mag_column, 6);
    sample.load();
    EXPECT_FALSE(redo_change(sample.workbench).line_wanted);
    EXPECT_EQ(sample.workspace().definition.mag_column, 3);
    EXPECT_EQ(sample.workspace().station_count, 0);
}

TEST(History, brings_back_the_unsaved_model_that_another_file_was_read_over) {
    HistorySample sample;
    sample.workspace().model_file = "first.axm";
    start_history(sample.workbench);
    sample.set_dip(2, 33);
    const std::string before = sample.text();
    const std::string other = sample.folder.path("second.axm");
    {
        LineSample second;
        second.workspace().definition.data_file = sample.data_path;
        second.add_body(100, 50);
        ASSERT_EQ(workspace_file::write_model_parameters(0, other, second.workspace(), second.prompts), 0);
    }
    ASSERT_EQ(flow::open_model_file(sample.workbench, flow::ReadMode::everything, other),
              flow::OpenOutcome::opened);
    EXPECT_FALSE(sample.workbench.unsaved);
    const HistoryStep step = undo_change(sample.workbench);
    EXPECT_TRUE(step.another_file);
    EXPECT_TRUE(step.line_back);
    EXPECT_FALSE(step.line_wanted);
    EXPECT_TRUE(sample.workbench.unsaved);
    EXPECT_EQ(sample.workspace().model_file, "first.axm");
    EXPECT_EQ(sample.text(), before);
    EXPECT_TRUE(sample.load().loaded);
    EXPECT_EQ(sample.text(), before);
    redo_change(sample.workbench);
    EXPECT_EQ(sample.workspace().model_file, other);
    EXPECT_FALSE(sample.workbench.unsaved);
}

TEST(History, a_file_that_cannot_be_read_is_no_step) {
    HistorySample sample;
    sample.set_dip(1, 10);
    sample.set_dip(2, 20);
    undo_change(sample.workbench);
    const std::string before = sample.text();
    const std::string broken = sample.folder.write("broken.axm", before.substr(0, before.size() / 2));
    for (const auto mode : {flow::ReadMode::everything, flow::ReadMode::bodies_alone}) {
        ASSERT_EQ(flow::open_model_file(sample.workbench, mode, broken), flow::OpenOutcome::failed);
        EXPECT_EQ(sample.text(), before);
        EXPECT_EQ(sample.workbench.history.undo_name(), "dip of body 1");
        EXPECT_EQ(sample.workbench.history.redo_name(), "dip of body 2");
    }
}

TEST(History, knows_the_saved_state_again) {
    HistorySample sample;
    EXPECT_FALSE(sample.workbench.unsaved);
    sample.set_dip(1, 10);
    EXPECT_TRUE(sample.workbench.unsaved);
    undo_change(sample.workbench);
    EXPECT_FALSE(sample.workbench.unsaved);
    redo_change(sample.workbench);
    EXPECT_TRUE(sample.workbench.unsaved);
    note_saved(sample.workbench);
    EXPECT_FALSE(sample.workbench.unsaved);
    undo_change(sample.workbench);
    EXPECT_TRUE(sample.workbench.unsaved);
    redo_change(sample.workbench);
    EXPECT_FALSE(sample.workbench.unsaved);
}

TEST(History, stays_with_the_new_name_after_saving_under_it) {
    HistorySample sample;
    sample.set_dip(1, 10);
    sample.workspace().model_file = "renamed.axm";
    note_saved(sample.workbench);
    EXPECT_FALSE(undo_change(sample.workbench).another_file);
    EXPECT_EQ(sample.workspace().model_file, "renamed.axm");
    EXPECT_TRUE(sample.workbench.unsaved);
}

TEST(History, does_not_count_a_floating_base_as_a_change) {
    HistorySample sample;
    change_float_base(sample.workbench, channel_mag, true);
    const std::size_t steps = sample.workbench.history.steps();
    sample.workspace().mag.base += 17;
    note_change(sample.workbench, {"nothing", "", false});
    EXPECT_EQ(sample.workbench.history.steps(), steps);
}

TEST(History, brings_every_file_back_through_any_row_of_changes) {
    HistorySample sample;
    std::mt19937 random(7);
    std::vector<std::string> texts{sample.text()};
    for (int i = 0; i < 60; ++i) {
        Workspace& w = sample.workspace();
        switch (random() % 5) {
            case 0:
                sample.add_body(static_cast<double>(random() % 2500), 40).dip.value =
                    static_cast<float>(random() % 90);
                note_change(sample.workbench, {"add", "", true});
                break;
            case 1:
                if (w.body_count > 0) sample.remove(1 + static_cast<int>(random() % 7) % w.body_count);
                break;
            case 2:
                w.field.inclination += 1;
                note_change(sample.workbench, {"inclination", "", false});
                break;
            case 3:
                std::reverse(w.bodies.begin() + 1, w.bodies.begin() + 1 + w.body_count);
                note_change(sample.workbench, {"sort", "", true});
                break;
            default:
                for (int b = 1; b <= w.body_count; ++b) w.body(b).top.value -= 1;
                note_change(sample.workbench, {"shift", "", false});
        }
        if (sample.workbench.history.steps() == texts.size()) texts.push_back(sample.text());
    }
    model::refresh_model(sample.session);
    const std::size_t last = texts.size() - 1;
    for (std::size_t i = last; i-- > 0;) {
        ASSERT_TRUE(undo_change(sample.workbench).moved);
        ASSERT_EQ(sample.text(), texts[i]) << "back to step " << i;
        model::refresh_model(sample.session);
    }
    for (std::size_t i = 1; i <= last; ++i) {
        ASSERT_TRUE(redo_change(sample.workbench).moved);
        ASSERT_EQ(sample.text(), texts[i]) << "forward to step " << i;
    }
    EXPECT_FALSE(sample.prompts.told("Subscript"));
}

}  // namespace anomalis::edit
