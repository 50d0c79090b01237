#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "core/numbers.h"
#include "flow/desk_line.h"
#include "support/stale_body.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

class RunPanel : public DeskLine {
  protected:
    void run(const std::string& iterations, int index = 1) {
        desk.type_max_iterations(iterations);
        desk.command_invert(index);
    }
};

}  // namespace

TEST_F(RunPanel, the_outcome_is_shown_and_the_model_is_displayed_anew) {
    line.sheet_off_by(20000);
    run("2");
    EXPECT_EQ(panel().status_text, "Iteration limit reached");
    EXPECT_TRUE(panel().status_visible);
    EXPECT_EQ(panel().num_iterations_text, "2");
    EXPECT_EQ(panel().max_iterations_text, "2");
    EXPECT_TRUE(panel().reject_changes_enabled);
    EXPECT_TRUE(panel().restore_best_enabled);
    EXPECT_FALSE(panel().stop_frame);
    EXPECT_FALSE(desk.running());
    EXPECT_TRUE(line.session.model_changed);
    EXPECT_EQ(calls, (std::vector<std::string>{"begin", "end", "model"}));
    EXPECT_EQ(chart_draws, edit::model_chart_count) << "once, between the two iterations";
    EXPECT_GT(panel_changes, 0);
}

TEST_F(RunPanel, its_end_is_told_as_long_as_the_model_is_as_it_left_it) {
    for (const auto method : {inversion::InversionMethod::sweep, inversion::InversionMethod::least_squares}) {
        line.sheet_off_by(20000);
        edit::start_history(workbench);
        desk.choose_method(method);
        run("2");
        ASSERT_TRUE(panel().status_visible);
        ASSERT_TRUE(edit::undo_change(workbench).moved);
        desk.follow_model();
        EXPECT_FALSE(panel().status_visible);
        ASSERT_TRUE(edit::redo_change(workbench).moved);
        desk.follow_model();
        EXPECT_TRUE(panel().status_visible);
        w.body(1).susc.value += 10;
        edit::note_change(workbench, {"susceptibility", "", false});
        desk.follow_model();
        EXPECT_FALSE(panel().status_visible);
    }
}

TEST_F(RunPanel, the_boxes_hold_the_misfit_before_and_now) {
    line.sheet_off_by(20000);
    const MisfitPair before = line.refresh();
    run("2");
    EXPECT_EQ(panel().misfit[0], format_number(before[0], "0.000"));
    EXPECT_EQ(panel().misfit[2], format_number(before[1], "0.000"));
    EXPECT_EQ(panel().misfit[1], format_number(inversion.best_misfit[0], "0.000"));
    EXPECT_EQ(panel().misfit[3], format_number(inversion.best_misfit[1], "0.000"));
}

TEST_F(RunPanel, while_it_runs_the_stop_frame_shows_and_all_else_is_refused) {
    line.sheet_off_by(20000);
    bool seen = false;
    on_iteration = [&](int) {
        seen = true;
        EXPECT_TRUE(desk.running());
        EXPECT_TRUE(panel().stop_frame);
        EXPECT_FALSE(panel().reject_changes_enabled);
        EXPECT_FALSE(panel().status_visible);
        const auto evaluations = inversion.evaluations;
        desk.command_invert(1);
        desk.command_toggle_invert_body();
        desk.command_restore_best();
        desk.command_reject_changes();
        desk.check_inversion_mode(1);
        desk.combo_invert(1);
        EXPECT_EQ(inversion.evaluations, evaluations);
        EXPECT_EQ(inversion.inversion_target, target_data);
        EXPECT_EQ(panel().channel_index, channel_mag);
        EXPECT_TRUE(panel().invert_frame) << "a run shows its controls";
    };
    run("2");
    EXPECT_TRUE(seen);
}

TEST_F(RunPanel, texts_of_iterations) {
    line.sheet_off_by(20000);
    const std::pair<const char*, const char*> texts[] = {{"0", "1"}, {"-3", "1"},  {" 2 ", "2"}, {"1.6", "2"},
                                                         {"", "25"}, {"  ", "25"}, {"abc", "25"}};
    for (const auto& [typed, shown] : texts) {
        on_iteration = [&](int) { desk.command_stop_inversion(); };
        run(typed);
        EXPECT_EQ(panel().max_iterations_text, shown) << typed;
    }
}

TEST_F(RunPanel, a_billion_iterations_and_a_stop) {
    line.sheet_off_by(20000);
    for (const char* text : {"1e9", "1e15"}) {
        on_iteration = [&](int iteration) {
            if (iteration == 1) desk.command_stop_inversion();
        };
        run(text);
        EXPECT_EQ(panel().status_text, "Iteration limit reached") << "a stop reads the same";
        EXPECT_EQ(panel().num_iterations_text, "2");
        EXPECT_FALSE(inversion.stop_inversion);
    }
}

TEST_F(RunPanel, the_stop_button_hides_its_frame_at_once) {
    line.sheet_off_by(20000);
    on_iteration = [&](int) {
        const int yields = line.prompts.yields;
        desk.command_stop_inversion();
        EXPECT_FALSE(panel().stop_frame);
        EXPECT_TRUE(inversion.stop_inversion);
        EXPECT_EQ(line.prompts.yields, yields + 1);
    };
    run("9");
}

