#include "flow/inversion_desk.h"

#include <cmath>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "core/paths.h"
#include "edit/change.h"
#include "edit/fit_in_force.h"
#include "edit/line_sample.h"
#include "model/refresh_model.h"
#include "support/stale_body.h"

namespace anomalis::flow {

namespace {

/// A sheet whose response is the data, moved away from its place; a host that remembers.
struct DeskSample : edit::LineSample, InversionDeskObserver {
    DeskSample() : desk(workbench, *this) {
        load();
        desk.choose_method(inversion::InversionMethod::sweep);
        Workspace& w = workspace();
        for (const double distance : {700.0, 1700.0}) {
            ModelBody& body = add_body(distance, 40);
            body.response.assign(w.station_count);
            for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
        }
        w.body(1).distance.vary = w.body(1).susc.vary = 1;
        workbench.view.current_body = 1;
        model::refresh_model(session);
        for (int i = 1; i <= w.station_count; ++i)
            w.mag.data(i, row_raw, stage_observed) = w.mag.data(i, row_raw, stage_calculated);
        w.mag.base = 0;
        invalidate_filtered_data(0, w);
        move_body(1, 740);
        desk.line_changed();
        edit::start_history(workbench);
    }
    void move_body(int number, float distance) {
        workspace().body(number).distance.value = distance;
        invalidate_body(workspace().body(number));
        model::refresh_model(session);
    }
    float distance(int number) { return workspace().body(number).distance.value; }

    void panel_changed() override {}
    void bars_changed() override { ++bar_changes; }
    void run_changed() override {
        runs.push_back(desk.running());
        if (desk.running()) kept = distance(1);
    }
    void model_changed() override {
        ++model_shows;
        desk.show_current_misfit(model::refresh_model(session));
    }
    void stage_changed() override {
        stages.push_back(desk.panel().stage);
        if (on_stage) on_stage(stages.back());
    }
    void draw_chart(int index) override { ++(index == edit::model_chart_count ? plan_draws : chart_draws); }
    void close_wanted() override { closed = true; }

