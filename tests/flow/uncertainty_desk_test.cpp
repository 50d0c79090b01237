#include "flow/uncertainty_desk.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "edit/change.h"
#include "edit/ensemble_in_force.h"
#include "edit/workbench.h"
#include "inversion/line_session.h"

namespace anomalis::flow {
namespace {

double seconds = 0;

/// A desk over a straight line with a sheet whose top is free. In place of the engine: a fit that raises the
/// top by `raise` m, and as many models as are asked for unless somebody stops it.
class UncertaintyRun : public ::testing::Test, private UncertaintyDeskObserver {
  protected:
    UncertaintyRun() {
        line.add_body(thick_sheet).top.vary = 1;
        workbench.view.current_body = 1;
        line.refresh();
        edit::start_history(workbench);
        desk.set_clock([] { return seconds; });
    }

    inversion::EnsembleResult find(const Workspace& workspace, const inversion::EnsembleRequest& asked,
                                   inversion::EnsembleObserver& observer) {
        request = asked;
        inversion::EnsembleResult result;
        if (refused) {
            result.faults.add("The misfit is not a number");
            return result;
        }
        Workspace fitted = workspace;
        fitted.body(1).top.value += raise;
        result.bodies = {fitted.body(1)};
        result.record.emplace().model_mark = model_mark(fitted);
        Ensemble ensemble;
        ensemble.parameters = {
            {.body = 1, .param_code = param_top, .value = fitted.body(1).top.value, .lower = -60}};
        ensemble.model_mark = model_mark(fitted);
        for (int done = 0; done <= asked.samples && !result.stopped; ++done) {
            if (done > 0) ensemble.samples.push_back({.values = {fitted.body(1).top.value}});
            seconds += 2;
            observer.samples_done(done, asked.samples);
            if (on_model) on_model(done);
            result.stopped = observer.working(2e7);
        }
        result.ensemble = std::move(ensemble);
        return result;
    }

    void run(int samples = 100) { desk.start({.samples = samples}, channel_mag); }
    float top() { return w.body(1).top.value; }

    inversion::LineSession line;
    Workspace& w = line.session.workspace;
    edit::Workbench workbench{line.session};
    UncertaintyDesk desk{
        workbench, *this,
        [this](const Workspace& workspace, const inversion::EnsembleRequest& asked,
               inversion::EnsembleObserver& observer) { return find(workspace, asked, observer); }};
    inversion::EnsembleRequest request;
    float raise = 5;
    bool refused = false;
    std::function<void(int)> on_model;
    std::vector<std::string> calls;

