#include "inversion/sweep.h"

#include <cmath>
#include <gtest/gtest.h>

#include "inversion/line_session.h"
#include "inversion/parameters.h"
#include "inversion/trial_rows.h"
#include "model/misfit.h"
#include "support/stale_body.h"

namespace anomalis::inversion {

namespace {

struct CountingObserver : RunObserver {
    void evaluated() override { ++evaluations; }
    long evaluations = 0;
};

/// A list of free parameters over a line whose data are those of the model before it was put off.
class Sweep : public ::testing::Test {
  protected:
    /// The list as it stands in the bodies, and a run at its beginning.
    void begin(int channel = channel_mag) {
        line.session.inversion.inversion_channel = channel;
        model::set_misfit_scale(line.session.inversion);
        state.misfit_pair = line.refresh();
        int count = 0;
        setup_all_body_parameters(0, channel, count, line.fitted());
        inversion.inversion_params.assign(count);
        inversion.inversion_param_map.assign(count);
        count = 0;
        setup_all_body_parameters(1, channel, count, line.fitted());
        start_trial_rows(w);
        evaluations = inversion.evaluations;
    }
    long sweep() {
        const auto before = inversion.evaluations;
        sweep_parameters(line.fitted(), state, counter);
        return static_cast<long>(inversion.evaluations - before);
    }
    InversionParam& param(int i = 1) { return inversion.inversion_params[i]; }

    LineSession line;
    Workspace& w = line.session.workspace;
    InversionState& inversion = line.session.inversion;
    SweepState state;
    CountingObserver counter;
    std::int64_t evaluations = 0;
};

}  // namespace

TEST_F(Sweep, a_linear_misfit_is_met_in_one_turn) {
    ModelBody& body = line.add_body(thick_sheet);
    body.susc.value = 50000;
    line.take_model_as_data();
    body.susc.value = 50200;
    body.susc.vary = 1;
    begin();
    sweep();
    EXPECT_NEAR(body.susc.value, 50000, 0.5);
    EXPECT_NEAR(state.misfit_pair[0], 0, 1e-3);
    EXPECT_EQ(state.halvings, 0);
}

TEST_F(Sweep, the_step_is_the_largest_change_of_a_turn) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 60000;
    body.susc.vary = 1;
    begin();
    sweep();
    EXPECT_EQ(body.susc.value, 60000.0F - 250.0F);
    sweep();
    EXPECT_EQ(body.susc.value, 60000.0F - 500.0F);
}

TEST_F(Sweep, a_flat_parameter_keeps_its_probe) {
    ModelBody& body = line.add_body(sphere);
    line.take_model_as_data();
    body.susc.value += 5000;
    body.dip.value = 30;
    body.dip.vary = 1;
    begin();
    EXPECT_EQ(sweep(), 1);
    EXPECT_FLOAT_EQ(body.dip.value, 30.3F);
    sweep();
    EXPECT_FLOAT_EQ(body.dip.value, 30.603F);
    EXPECT_EQ(state.halvings, 0);
}

TEST_F(Sweep, from_a_perfect_start_the_parameter_goes_back) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.top.vary = body.dip.vary = 1;
    begin();
    sweep();
    EXPECT_EQ(body.top.value, -50.0F);
    EXPECT_EQ(body.dip.value, 90.0F);
    EXPECT_EQ(state.misfit_pair, (MisfitPair{0, 0}));
}

TEST_F(Sweep, an_accepted_step_is_the_base_of_the_next_parameter) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.distance.value = 480;
    body.susc.value = 60000;
    body.distance.vary = body.susc.vary = 1;
    begin();
    sweep();
    EXPECT_EQ(body.distance.value, 490.0F);
    EXPECT_EQ(body.susc.value, 59750.0F);
    const MisfitPair kept = state.misfit_pair;
    EXPECT_EQ(line.refresh(), kept);
}

TEST_F(Sweep, acceptance_copies_the_calculated_stage_into_the_true_rows) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 60000;
    body.susc.vary = 1;
    begin();
    const ChannelTable before = w.mag.data;
    sweep();
    EXPECT_EQ(w.mag.data, w.mag.work);
    EXPECT_NE(w.mag.data, before);
}