    InversionDesk desk;
    std::vector<bool> runs;
    std::vector<inversion::RunStage> stages;
    std::function<void(inversion::RunStage)> on_stage;
    int model_shows = 0, chart_draws = 0, plan_draws = 0, bar_changes = 0;
    float kept = 0;
    bool closed = false;
};

}  // namespace

TEST(InversionDesk, a_run_is_one_step_that_can_be_taken_back) {
    DeskSample sample;
    sample.desk.command_invert(1);
    EXPECT_LT(std::abs(sample.distance(1) - 700), 40);
    EXPECT_TRUE(sample.workbench.unsaved);
    EXPECT_EQ(sample.workbench.history.steps(), 1U);
    EXPECT_EQ(sample.workbench.history.undo_name(), "inversion of the model");
    EXPECT_EQ(sample.runs, (std::vector<bool>{true, false}));
    EXPECT_EQ(sample.model_shows, 1);
    edit::undo_change(sample.workbench);
    EXPECT_EQ(sample.distance(1), 740);
    EXPECT_FALSE(sample.workbench.unsaved);
}

TEST(InversionDesk, keeps_the_model_before_a_run_and_shows_its_controls) {
    DeskSample sample;
    EXPECT_FALSE(sample.desk.panel().invert_frame);
    sample.desk.command_invert(0);
    EXPECT_EQ(sample.kept, 740);
    EXPECT_TRUE(sample.desk.panel().invert_frame);
    EXPECT_EQ(sample.workbench.history.undo_name(), "inversion of body 1");
}

TEST(InversionDesk, keeps_the_record_of_a_least_squares_fit_until_the_model_changes) {
    DeskSample sample;
    sample.desk.choose_method(inversion::InversionMethod::least_squares);
    sample.desk.command_invert(1);
    const FitRecord* fit = edit::fit_in_force(sample.workbench);
    ASSERT_NE(fit, nullptr);
    ASSERT_EQ(fit->parameters.size(), 2U);
    EXPECT_EQ(fit->parameters[0].body, 1);
    EXPECT_EQ(fit->parameters[0].param_code, param_distance);
    EXPECT_EQ(sample.desk.panel().status_text, fit->outcome);
    EXPECT_NEAR(sample.distance(1), 700, 0.1);
    edit::undo_change(sample.workbench);
    EXPECT_EQ(edit::fit_in_force(sample.workbench), nullptr);
    edit::redo_change(sample.workbench);
    EXPECT_NE(edit::fit_in_force(sample.workbench), nullptr) << "the model is as fitted again";
}

TEST(InversionDesk, says_which_parameters_a_limit_holds) {
    DeskSample sample;
    sample.workspace().body(1).distance.min = 730;
    sample.desk.choose_method(inversion::InversionMethod::least_squares);
    sample.desk.command_invert(0);
    EXPECT_EQ(sample.distance(1), 730);
    EXPECT_EQ(sample.desk.panel().status_text, "Stopped at the limit of 1 parameter: distance of body 1");
}

TEST(InversionDesk, a_least_squares_run_says_what_it_is_at_after_its_iterations) {
    DeskSample sample;
    sample.desk.command_invert(1);
    EXPECT_TRUE(sample.stages.empty()) << "the sweep has iterations alone";
    sample.move_body(1, 740);
    sample.desk.choose_method(inversion::InversionMethod::least_squares);
    sample.desk.command_invert(1);
    using inversion::RunStage;
    EXPECT_EQ(sample.stages, (std::vector{RunStage::starts, RunStage::weights, RunStage::errors}));
}

TEST(InversionDesk, a_stop_is_served_in_every_part_of_a_run) {
    for (const auto where :
         {inversion::RunStage::starts, inversion::RunStage::weights, inversion::RunStage::errors}) {
        DeskSample sample;
        sample.desk.choose_method(inversion::InversionMethod::least_squares);
        sample.on_stage = [&](inversion::RunStage stage) {
            if (stage == where) sample.desk.command_stop_inversion();
        };
        sample.desk.command_invert(1);
        EXPECT_FALSE(sample.desk.running());
        EXPECT_NEAR(sample.distance(1), 700, 0.1) << "what was found stays";
        EXPECT_FALSE(sample.session.inversion.stop_inversion);
    }
}

TEST(InversionDesk, a_failed_setup_is_no_step) {
    DeskSample sample;
    sample.workbench.view.current_body = 7;
    sample.desk.command_invert(0);
    EXPECT_EQ(sample.desk.panel().status_text, "Inversion failed: -1");
    EXPECT_EQ(sample.workbench.history.steps(), 0U);
    EXPECT_FALSE(sample.workbench.unsaved);
    EXPECT_FALSE(sample.desk.panel().reject_changes_enabled);
}

TEST(InversionDesk, without_a_line_nothing_happens) {
    DeskSample sample;
    drop_stations(sample.workspace());
    sample.desk.command_invert(1);
    EXPECT_TRUE(sample.runs.empty());
    EXPECT_FALSE(sample.desk.panel().status_visible);
}

TEST(InversionDesk, reject_and_restore_are_steps_of_their_own) {
    DeskSample sample;
    const TempFolder elsewhere;
    const std::string before = current_folder();
    change_to_folder(elsewhere.path(""));
    sample.desk.command_invert(1);
    const float fitted = sample.distance(1);
    sample.desk.command_restore_best();
    EXPECT_NE(file_exists(elsewhere.path("latest.axm")), "");
    change_to_folder(before);
    EXPECT_EQ(sample.distance(1), fitted);
    sample.move_body(1, 735);
    edit::note_change(sample.workbench, {"by hand", "", false});
    sample.desk.command_invert(1);
    ASSERT_TRUE(sample.desk.panel().reject_changes_enabled);
    const float again = sample.distance(1);
    ASSERT_NE(again, 735);
    sample.desk.command_reject_changes();
    EXPECT_EQ(sample.distance(1), 735);
    EXPECT_EQ(sample.workbench.history.undo_name(), "rejecting the inversion");
    edit::undo_change(sample.workbench);
    EXPECT_EQ(sample.distance(1), again);
}

TEST(InversionDesk, forgets_the_best_model_when_the_bodies_are_listed_anew) {
    DeskSample sample;
    sample.desk.command_invert(1);
    ASSERT_TRUE(sample.desk.panel().restore_best_enabled);
    std::swap(sample.workspace().body(1), sample.workspace().body(2));
    edit::note_change(sample.workbench, {"sort", "", true});
    sample.desk.follow_model();
    EXPECT_FALSE(sample.desk.panel().restore_best_enabled);
    EXPECT_FALSE(sample.desk.panel().reject_changes_enabled);
    EXPECT_EQ(sample.desk.panel().misfit[0], "");
    const float first = sample.distance(1), second = sample.distance(2);
    sample.desk.command_restore_best();
    sample.desk.command_reject_changes();
    EXPECT_EQ(sample.distance(1), first);
    EXPECT_EQ(sample.distance(2), second);
}

TEST(InversionDesk, both_channels_at_once_need_both_columns_and_least_squares) {
    DeskSample sample;
    InversionDesk& desk = sample.desk;
    desk.combo_invert(channel_joint);
    EXPECT_EQ(sample.desk.panel().channel_index, channel_mag);
    desk.choose_method(inversion::InversionMethod::least_squares);
    desk.combo_invert(channel_joint);
    EXPECT_EQ(sample.desk.panel().channel_index, channel_joint);
    desk.choose_method(inversion::InversionMethod::sweep);
    EXPECT_EQ(sample.desk.panel().channel_index, channel_mag);
    desk.choose_method(inversion::InversionMethod::least_squares);
    sample.workspace().definition.mag_column = 0;
    desk.combo_invert(channel_joint);
    EXPECT_EQ(sample.desk.panel().channel_index, channel_grav);
}

TEST(InversionDesk, a_chosen_channel_stays_over_a_visit_to_the_page) {
    DeskSample sample;
    sample.desk.combo_invert(channel_grav);
    sample.desk.combo_invert(sample.desk.panel().channel_index);
    EXPECT_EQ(sample.desk.panel().channel_index, channel_grav);
}

TEST(InversionDesk, a_dragged_bar_is_one_step) {
    DeskSample sample;
    sample.desk.bars().update_inversion_limit_display(
        {0, 15000}, {1, edit::LineSample::length, edit::LineSample::length / 2});
    sample.desk.press_bar(0, 60);
    for (const double x : {1200.0, 2300.0}) sample.desk.move_bar(0, x);
    EXPECT_GT(sample.workspace().first_station, 1);
    sample.desk.release_bar(0);
    EXPECT_EQ(sample.workbench.history.undo_name(), "stations of the fit");
    EXPECT_EQ(sample.workbench.history.steps(), 1U);
    edit::undo_change(sample.workbench);
    EXPECT_EQ(sample.workspace().first_station, 1);
    sample.desk.press_bar(0, 60);
    sample.desk.release_bar(0);
    EXPECT_EQ(sample.workbench.history.steps(), 0U);
}

TEST(InversionDesk, draws_the_curves_and_the_plan_while_it_runs) {
    DeskSample sample;
    sample.workbench.view.show_plan = true;
    sample.desk.command_invert(1);
    EXPECT_GT(sample.plan_draws, 0);
    EXPECT_EQ(sample.chart_draws, 4 * sample.plan_draws);
}

TEST(InversionDesk, serves_its_guests_after_every_evaluation) {
    DeskSample sample;
    sample.prompts.yields = 0;
    const auto before = sample.session.inversion.evaluations;
    sample.desk.command_invert(1);
    EXPECT_GE(sample.prompts.yields, sample.session.inversion.evaluations - before);
}

TEST(InversionDesk, closes_after_the_run_when_it_was_asked_to_in_the_middle) {
    DeskSample sample;
    sample.prompts.on_yield = [&] {
        if (!sample.desk.running()) return;
        EXPECT_FALSE(sample.desk.may_close());
    };
    sample.desk.command_invert(1);
    EXPECT_TRUE(sample.closed);
    EXPECT_FALSE(sample.desk.running());
}

}  // namespace anomalis::flow
