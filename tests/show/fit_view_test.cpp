#include "show/fit_view.h"

#include <gtest/gtest.h>

#include "chart_sample.h"
#include "core/body_parameters.h"
#include "core/fit_record.h"
#include "core/inversion_state.h"
#include "show/residual_chart.h"

namespace anomalis::show {

namespace {

/// A fit of the tops and widths of two bodies.
FitRecord sample_fit() {
    FitRecord fit;
    fit.date = "2024-05-06T07:08:09";
    fit.formulas = Formulas::exact;
    fit.first_distance = 250;
    fit.last_distance = 2000;
    fit.outcome = "Inversion succeeded";
    const double open = FittedParameter::open;
    fit.parameters = {{1, param_top, 257.4F, 6, 247.1, 267.7},
                      {1, param_width, 90, open, open, 140},
                      {2, param_top, 20, 1, 18, 22},
                      {2, param_width, 90, open, open, open, true}};
    fit.correlation = {1,     -0.98, 0.1,  0.2,   //
                       -0.98, 1,     0.3,  open,  //
                       0.1,   0.3,   1,    0.85,  //
                       0.2,   open,  0.85, 1};
    fit.mag = FittedChannel{.stations = 71,
                            .rms = 13.09,
                            .noise = 1.8,
                            .chi_square = 53,
                            .correlation = 120,
                            .independent = 30,
                            .regional = {}};
    fit.mag->regional.degree = 1;
    fit.remarks = {"residuals are correlated over 120 m: a body or the regional is missing"};
    return fit;
}

}  // namespace

TEST(FitView, tells_which_fit_it_was) {
    ChartSample sample;
    const FitView view = fit_view(sample_fit(), sample.workspace());
    std::string facts;
    for (const FitFact& fact : view.facts) facts += fact.caption + "=" + fact.text + ";";
    EXPECT_EQ(facts,
              "Outcome=Inversion succeeded;Date=2024-05-06 07:08:09;Formulas=exact;Method=least squares;"
              "Fitted=magnetics;Window=250.0 to 2000.0 m;");
    EXPECT_EQ(view.remarks, sample_fit().remarks);
}

TEST(FitView, numbers_bear_units_and_the_digits_of_their_interval) {
    ChartSample sample;
    const FitView view = fit_view(sample_fit(), sample.workspace());
    ASSERT_EQ(view.channels.size(), 1U);
    EXPECT_EQ(view.channels[0].rms, "13.1 nT");
    EXPECT_EQ(view.channels[0].noise, "1.80 nT (est.)");
    EXPECT_EQ(view.channels[0].correlation, "120 m");
    EXPECT_EQ(view.channels[0].regional, "slope");
    ASSERT_EQ(view.parameters.size(), 4U);
    EXPECT_EQ(view.parameters[0].name, "Top of body 1");
    EXPECT_EQ(view.parameters[0].value, "257");
    EXPECT_EQ(view.parameters[0].interval, "247 to 268");
    EXPECT_EQ(view.parameters[0].unit, "m");
    EXPECT_EQ(view.parameters[1].interval, "below 140");
    EXPECT_EQ(view.parameters[3].interval, "not determined");
}

TEST(FitView, susceptibilities_stand_in_the_unit_of_choice) {
    ChartSample sample;
    sample.add_body(1250, 60);
    FitRecord fit = sample_fit();
    fit.parameters = {{.body = 1, .param_code = param_susc, .value = 51234, .lower = 50200, .upper = 52300}};
    fit.correlation = {1};
    const FitView si = fit_view(fit, sample.workspace(), SusceptibilityUnit::si);
    EXPECT_EQ(si.parameters[0].value, "0.0512");
    EXPECT_EQ(si.parameters[0].interval, "0.0502 to 0.0523");
    EXPECT_EQ(si.parameters[0].unit, "SI");
    fit.target = target_gradient;
    sample.workspace().processing.vg_filter_step = 3;
    EXPECT_EQ(residual_unit(fit, sample.workspace(), channel_mag), "nT per 3 stations");
}

TEST(FitView, parameters_are_called_as_the_grid_calls_those_of_their_body) {
    ChartSample sample;
    sample.add_body(1250, 60, wire);
    FitRecord fit = sample_fit();
    fit.parameters = {{.body = 1, .param_code = param_susc, .value = 6538, .lower = 6502, .upper = 6574}};
    fit.correlation = {1};
    const FitView view = fit_view(fit, sample.workspace());
    EXPECT_EQ(view.parameters[0].name, "Current of body 1");
    EXPECT_EQ(view.parameters[0].unit, "mA");
    EXPECT_EQ(view.correlation.names[0], "current 1");
}

TEST(FitView, the_pairs_that_hang_together_most_come_first) {
    ChartSample sample;
    const FitView view = fit_view(sample_fit(), sample.workspace());
    EXPECT_EQ(view.correlation.names, (std::vector<std::string>{"top 1", "width 1", "top 2", "width 2"}));
    EXPECT_EQ(view.strongest,
              (std::vector<std::string>{"top and width of body 1: -0.98", "top and width of body 2: 0.85"}));
    FitRecord torn = sample_fit();
    torn.correlation.pop_back();
    EXPECT_EQ(fit_view(torn, sample.workspace()).correlation.size(), 0U);
}

TEST(FitView, residuals_are_those_of_the_stations_of_the_fit) {
    ChartSample sample;
    sample.add_body(1250, 60);
    sample.view->display_model();
    Workspace& w = sample.workspace();
    w.first_station = 11;
    w.last_station = 81;
    const ResidualCurve curve = residual_curve(sample_fit(), w, channel_mag);
    ASSERT_EQ(curve.residual.size(), 71U);
    EXPECT_EQ(curve.distance.front(), w.distances[11]);
    EXPECT_EQ(curve.noise, 1.8);
    EXPECT_NEAR(
        curve.residual[30],
        w.mag.data(41, w.residual_row, stage_observed) - w.mag.data(41, w.residual_row, stage_calculated),
        1e-4);
    EXPECT_TRUE(residual_curve(sample_fit(), w, channel_grav).distance.empty()) << "it was not fitted";
    w.last_station = 5000;
    EXPECT_TRUE(residual_curve(sample_fit(), w, channel_mag).distance.empty());
}

TEST(FitView, the_residuals_lie_in_a_dashed_band_of_twice_the_noise) {
    ChartSample sample;
    ResidualCurve curve{{0, 100, 200, 300}, {1, -3, 2, 0}, 1.8};
    chart::RecordingDevice& device = sample.device(0);
    device.forget();
    draw_residuals(sample.chart(0), curve, "Residual", "nT");
    int dashed = 0;
    for (const auto& line : device.of_kind(chart::RecordingDevice::Kind::polyline))
        dashed += line.pen.style == chart::LineStyle::dash;
    EXPECT_EQ(dashed, 2);
    EXPECT_LE(sample.chart(0).YAxisMin(), -3.6);
    EXPECT_GE(sample.chart(0).YAxisMax(), 3.6);
    draw_residuals(sample.chart(0), {}, "Residual", "nT");
    EXPECT_FALSE(sample.chart(0).HasPlotDefined());
}

}  // namespace anomalis::show