TEST_F(Sweep, the_halvings_belong_to_the_run) {
    // An anomaly that the model cannot have keeps the misfit well above 0, so a secant step from the best
    // place always fails.
    ModelBody& body = line.add_body(thick_sheet);
    line.add_body(thick_sheet, 800).susc.value = 90000;
    line.take_model_as_data();
    w.body(2).turned_off = 1;
    body.distance.vary = 1;
    begin();
    const float kept = body.distance.value;
    EXPECT_EQ(sweep(), 5) << "the probe, then full, half, quarter and eighth";
    EXPECT_EQ(state.halvings, 4);
    EXPECT_EQ(body.distance.value, kept);
    EXPECT_EQ(sweep(), 2) << "later turns have one try each";
    EXPECT_EQ(state.halvings, 5);
}

TEST_F(Sweep, limits_cut_a_step) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.distance.value = 480;
    body.distance.vary = 1;
    body.distance.min = 100;
    body.distance.max = 484;
    begin();
    sweep();
    // The probe of 4.8 stands beyond the limit for one evaluation; the step is cut at it.
    EXPECT_TRUE(body.distance.value == 484.0F || body.distance.value == 480.0F);
    EXPECT_LE(body.distance.value, 484.0F);
}

TEST_F(Sweep, a_value_on_its_upper_limit_refuses_a_fall) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 60000;
    body.susc.vary = 1;
    body.susc.max = 60000;
    begin();
    EXPECT_EQ(sweep(), 1);
    EXPECT_EQ(body.susc.value, 60000.0F);
}

TEST_F(Sweep, a_value_on_its_lower_limit_rises_when_the_probe_lifts_it_off) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 40000;
    body.susc.vary = 1;
    body.susc.min = 40000;
    body.susc.max = 90000;
    begin();
    sweep();
    EXPECT_EQ(body.susc.value, 40250.0F);
}

TEST_F(Sweep, a_value_on_its_lower_limit_stays_when_the_probe_is_tiny) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.density.value = 0.005F;
    body.density.min = 0.005F;
    body.density.vary = 1;
    begin(channel_grav);
    // A probe of 0.00005 is too short to lift the value off its limit. The scale makes its effect count.
    param().step = 0.001F;
    inversion.misfit_scale = {1e-6F, 1e-6F};
    Faults faults;
    state.misfit_pair = model::calculate_misfit(w, inversion, faults);
    EXPECT_EQ(sweep(), 1);
    EXPECT_EQ(body.density.value, 0.005F) << "neither the wish to rise nor the probe is left";
}

TEST_F(Sweep, crossed_limits_end_at_the_upper_one) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 60000;
    body.susc.vary = 1;
    begin();
    param().lower = 59990;
    param().upper = 59900;
    param().value = 60000;
    sweep();
    EXPECT_TRUE(body.susc.value == 59900.0F || body.susc.value == 60000.0F);
    EXPECT_TRUE(std::isfinite(state.misfit_pair[0]));
}

TEST_F(Sweep, a_step_of_0_moves_nothing) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 60000;
    body.susc.vary = 1;
    begin();
    param().step = 0;
    sweep();
    EXPECT_EQ(body.susc.value, 60000.0F);
    EXPECT_EQ(state.halvings, 0);
}

TEST_F(Sweep, a_value_and_a_step_of_0_are_flat) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 60000;
    invalidate_body(body);
    body.strike.vary = 1;
    begin();
    param().step = 0;
    EXPECT_EQ(sweep(), 1);
    EXPECT_EQ(body.strike.value, 0.0F);
}

TEST_F(Sweep, the_gradient_is_reduced_when_it_is_the_target) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.distance.value = 460;
    body.distance.vary = 1;
    inversion.inversion_target = target_gradient;
    begin();
    const MisfitPair before = state.misfit_pair;
    sweep();
    EXPECT_LT(state.misfit_pair[1], before[1]);
}

TEST_F(Sweep, each_evaluation_is_told) {
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.value = 60000;
    body.susc.vary = 1;
    begin();
    const long done = sweep();
    EXPECT_GT(done, 0);
    EXPECT_EQ(counter.evaluations, done);
}

TEST_F(Sweep, only_the_touched_body_is_calculated) {
    ModelBody& touched = line.add_body(thick_sheet);
    ModelBody& other = line.add_body(thick_sheet, 300);
    line.take_model_as_data();
    touched.susc.value = 60000;
    touched.susc.vary = 1;
    begin();
    // A mark of our own in the cached response survives only if the body is not calculated again.
    other.response(1, 3) = 12345;
    sweep();
    EXPECT_EQ(other.response(1, 3), 12345.0F);
}

}  // namespace anomalis::inversion