  private:
    void run_changed() override { calls.push_back(desk.running() ? "begin" : "end"); }
    void progress_changed() override {}
    void model_changed() override {
        calls.push_back("model");
        line.refresh();
    }
};

TEST_F(UncertaintyRun, the_fit_and_the_ensemble_are_one_step) {
    const float before = top();
    run();
    EXPECT_EQ(top(), before + 5);
    EXPECT_TRUE(desk.found());
    EXPECT_EQ(desk.outcome(), "100 models that explain the line");
    EXPECT_EQ(calls, (std::vector<std::string>{"begin", "model", "end"}));
    ASSERT_NE(edit::ensemble_in_force(workbench), nullptr);
    EXPECT_TRUE(as_fitted(w));
    EXPECT_EQ(workbench.history.steps(), 1U);
    EXPECT_EQ(workbench.history.undo_name(), "uncertainty of the model");
    edit::undo_change(workbench);
    EXPECT_EQ(top(), before);
    EXPECT_EQ(edit::ensemble_in_force(workbench), nullptr);
    edit::redo_change(workbench);
    EXPECT_NE(edit::ensemble_in_force(workbench), nullptr);
}

/// Watches nothing but the numbers.
struct Refreshing : UncertaintyDeskObserver {
    explicit Refreshing(inversion::LineSession& the_line) : line(the_line) {}
    void run_changed() override {}
    void progress_changed() override {}
    void model_changed() override { line.refresh(); }
    inversion::LineSession& line;
};

TEST(UncertaintyOfALine, the_engine_leaves_its_fit_and_an_ensemble_in_force) {
    for (const bool floating : {false, true}) {
        inversion::LineSession line(41, 25);
        Workspace& w = line.session.workspace;
        ModelBody& body = line.add_body(thick_sheet);
        body.susc.value = 20000;
        line.take_model_as_data();
        for (int i = 1; i <= w.station_count; ++i)
            w.mag.data(i, row_raw, stage_observed) += 2 * std::sin(static_cast<float>(7 * i * i % 97));
        w.mag.float_base = floating ? 1 : 0;
        w.mag.noise = 1.4F;
        body.top.value -= 12;
        body.top.vary = body.susc.vary = 1;
        line.refresh();
        edit::Workbench workbench{line.session};
        workbench.view.current_body = 1;
        edit::start_history(workbench);
        Refreshing observer(line);
        UncertaintyDesk desk(workbench, observer);
        desk.start({.samples = 20}, channel_mag);
        ASSERT_TRUE(desk.found()) << desk.outcome();
        EXPECT_NEAR(body.top.value, -50, 5);
        EXPECT_TRUE(as_fitted(w)) << floating;
        ASSERT_NE(edit::ensemble_in_force(workbench), nullptr) << floating;
        EXPECT_EQ(w.ensemble->samples.size(), 20U);
        EXPECT_NE(edit::ensemble_parameter(workbench, 1, param_top), nullptr);
        EXPECT_EQ(workbench.history.steps(), 1U);
        ASSERT_EQ(w.ensemble->fans.size(), 1U);
        const EnsembleFan& fan = w.ensemble->fans[0];
        const auto curve = w.mag.data.row(w.residual_row, stage_calculated);
        ASSERT_EQ(fan.lower.size(), 41U);
        for (std::size_t i = 0; i < 41; ++i)
            EXPECT_NEAR((fan.lower[i] + fan.upper[i]) / 2, curve[i], 4) << "about the curve on show, " << i;
        const std::shared_ptr<const Ensemble> first = w.ensemble;
        edit::undo_change(workbench);
        line.refresh();
        EXPECT_EQ(edit::ensemble_in_force(workbench), nullptr);
        edit::redo_change(workbench);
        line.refresh();
        EXPECT_EQ(edit::ensemble_in_force(workbench), first) << floating;
    }
}

TEST_F(UncertaintyRun, a_model_that_is_as_fitted_does_not_move) {
    raise = 0;
    run();
    EXPECT_EQ(workbench.history.steps(), 0U);
    EXPECT_FALSE(workbench.unsaved);
    EXPECT_NE(edit::ensemble_in_force(workbench), nullptr);
}

TEST_F(UncertaintyRun, a_stop_keeps_the_models_that_are_there) {
    on_model = [&](int done) {
        if (done == 40) desk.stop();
    };
    run();
    EXPECT_EQ(desk.outcome(), "Stopped: 40 models that explain the line");
    ASSERT_NE(edit::ensemble_in_force(workbench), nullptr);
    EXPECT_EQ(w.ensemble->samples.size(), 40U);
}

TEST_F(UncertaintyRun, a_stop_before_there_are_enough_changes_nothing) {
    const float before = top();
    on_model = [&](int done) {
        if (done == 7) desk.stop();
    };
    run();
    EXPECT_EQ(desk.outcome(), "Too few for a band: 7 models, 20 are needed. The model is as it was");
    EXPECT_EQ(top(), before);
    EXPECT_FALSE(desk.found());
    EXPECT_EQ(w.ensemble, nullptr);
    EXPECT_EQ(workbench.history.steps(), 0U);
}

TEST_F(UncertaintyRun, a_cancel_keeps_nothing_and_outweighs_a_stop) {
    const float before = top();
    on_model = [&](int done) {
        if (done != 50) return;
        desk.cancel();
        desk.stop();
    };
    run();
    EXPECT_EQ(desk.outcome(), "Cancelled: the model is as it was");
    EXPECT_EQ(top(), before);
    EXPECT_EQ(w.ensemble, nullptr);
    EXPECT_FALSE(w.fit);
    EXPECT_EQ(calls, (std::vector<std::string>{"begin", "end"}));
}

TEST_F(UncertaintyRun, everything_else_is_closed_meanwhile) {
    bool seen = false;
    on_model = [&](int) {
        seen = true;
        EXPECT_TRUE(desk.running());
        EXPECT_TRUE(line.session.inversion.running);
        const int asked = request.samples;
        run(33);
        EXPECT_EQ(request.samples, asked) << "one run at a time";
    };
    run(21);
    EXPECT_TRUE(seen);
    EXPECT_FALSE(line.session.inversion.running);
    EXPECT_GT(line.prompts.yields, 20);
    calls.clear();
    line.session.inversion.running = true;
    run();
    EXPECT_TRUE(calls.empty()) << "an inversion goes on";
}

TEST_F(UncertaintyRun, the_time_left_follows_the_models_that_are_done) {
    on_model = [&](int done) {
        EXPECT_EQ(desk.progress().done, done);
        EXPECT_EQ(desk.progress().of, 100);
        EXPECT_EQ(desk.progress().seconds_left.has_value(), done >= 5) << done;
        if (done == 25) {
            EXPECT_NEAR(*desk.progress().seconds_left, 2 * 75, 1e-9);
        }
    };
    run();
    EXPECT_EQ(desk.progress().done, 100);
}

TEST_F(UncertaintyRun, what_was_chosen_is_asked_for_within_reason) {
    desk.start({.samples = 1, .vary_regional = false, .vary_bodies = true, .strike_within = 25},
               channel_joint);
    EXPECT_EQ(request.samples, UncertaintyChoice::least_samples);
    EXPECT_FALSE(request.vary_regional);
    EXPECT_TRUE(request.vary_bodies);
    EXPECT_EQ(request.strike_within, 25);
    EXPECT_EQ(request.channel, channel_joint);
    w.definition.mag_column = 0;
    line.session.inversion.inversion_target = target_gradient;
    desk.start({.samples = 50, .strike_within = 300}, channel_mag);
    EXPECT_EQ(request.channel, channel_grav) << "the line has no magnetics";
    EXPECT_EQ(request.target, target_gradient);
    EXPECT_EQ(request.strike_within, 90);
}

TEST_F(UncertaintyRun, a_model_that_cannot_be_fitted_is_told_and_stays) {
    refused = true;
    run();
    EXPECT_EQ(desk.outcome(), "There is no ensemble: the model could not be fitted");
    EXPECT_TRUE(line.prompts.told("The misfit is not a number"));
    EXPECT_EQ(w.ensemble, nullptr);
}

TEST_F(UncertaintyRun, there_is_nothing_to_run_without_a_line_a_body_or_a_free_parameter) {
    EXPECT_EQ(desk.refusal(), "");
    const auto refuses = [&](const std::string& begin) {
        calls.clear();
        run();
        EXPECT_TRUE(desk.outcome().starts_with(begin)) << desk.outcome();
        EXPECT_TRUE(calls.empty());
    };
    w.body(1).vary = 0;
    refuses("No parameter is free");
    w.body(1).vary = 1;
    w.body(1).turned_off = 1;
    refuses("No parameter is free");
    w.body(1).turned_off = 0;
    w.body(1).top.vary = 0;
    refuses("No parameter is free");
    w.body_count = 0;
    refuses("The model has no body");
    w.station_count = 0;
    refuses("There is no line");
}

}  // namespace
}  // namespace anomalis::flow
