#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

#include "inversion/line_session.h"
#include "inversion/perform.h"
#include "inversion/recording_observer.h"

namespace anomalis::inversion {

namespace {

/// Bodies and list as a run leaves them, and what it did.
struct LeftRun {
    RunResult result;
    std::vector<float> values, list;
    int turns = 0, evaluations = 0;
};

/// Evaluations below the worth of a second thread, of several turns each: what a turn is in the middle of is
/// the same each time.
struct FineObserver : RecordingObserver {
    double turn_units() const override { return 2e4; }
    void evaluated() override { ++evaluations; }
    int evaluations = 0;
};

/// Leaves a run over a pipe at one of its turns; 0: never.
LeftRun run_and_leave(InversionMethod method, int leave_at) {
    LineSession line(51, 20);
    ModelBody& body = line.add_body(pipe, 500, -80);
    body.dip.value = 0;
    body.length.value = 300;
    body.num_sectors = 100;
    line.workspace().definition.grav_column = 0;
    line.take_model_as_data();
    body.susc.value += 30000;
    body.susc.max = 1e6F;
    body.top.value -= 20;
    body.susc.vary = body.top.vary = 1;
    line.refresh();
    FineObserver observer;
    observer.leave_at = leave_at;
    LeftRun left;
    perform_inversion(line.workspace(), line.session.inversion,
                      {.max_iterations = 2, .method = method, .starts = 1}, observer, left.result);
    left.turns = observer.turns;
    left.evaluations = observer.evaluations;
    left.values = {body.top.value, body.susc.value};
    for (const InversionParam& param : line.session.inversion.inversion_params.span())
        left.list.push_back(param.value);
    return left;
}

/// Hears every word of the work.
struct FinestObserver : RecordingObserver {
    double turn_units() const override { return 0; }
};

/// Fits a sheet in noise that is correlated along the line, and leaves at one of the words of its errors.
LeftRun run_and_leave_errors(int leave_errors_at) {
    LineSession line(51, 20);
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    for (int i = 1; i <= 51; ++i)
        line.workspace().mag.data(i, row_raw, stage_observed) +=
            20 * std::sin(0.5F * static_cast<float>(i)) + static_cast<float>(i * i % 7);
    invalidate_filtered_data(0, line.workspace());
    body.top.value -= 5;
    body.susc.vary = body.top.vary = 1;
    line.refresh();
    FinestObserver observer;
    observer.leave_errors_at = leave_errors_at;
    LeftRun left;
    perform_inversion(line.workspace(), line.session.inversion,
                      {.max_iterations = 20, .method = InversionMethod::least_squares, .starts = 1}, observer,
                      left.result);
    left.turns = observer.turns;
    left.values = {body.top.value, body.susc.value};
    for (const InversionParam& param : line.session.inversion.inversion_params.span())
        left.list.push_back(param.value);
    return left;
}

}  // namespace

TEST(PerformAndLeave, in_the_middle_of_an_evaluation_the_last_accepted_values_stay) {
    for (const InversionMethod method : {InversionMethod::sweep, InversionMethod::least_squares}) {
        const LeftRun whole = run_and_leave(method, 0);
        ASSERT_GT(whole.turns, 3 * whole.evaluations) << "turns are in the middle of evaluations";
        bool accepted = false;
        for (int at = 1; at <= whole.turns; at += std::max(1, whole.turns / 16)) {
            const LeftRun left = run_and_leave(method, at);
            EXPECT_EQ(left.turns, at) << "not a turn more";
            EXPECT_EQ(left.result.status, run_limit) << "as a stop reads";
            for (const Faults::Entry& entry : left.result.faults.entries())
                EXPECT_EQ(entry.severity, Severity::remark) << entry.text;
            ASSERT_TRUE(left.result.filled);
            EXPECT_EQ(left.values, left.list) << "bodies and list agree at turn " << at;
            if (!left.result.initial_misfit) continue;
            // Never a probe: the misfit of what stays is the one that the run reports.
            EXPECT_LE(left.result.misfit_pair[0], (*left.result.initial_misfit)[0]);
            accepted |= left.result.misfit_pair[0] < (*left.result.initial_misfit)[0];
        }
        EXPECT_TRUE(accepted) << "some turns are past an accepted step";
    }
}

TEST(PerformAndLeave, in_the_errors_the_values_stay_and_the_run_says_so) {
    const LeftRun whole = run_and_leave_errors(0);
    ASSERT_EQ(whole.result.status, run_succeeded);
    ASSERT_TRUE(whole.result.record);
    int at = 1;
    for (;; at = at < 10 ? at + 1 : 3 * at / 2) {
        const LeftRun left = run_and_leave_errors(at);
        if (left.result.record) break;  // it ends before
        EXPECT_EQ(left.result.status, run_limit) << "as a stop reads";
        EXPECT_EQ(left.values, whole.values);
        EXPECT_EQ(left.list, whole.list);
        EXPECT_EQ(left.result.misfit_pair, whole.result.misfit_pair);
        EXPECT_FALSE(left.result.statistics);
        ASSERT_EQ(left.result.faults.entries().size(), 1U);
        EXPECT_EQ(left.result.faults.entries()[0].text,
                  "Stopped before the errors were found: the values stand, without errors");
    }
    EXPECT_GT(at, 50) << "words of the columns and of every likelihood";
}

}  // namespace anomalis::inversion
