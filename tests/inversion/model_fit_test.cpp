#include "inversion/model_fit.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <map>
#include <vector>

#include "core/body_parameters.h"
#include "flow/inversion_report.h"
#include "inversion/line_session.h"
#include "model/misfit.h"

namespace anomalis::inversion {

using flow::InversionReport;
using flow::ReportedParameter;
using flow::run_inversion;

namespace {

using Slot = BodyParam ModelBody::*;

struct Recovery {
    const char* name;
    int type;
    std::int32_t channel;
    std::vector<Slot> free;
    /// What makes the body differ from the one of the other cases.
    void (*shape)(ModelBody&) = [](ModelBody&) {};
};

void PrintTo(const Recovery& recovery, std::ostream* out) {
    *out << recovery.name;
}

/// Fits by least squares what the free parameters of a model do not fit yet.
InversionReport fit(LineSession& line, std::int32_t channel = channel_mag, int iterations = 100) {
    return run_inversion(
        line.session,
        {.channel = channel, .method = InversionMethod::least_squares, .iterations = iterations});
}

/// Puts the free parameters off by 20 %, up and down in turn, and returns what they were.
std::map<int, float> put_off(ModelBody& body, const std::vector<Slot>& free) {
    std::map<int, float> truth;
    float factor = 1.2F;
    for (const BodyParameter& row : body_parameters()) {
        if (std::find(free.begin(), free.end(), row.slot) == free.end()) continue;
        BodyParam& param = body.*row.slot;
        truth[row.code] = param.value;
        param.vary = 1;
        param.value *= factor;
        factor = 2 - factor;
    }
    return truth;
}

std::vector<std::string> names_of(const InversionReport& report, const std::vector<int>& numbers) {
    std::vector<std::string> names;
    for (const int number : numbers)
        names.push_back(report.parameters.at(static_cast<std::size_t>(number - 1)).name);
    return names;
}

void make_endless(ModelBody& body) {
    body.length.value = 0;
}

const Slot distance = &ModelBody::distance;
const Slot top = &ModelBody::top;
const Slot dip = &ModelBody::dip;
const Slot width = &ModelBody::width;
const Slot length = &ModelBody::length;
const Slot susc = &ModelBody::susc;
const Slot density = &ModelBody::density;

class RecoveryFromTwentyPercent : public ::testing::TestWithParam<Recovery> {};

}  // namespace

TEST_P(RecoveryFromTwentyPercent, every_parameter_comes_back) {
    const Recovery& recovery = GetParam();
    // A sphere is turned by the azimuth of the line and shows itself along a meridian only.
    LineSession line(161, 10, recovery.type == sphere ? column_north : column_east);
    // Between two stations: straight over a corner the gravity of a sheet is not defined.
    ModelBody& body = line.add_body(recovery.type, 703.7F, -60);
    body.dip.value = 70;
    recovery.shape(body);
    if (recovery.channel == channel_mag) line.workspace().definition.grav_column = 0;
    line.take_model_as_data();
    const std::map<int, float> truth = put_off(body, recovery.free);
    const InversionReport report = fit(line, recovery.channel);
    EXPECT_EQ(report.result.status, run_succeeded) << report.label;
    ASSERT_EQ(report.parameters.size(), truth.size());
    ASSERT_TRUE(report.result.statistics);
    EXPECT_EQ(names_of(report, report.result.statistics->undetermined), std::vector<std::string>{});
    EXPECT_EQ(names_of(report, report.result.statistics->at_limit), std::vector<std::string>{});
    for (const ReportedParameter& p : report.parameters)
        EXPECT_NEAR(p.final, truth.at(p.param_code), 1e-3F * std::abs(truth.at(p.param_code))) << p.name;
    EXPECT_EQ(line.prompts.messages, std::vector<std::string>{});
}

INSTANTIATE_TEST_SUITE_P(
    BodyTypes, RecoveryFromTwentyPercent,
    ::testing::Values(
        Recovery{"thin_sheet", thin_sheet, channel_mag, {distance, top, dip, susc}},
        Recovery{"thick_sheet", thick_sheet, channel_mag, {distance, top, dip, width, susc}, make_endless},
        Recovery{"prism", thick_sheet, channel_mag, {distance, top, dip, width, susc, length}},
        Recovery{"edge", edge, channel_mag, {distance, top, dip, susc}},
        Recovery{"sloping_step", sloping_step, channel_mag, {distance, top, dip, susc}},
        Recovery{"sphere",
                 sphere,
                 channel_mag,
                 {distance, top, susc},
                 [](ModelBody& body) {
                     body.strike.value = 93.14159F;
                     body.width.value = 60;
                     body.top.value = -150;
                 }},
        Recovery{"pipe", pipe, channel_mag, {distance, top, susc}},
        Recovery{"endless_pipe", pipe, channel_mag, {distance, top, susc}, make_endless},
        Recovery{"wire", wire, channel_mag, {distance, top, susc}},
        Recovery{"wire_pair",
                 wire,
                 channel_mag,
                 {distance, top, dip, susc},
                 [](ModelBody& body) { body.offset.value = 20; }},
        Recovery{
            "thick_sheet_gravity", thick_sheet, channel_grav, {distance, top, dip, density}, make_endless},
        Recovery{"prism_gravity", thick_sheet, channel_grav, {distance, top, dip, density}},
        Recovery{"pipe_gravity", pipe, channel_grav, {distance, top, density}},
        Recovery{"prism_joint", thick_sheet, channel_joint, {distance, top, dip, width, susc, density}}),
    [](const ::testing::TestParamInfo<Recovery>& body) { return std::string(body.param.name); });

TEST(ModelFit, what_acts_only_together_is_named_and_the_rest_recovered) {
    LineSession line(161, 10);
    ModelBody& body = line.add_body(thin_sheet, 703.7F, -60);
    line.take_model_as_data();
    const float product = body.width.value * body.susc.value;
    const float middle = body.distance.value + body.width.value / 2;
    put_off(body, {distance, top, width, susc});
    const InversionReport report = fit(line);
    EXPECT_EQ(names_of(report, report.result.statistics->undetermined),
              (std::vector<std::string>{"distance", "width", "susc"}));
    EXPECT_NEAR(body.top.value, -60, 0.05);
    EXPECT_NEAR(body.distance.value + body.width.value / 2, middle, 0.1);
    EXPECT_NEAR(body.width.value * body.susc.value, product, 1e-3F * product);
    EXPECT_TRUE(std::isnan(report.result.statistics->errors[0]));
    EXPECT_FALSE(std::isnan(report.result.statistics->errors[1]));
}

TEST(ModelFit, a_parameter_without_effect_is_named_and_stays) {
    LineSession line;
    ModelBody& body = line.add_body(wire);
    line.take_model_as_data();
    put_off(body, {distance, density});
    const float kept = body.density.value;
    const InversionReport report = fit(line, channel_joint);
    EXPECT_EQ(names_of(report, report.result.statistics->undetermined), std::vector<std::string>{"density"});
    EXPECT_EQ(body.density.value, kept);
    EXPECT_NEAR(body.distance.value, 500, 0.1);
}

TEST(ModelFit, limits_are_kept_and_named) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    put_off(body, {distance, susc});
    body.susc.max = 45000;
    const InversionReport report = fit(line);
    EXPECT_EQ(body.susc.value, 45000.0F);
    EXPECT_EQ(names_of(report, report.result.statistics->at_limit), std::vector<std::string>{"susc"});
    EXPECT_TRUE(std::isnan(report.result.statistics->errors[1]));
    EXPECT_FALSE(std::isnan(report.result.statistics->errors[0]));
}