TEST_F(RunPanel, without_stations_the_button_hides_the_label_and_does_nothing_more) {
    line.sheet_off_by(20000);
    run("1");
    calls.clear();
    w.station_count = 0;
    run("7");
    EXPECT_FALSE(panel().status_visible);
    EXPECT_EQ(panel().max_iterations_text, "7");
    EXPECT_TRUE(calls.empty());
}

TEST_F(RunPanel, a_refused_run_tells_its_status_and_leaves_the_model) {
    workbench.view.current_body = 0;
    line.sheet_off_by(20000);
    run("");
    EXPECT_EQ(panel().status_text, "Inversion failed: -1");
    EXPECT_FALSE(line.session.model_changed);
    EXPECT_FALSE(panel().reject_changes_enabled) << "there is no list to go back to";
    EXPECT_FALSE(panel().restore_best_enabled);
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST_F(RunPanel, nothing_free_is_told_and_still_reads_succeeded) {
    line.add_body(thick_sheet);
    line.refresh();
    run("");
    EXPECT_EQ(line.prompts.messages, std::vector<std::string>{"There are no parameters free to invert on"});
    EXPECT_EQ(panel().status_text, "Inversion succeeded");
    EXPECT_TRUE(line.session.model_changed);
    EXPECT_FALSE(panel().reject_changes_enabled);
}

TEST_F(RunPanel, no_free_parameter_after_a_real_run_does_not_bring_back_its_start) {
    ModelBody& body = line.sheet_off_by(20000);
    run("2");
    body.susc.vary = 0;
    run("");
    EXPECT_FALSE(panel().reject_changes_enabled);
}

TEST_F(RunPanel, index_0_inverts_the_current_body_alone) {
    line.sheet_off_by(20000);
    ModelBody& second = line.add_body(thick_sheet, 200);
    second.susc.vary = 1;
    second.susc.max = 1e6F;
    line.refresh();
    workbench.view.current_body = 2;
    run("1", 0);
    EXPECT_EQ(inversion.inversion_params.count(), 1);
    EXPECT_EQ(inversion.inversion_param_map[1].body, 2);
    run("1", 1);
    EXPECT_EQ(inversion.inversion_params.count(), 2);
}

TEST_F(RunPanel, a_channel_that_the_line_lacks_gives_way) {
    line.sheet_off_by(20000);
    w.definition.grav_column = 0;
    desk.combo_invert(1);
    EXPECT_EQ(panel().channel_index, 0);
    w.definition.mag_column = 0;
    w.definition.grav_column = 6;
    run("1");
    EXPECT_EQ(panel().channel_index, 1);
    desk.combo_invert(0);
    EXPECT_EQ(panel().channel_index, 1);
}

TEST_F(RunPanel, a_change_of_channel_alone_changes_no_misfit) {
    line.sheet_off_by(20000);
    const MisfitPair before = line.refresh();
    desk.combo_invert(1);
    EXPECT_EQ(inversion.inversion_channel, channel_mag);
    EXPECT_EQ(line.refresh(), before);
}

TEST_F(RunPanel, reject_brings_the_start_back_and_forgets_the_best) {
    ModelBody& body = line.sheet_off_by(20000);
    run("2");
    calls.clear();
    line.session.model_changed = false;
    desk.command_reject_changes();
    EXPECT_EQ(body.susc.value, 70000.0F);
    EXPECT_EQ(calls, std::vector<std::string>{"model"});
    EXPECT_EQ(panel().misfit[0], panel().misfit[1]);
    EXPECT_EQ(panel().misfit[2], panel().misfit[3]);
    EXPECT_NE(panel().misfit[0], "");
    EXPECT_FALSE(panel().reject_changes_enabled);
    EXPECT_FALSE(panel().restore_best_enabled);
    EXPECT_EQ(inversion.best_misfit[0], unset);
    EXPECT_TRUE(line.session.model_changed);
    calls.clear();
    desk.command_reject_changes();
    EXPECT_TRUE(calls.empty()) << "a second reject does nothing";
}

TEST_F(RunPanel, restore_brings_back_the_best_model_and_saves_the_one_on_screen_first) {
    ModelBody& body = line.sheet_off_by(20000);
    run("3");
    body.susc.value = 99000;
    invalidate_body(body);
    calls.clear();
    const std::string best = format_number(inversion.best_misfit[0], "0.000");
    desk.command_restore_best();
    ScriptedPrompts prompts;
    Workspace saved;
    initialise_workspace(saved, prompts);
    workspace_file::read_model_parameters(0, saved, folder.path(recovery_file), line.session.settings,
                                          prompts);
    ASSERT_EQ(saved.body_count, 1);
    EXPECT_EQ(saved.body(1).susc.value, 99000.0F);
    EXPECT_EQ(body.susc.value, 69250.0F);
    EXPECT_EQ(calls, std::vector<std::string>{"model"});
    EXPECT_EQ(panel().misfit[0], best);
    EXPECT_EQ(panel().misfit[1], best);
    EXPECT_FALSE(panel().restore_best_enabled);
    EXPECT_FALSE(panel().reject_changes_enabled);
    EXPECT_FALSE(inversion.best_model_available);
}

TEST_F(RunPanel, a_second_restore_only_disables) {
    line.sheet_off_by(20000);
    run("1");
    desk.command_restore_best();
    calls.clear();
    line.session.model_changed = false;
    desk.command_restore_best();
    EXPECT_TRUE(calls.empty());
    EXPECT_FALSE(line.session.model_changed);
}

TEST_F(RunPanel, restore_after_a_change_of_the_bodies_touches_nothing) {
    line.sheet_off_by(20000);
    run("2");
    ++workbench.list_revision;
    desk.follow_model();
    ModelBody& other = w.body(1);
    other.susc.value = 123;
    desk.command_restore_best();
    desk.command_reject_changes();
    EXPECT_EQ(other.susc.value, 123.0F);
    EXPECT_EQ(inversion.inversion_params.count(), 0);
}

TEST_F(RunPanel, reset_empties_the_boxes_and_keeps_the_mark_of_the_best_model) {
    line.sheet_off_by(20000);
    run("1");
    desk.reset_inversion_display();
    EXPECT_EQ(panel().misfit, (std::array<std::string, 4>{}));
    EXPECT_FALSE(panel().reject_changes_enabled || panel().restore_best_enabled);
    EXPECT_EQ(inversion.best_misfit, (MisfitPair{unset, unset}));
    EXPECT_TRUE(inversion.best_model_available);
}

TEST_F(RunPanel, the_mode_box_chooses_the_target_and_resets) {
    line.sheet_off_by(20000);
    run("1");
    desk.check_inversion_mode(1);
    EXPECT_EQ(inversion.inversion_target, target_gradient);
    EXPECT_EQ(panel().misfit[0], "");
    desk.check_inversion_mode(0);
    EXPECT_EQ(inversion.inversion_target, target_data);
}

TEST_F(RunPanel, the_toggle_changes_between_the_two_views) {
    line.sheet_off_by(20000);
    const MisfitPair misfit = line.refresh();
    EXPECT_STREQ(panel().toggle_caption(), "Perform Inversion");
    run("1");
    EXPECT_TRUE(panel().invert_frame);
    desk.command_toggle_invert_body();
    EXPECT_FALSE(panel().invert_frame);
    EXPECT_STREQ(panel().toggle_caption(), "Perform Inversion");
    EXPECT_FALSE(panel().status_visible);
    EXPECT_NE(panel().misfit[0], format_number(misfit[0], "0.000"));
    EXPECT_NE(panel().misfit[0], "");
    EXPECT_EQ(panel().misfit[1], "");
    desk.command_toggle_invert_body();
    EXPECT_TRUE(panel().invert_frame);
    EXPECT_STREQ(panel().toggle_caption(), "Move This Body");
    EXPECT_NE(panel().misfit[0], "");
}

TEST_F(RunPanel, the_toggle_needs_bodies_and_stations) {
    desk.command_toggle_invert_body();
    EXPECT_FALSE(panel().invert_frame);
    line.sheet_off_by(20000);
    w.station_count = 0;
    desk.command_toggle_invert_body();
    EXPECT_FALSE(panel().invert_frame);
}

TEST_F(RunPanel, a_load_returns_to_the_move_view) {
    line.sheet_off_by(20000);
    desk.command_toggle_invert_body();
    desk.line_changed();
    EXPECT_FALSE(panel().invert_frame);
    EXPECT_STREQ(panel().toggle_caption(), "Perform Inversion");
}

TEST_F(RunPanel, a_close_request_stops_the_run_first) {
    line.sheet_off_by(20000);
    EXPECT_TRUE(desk.may_close());
    on_iteration = [&](int) { EXPECT_FALSE(desk.may_close()); };
    run("100");
    EXPECT_EQ(panel().num_iterations_text, "2");
    EXPECT_EQ(calls.back(), "close");
    EXPECT_TRUE(desk.may_close());
    on_iteration = nullptr;
    run("1");
    EXPECT_EQ(calls.back(), "model");
}

TEST_F(RunPanel, the_log_tells_which_button) {
    line.sheet_off_by(20000);
    line.session.log.turn_on(line.prompts);
    run("1", 1);
    std::ifstream file(line.session.log.path());
    const std::string text((std::istreambuf_iterator<char>(file)), {});
    EXPECT_NE(text.find("Command_invert_Click Index: 1"), std::string::npos);
}

TEST_F(RunPanel, the_least_squares_method_runs_from_the_same_panel) {
    ModelBody& body = line.sheet_off_by(20000);
    desk.choose_method(inversion::InversionMethod::least_squares);
    run("20");
    EXPECT_EQ(panel().status_text, "Inversion succeeded");
    EXPECT_NEAR(body.susc.value, 50000, 5);
    EXPECT_TRUE(panel().reject_changes_enabled);
    desk.command_reject_changes();
    EXPECT_EQ(body.susc.value, 70000.0F);
}

}  // namespace anomalis::flow
