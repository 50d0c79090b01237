#include "inversion/perform.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "core/body_parameters.h"
#include "inversion/line_session.h"
#include "inversion/parameters.h"
#include "inversion/recording_observer.h"

namespace anomalis::inversion {

namespace {

class Perform : public ::testing::Test {
  protected:
    RunResult run(RunRequest request = {}) {
        RunResult result;
        perform_inversion(w, inversion, request, observer, result);
        show_faults(result.faults, line.prompts);
        return result;
    }

    LineSession line;
    Workspace& w = line.session.workspace;
    InversionState& inversion = line.session.inversion;
    RecordingObserver observer;
};

}  // namespace

TEST_F(Perform, without_stations_it_is_refused) {
    line.add_body(thick_sheet).top.vary = 1;
    w.station_count = 0;
    const RunResult result = run();
    EXPECT_EQ(result.status, run_failed);
    EXPECT_FALSE(result.initial_misfit);
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST_F(Perform, without_bodies_it_is_refused) {
    EXPECT_EQ(run().status, run_failed);
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST_F(Perform, a_current_body_that_does_not_exist_is_refused) {
    line.sheet_off_by(100);
    for (const int body : {0, 2, -1, 2147483647}) {
        EXPECT_EQ(run({.entire_model = false, .current_body = body}).status, run_failed) << body;
        EXPECT_EQ(run({.entire_model = true, .current_body = body}).status, run_failed) << body;
    }
}

TEST_F(Perform, nothing_free_is_told_and_succeeds) {
    line.add_body(thick_sheet);
    line.refresh();
    const RunResult result = run();
    EXPECT_EQ(result.status, run_succeeded);
    EXPECT_FALSE(result.filled);
    EXPECT_FALSE(result.initial_misfit);
    EXPECT_EQ(line.prompts.messages, std::vector<std::string>{"There are no parameters free to invert on"});
    EXPECT_EQ(status_label(result.status), "Inversion succeeded");
}

TEST_F(Perform, labels) {
    EXPECT_EQ(status_label(-1), "Inversion failed: -1");
    EXPECT_EQ(status_label(-7), "Inversion failed: -7");
    EXPECT_EQ(status_label(0), "Inversion succeeded");
    EXPECT_EQ(status_label(1), "Iteration limit reached");
    EXPECT_EQ(status_label(2), "Misfit did not decrease");
    EXPECT_EQ(status_label(3), "Inversion succeeded");
}

TEST_F(Perform, the_iteration_limit_ends_a_run_with_1) {
    ModelBody& body = line.sheet_off_by(20000);
    const RunResult result = run({.max_iterations = 3});
    EXPECT_EQ(result.status, run_limit);
    EXPECT_EQ(result.iterations, 3);
    EXPECT_EQ(body.susc.value, 70000.0F - 750.0F);
    EXPECT_EQ(observer.iterations, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(observer.displays, 2) << "the last iteration is not displayed by the run";
}

TEST_F(Perform, limits_below_1_count_as_1) {
    line.sheet_off_by(20000);
    for (const int limit : {0, -5, std::numeric_limits<int>::min()})
        EXPECT_EQ(run({.max_iterations = limit}).iterations, 1);
}

TEST_F(Perform, a_gain_below_one_percent_ends_a_run_with_2) {
    line.sheet_off_by(200);
    const RunResult result = run({.max_iterations = 10});
    EXPECT_EQ(result.status, run_no_decrease);
    EXPECT_LE(result.iterations, 3);
    EXPECT_NEAR(result.misfit_pair[0], 0, 1e-3);
}

TEST_F(Perform, no_decrease_overrides_the_limit) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.vary = 1;
    line.refresh();
    const RunResult result = run({.max_iterations = 1});
    EXPECT_EQ(result.status, run_no_decrease);
    EXPECT_EQ(result.iterations, 1);
}

TEST_F(Perform, a_stop_ends_the_run_with_its_iteration) {
    line.sheet_off_by(20000);
    observer.on_progress = [&](const InversionProgress& state) {
        if (state.iteration == 2) inversion.stop_inversion = true;
    };
    const RunResult result = run({.max_iterations = 1000000000});
    EXPECT_EQ(result.status, run_limit);
    EXPECT_EQ(result.iterations, 3) << "the flag is read once an iteration, after the sweep";
}

TEST_F(Perform, a_stop_without_progress_is_no_decrease) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.vary = 1;
    line.refresh();
    inversion.stop_inversion = true;
    EXPECT_EQ(run().status, run_no_decrease);
}

TEST_F(Perform, progress_carries_iteration_misfit_and_time) {
    line.sheet_off_by(20000);
    const RunResult result = run({.max_iterations = 2});
    ASSERT_EQ(observer.states.size(), 2U);
    EXPECT_EQ(observer.states[0].iteration, 1);
    EXPECT_EQ(observer.states[1].iteration_limit, 2);
    EXPECT_EQ(observer.states[1].misfit, result.misfit_pair);
    EXPECT_GE(observer.states[1].seconds, observer.states[0].seconds);
    EXPECT_GT(observer.states[0].seconds, 0);
}

TEST_F(Perform, evaluations_of_the_run_are_counted) {
    line.sheet_off_by(20000);
    // The model at the start, then for each sweep a probe, a step and the true rows.
    EXPECT_EQ(run({.max_iterations = 2}).evaluations, 1 + 2 * 3);
}

TEST_F(Perform, the_start_values_are_kept_for_the_undo) {
    line.sheet_off_by(20000);
    run({.max_iterations = 2});
    EXPECT_EQ(inversion.start_params[1], 70000.0F);
    EXPECT_EQ(inversion.inversion_params[1].value, 69500.0F);
    EXPECT_EQ(inversion.best_params[1], 69500.0F);
    EXPECT_TRUE(inversion.best_model_available);
}

TEST_F(Perform, the_model_at_the_start_is_the_first_best_model) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.vary = 1;
    line.refresh();
    run({.max_iterations = 1});
    EXPECT_TRUE(inversion.best_model_available);
    EXPECT_EQ(inversion.best_misfit, (MisfitPair{0, 0}));
    EXPECT_EQ(inversion.best_params[1], body.susc.value);
}

TEST_F(Perform, the_best_model_survives_a_run_of_the_same_list_that_ends_worse) {
    ModelBody& body = line.sheet_off_by(20000);
    run({.max_iterations = 3});
    const MisfitPair best = inversion.best_misfit;
    body.susc.value = 90000;
    line.refresh();
    run({.max_iterations = 1});
    EXPECT_EQ(inversion.best_misfit, best);
    EXPECT_EQ(inversion.best_params[1], 69250.0F);
}

TEST_F(Perform, a_run_of_another_list_forgets_the_best_model) {
    line.sheet_off_by(20000);
    ModelBody& second = line.add_body(thick_sheet, 200);
    second.susc.vary = 1;
    second.susc.max = 1e6F;
    line.refresh();
    run({.entire_model = false, .current_body = 1, .max_iterations = 3});
    observer.best.clear();
    const RunResult result = run({.entire_model = false, .current_body = 2, .max_iterations = 1});
    ASSERT_EQ(observer.best.size(), 3U) << "forgotten, the start stored, the end stored";
    EXPECT_FALSE(observer.best[0]);
    EXPECT_EQ(inversion.best_param_map[1], (InversionParamPlace{2, param_susc}));
    EXPECT_EQ(inversion.best_misfit, result.misfit_pair);
}

TEST_F(Perform, the_first_run_after_a_change_of_channel_keeps_the_old_scale) {
    ModelBody& body = line.sheet_off_by(20000);
    body.density.vary = 1;
    body.density.value = 3;
    line.refresh();
    const MisfitPair first = *run({.channel = channel_grav, .max_iterations = 1}).initial_misfit;
    EXPECT_EQ(inversion.misfit_scale, (MisfitPair{1, 10}));
    body.density.value = 3;
    line.refresh();
    const MisfitPair second = *run({.channel = channel_grav, .max_iterations = 1}).initial_misfit;
    EXPECT_EQ(inversion.misfit_scale, (MisfitPair{10, 100}));
    EXPECT_NEAR(second[0], first[0] / 10, 1e-3F * first[0]);
}

TEST_F(Perform, a_window_of_one_station_or_reversed_becomes_the_whole_line) {
    line.sheet_off_by(20000);
    for (const auto& [first, last] : {std::pair{50, 50}, std::pair{80, 20}, std::pair{0, 0}}) {
        w.first_station = first;
        w.last_station = last;
        EXPECT_NE(run({.max_iterations = 1}).status, run_failed);
        EXPECT_EQ(w.first_station, 1);
        EXPECT_EQ(w.last_station, w.station_count);
        EXPECT_EQ(inversion.fit_station_count, w.station_count);
    }
}

TEST_F(Perform, a_window_beyond_the_line_is_told_and_ends_soon) {
    line.sheet_off_by(20000);
    for (const auto& [first, last] : {std::pair{5, 1000}, std::pair{-2147483647, 2147483647}}) {
        w.first_station = first;
        w.last_station = last;
        for (const auto method : {InversionMethod::sweep, InversionMethod::least_squares}) {
            const RunResult result = run({.max_iterations = 5, .method = method});
            EXPECT_TRUE(line.prompts.told("Subscript out of range"));
            EXPECT_LE(result.iterations, 1);
        }
    }
}

TEST_F(Perform, a_narrow_window_counts_its_stations) {
    line.sheet_off_by(20000);
    w.first_station = 30;
    w.last_station = 70;
    w.first_distance = 290;
    w.last_distance = 690;
    run({.max_iterations = 1});
    EXPECT_EQ(inversion.fit_station_count, 41);
    EXPECT_EQ(w.first_station, 30);
}

TEST_F(Perform, a_parameter_that_is_no_number_is_refused_by_name) {
    ModelBody& body = line.sheet_off_by(20000);
    for (const auto method : {InversionMethod::sweep, InversionMethod::least_squares}) {
        line.prompts.messages.clear();
        body.density.vary = 1;
        body.density.value = std::numeric_limits<float>::quiet_NaN();
        body.grav_response_valid = true;
        EXPECT_EQ(run({.channel = channel_grav, .method = method}).status, run_failed);
        EXPECT_TRUE(line.prompts.told("density of body 1 is not a number"));
    }
}

TEST_F(Perform, a_misfit_that_is_no_number_is_refused) {
    line.sheet_off_by(20000);
    w.mag.data(10, row_residual, stage_observed) = std::numeric_limits<float>::infinity();
    EXPECT_EQ(run().status, run_failed);
    EXPECT_EQ(line.prompts.messages,
              std::vector<std::string>{
                  "An error occurred while seting up the inversion: The misfit is not a number"});
}

TEST_F(Perform, data_that_are_all_equal_are_fitted_as_any_other) {
    ModelBody& body = line.add_body(thick_sheet);
    for (int i = 1; i <= w.station_count; ++i) w.mag.data(i, row_raw, stage_observed) = 5;
    body.susc.vary = body.top.vary = 1;
    invalidate_filtered_data(0, w);
    line.refresh();
    for (const auto method : {InversionMethod::sweep, InversionMethod::least_squares}) {
        const RunResult result = run({.max_iterations = 20, .method = method});
        EXPECT_GE(result.status, 0);
        EXPECT_LE(result.misfit_pair[0], (*result.initial_misfit)[0]);
    }
    EXPECT_TRUE(line.prompts.messages.empty());
}

TEST_F(Perform, both_channels_at_once_need_the_least_squares_method) {
    line.sheet_off_by(20000);
    EXPECT_EQ(run({.channel = channel_joint}).status, run_failed);
    EXPECT_TRUE(line.prompts.told("An error occurred performing the inversion: "));
}

TEST_F(Perform, the_rows_hold_the_accepted_model_afterwards) {
    ModelBody& body = line.sheet_off_by(20000);
    body.distance.vary = 1;
    run({.max_iterations = 2});
    const auto row = std::as_const(w.mag.data).row(row_residual, stage_calculated);
    const std::vector<float> shown(row.begin(), row.end());
    line.refresh();
    for (std::size_t i = 0; i < shown.size(); ++i) EXPECT_NEAR(shown[i], row[i], 1e-3F);
}

}  // namespace anomalis::inversion