TEST(ModelFit, only_the_stations_of_the_window_count) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    Workspace& w = line.workspace();
    for (int i = 80; i <= w.station_count; ++i) w.mag.data(i, row_raw, stage_observed) += 500;
    w.last_station = 79;
    w.last_distance = w.distances[79];
    put_off(body, {distance, susc});
    fit(line);
    EXPECT_NEAR(body.distance.value, 500, 0.5);
    EXPECT_NEAR(body.susc.value, 50000, 50);
}

TEST(ModelFit, standard_errors_follow_the_noise) {
    LineSession line(161, 10);
    ModelBody& body = line.add_body(thick_sheet, 703.7F);
    line.take_model_as_data();
    Workspace& w = line.workspace();
    for (int i = 1; i <= w.station_count; ++i)
        w.mag.data(i, row_raw, stage_observed) += i * 7919 % 13 < 6 ? 4.0F : -3.4F;
    const std::map<int, float> truth = put_off(body, {distance, top, susc});
    const InversionReport report = fit(line);
    const FitStatistics& statistics = *report.result.statistics;
    for (std::size_t i = 0; i < report.parameters.size(); ++i) {
        const ReportedParameter& p = report.parameters[i];
        EXPECT_GT(statistics.errors[i], 0);
        EXPECT_LT(std::abs(p.final - truth.at(p.param_code)), 4 * statistics.errors[i]) << p.name;
        EXPECT_EQ(statistics.correlation[i * 3 + i], 1);
    }
    // Depth and susceptibility trade against each other.
    EXPECT_LT(statistics.correlation[1 * 3 + 2], -0.5);
    EXPECT_DOUBLE_EQ(statistics.correlation[1 * 3 + 2], statistics.correlation[2 * 3 + 1]);
}

TEST(ModelFit, a_joint_fit_reports_both_channels) {
    LineSession line(161, 10);
    ModelBody& body = line.add_body(thick_sheet, 703.7F);
    line.take_model_as_data();
    put_off(body, {top, susc, density});
    const InversionReport report = fit(line, channel_joint);
    ASSERT_TRUE(report.result.initial_grav_misfit && report.result.grav_misfit);
    EXPECT_GT((*report.result.initial_grav_misfit)[0], 1e-3F);
    EXPECT_LT((*report.result.grav_misfit)[0], 1e-5F);
    EXPECT_LT(report.result.misfit_pair[0], 1e-3F);
}

TEST(ModelFit, a_column_costs_one_body) {
    LineSession line;
    ModelBody& first = line.add_body(thick_sheet, 300);
    ModelBody& second = line.add_body(thick_sheet, 600);
    ModelBody& fixed = line.add_body(thick_sheet, 800);
    line.take_model_as_data();
    put_off(first, {susc});
    put_off(second, {susc});
    line.refresh();
    // A mark of our own in a cached response survives only if the body is not calculated again.
    fixed.response(1, 3) = 12345;
    bool kept = false;
    run_inversion(line.session, {.method = InversionMethod::least_squares, .iterations = 3},
                  [&](const InversionProgress&) { kept = fixed.response(1, 3) == 12345.0F; });
    EXPECT_TRUE(kept);
    EXPECT_NEAR(first.susc.value, 50000, 50);
    EXPECT_NEAR(second.susc.value, 50000, 50);
}

TEST(ModelFit, steps_of_0_and_crossed_limits_are_borne) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    put_off(body, {distance, susc});
    body.susc.min = 90000;
    body.susc.max = 10000;
    const float held = body.susc.value;
    const InversionReport report = fit(line);
    EXPECT_GE(report.result.status, 0);
    EXPECT_EQ(body.susc.value, held);
    EXPECT_EQ(names_of(report, report.result.statistics->at_limit), std::vector<std::string>{"susc"});
    // What starts beyond a bound of physics is not held by it.
    body.susc = {-500, 1, unset, unset};
    EXPECT_GE(fit(line).result.status, 0);
    EXPECT_NEAR(body.susc.value, 50000, 50);
}

TEST(ModelFit, it_needs_fewer_evaluations_than_the_sweep_and_fits_no_worse) {
    RunResult results[2];
    std::int64_t evaluations[2] = {};  // until the iterations ended, without what errors and intervals take
    for (const auto method : {InversionMethod::sweep, InversionMethod::least_squares}) {
        LineSession line;
        ModelBody& body = line.add_body(thick_sheet);
        line.take_model_as_data();
        Workspace& w = line.workspace();
        for (int i = 1; i <= w.station_count; ++i)
            w.mag.data(i, row_raw, stage_observed) += i % 3 == 0 ? 2.0F : -1.0F;
        put_off(body, {distance, top, dip, susc});
        body.distance.value = 540;
        const int i = method == InversionMethod::sweep ? 0 : 1;
        const InversionState& state = line.session.inversion;
        results[i] = run_inversion(line.session, {.method = method}, [&](const InversionProgress&) {
                         evaluations[i] = state.evaluations;
                     }).result;
    }
    EXPECT_LE(results[1].misfit_pair[0], results[0].misfit_pair[0]);
    EXPECT_LT(evaluations[1], evaluations[0]);
}

TEST(ModelFit, a_perfect_start_does_not_decrease) {
    LineSession line;
    ModelBody& body = line.add_body(thick_sheet);
    line.take_model_as_data();
    body.susc.vary = body.top.vary = 1;
    const InversionReport report = fit(line);
    EXPECT_EQ(report.result.status, run_no_decrease);
    EXPECT_EQ(body.susc.value, 50000.0F);
    EXPECT_EQ(report.result.misfit_pair, (MisfitPair{0, 0}));
}

}  // namespace anomalis::inversion
