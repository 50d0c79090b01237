#include "show/cross_plots.h"

#include <cmath>
#include <gtest/gtest.h>

#include "chart/ax_grapher.h"
#include "core/body_parameters.h"
#include "core/ensemble.h"
#include "core/workspace.h"
#include "support/recording_device.h"

namespace anomalis::show {
namespace {

using Kind = chart::RecordingDevice::Kind;

/// Body 2 in 41 models: top, width and susceptibility, of which width times susceptibility stays 5 m SI.
struct Sheet {
    Workspace workspace;
    Ensemble ensemble;

    explicit Sheet(std::int32_t type = thick_sheet) {
        workspace.bodies.resize(3);
        workspace.body_count = 2;
        for (int number : {1, 2}) workspace.body(number).type = type;
        ensemble.parameters = {{.body = 1, .param_code = param_top},
                               {.body = 2, .param_code = param_susc, .value = 50000},
                               {.body = 2, .param_code = param_top, .value = 60},
                               {.body = 2, .param_code = param_width, .value = 100},
                               {.body = 2, .param_code = param_offset, .value = 7}};
        for (int i = 0; i <= 40; ++i) {
            const auto width = static_cast<float>(60 + 2 * i);
            ensemble.samples.push_back(
                {.values = {1, 5e6F / width, 50 + static_cast<float>(i) / 2, width, 7}});
        }
    }
};

TEST(CrossPlots, have_depth_width_and_susceptibility_of_one_body) {
    const Sheet sheet;
    const CrossPlots plots = cross_plots(sheet.workspace, sheet.ensemble, 2);
    ASSERT_EQ(plots.axes.size(), 3U);
    EXPECT_EQ(plots.axes[0].name, "Depth to top");
    EXPECT_EQ(plots.axes[0].fitted, -60) << "above the ground at 0";
    EXPECT_EQ(plots.axes[0].values.back(), -70);
    EXPECT_EQ(plots.axes[1].name, "Width");
    EXPECT_EQ(plots.axes[1].unit, "m");
    EXPECT_EQ(plots.axes[2].param_code, param_susc);
    EXPECT_EQ(plots.axes[1].fitted, 100);
    EXPECT_EQ(plots.axes[1].values.size(), 41U);
    EXPECT_EQ(cross_pairs(plots).size(), 3U);
    EXPECT_EQ(plotted_bodies(sheet.workspace, sheet.ensemble), std::vector<int>{2});
}

TEST(CrossPlots, the_axis_of_susceptibility_has_the_unit_of_choice) {
    const Sheet sheet;
    const CrossPlots plots = cross_plots(sheet.workspace, sheet.ensemble, 2, SusceptibilityUnit::si);
    EXPECT_EQ(plots.axes[2].unit, "SI");
    EXPECT_DOUBLE_EQ(plots.axes[2].fitted, 0.05);
    const CrossPlots micro = cross_plots(sheet.workspace, sheet.ensemble, 2);
    ASSERT_TRUE(plots.product && micro.product);
    EXPECT_EQ(plots.product->words, micro.product->words) << "the product is in m SI in both";
}

TEST(CrossPlots, a_top_under_a_ground_that_nobody_knows_stays_an_elevation) {
    Sheet sheet;
    sheet.workspace.definition.z_column = 4;
    sheet.workspace.definition.dtm_column = 0;
    const CrossPlots plots = cross_plots(sheet.workspace, sheet.ensemble, 2);
    EXPECT_EQ(plots.axes.at(0).name, "Top");
    EXPECT_EQ(plots.axes.at(0).fitted, 60);
}

TEST(CrossPlots, one_free_parameter_makes_none) {
    const Sheet sheet;
    EXPECT_TRUE(cross_plots(sheet.workspace, sheet.ensemble, 1).axes.empty());
    EXPECT_TRUE(cross_plots(sheet.workspace, sheet.ensemble, 3).axes.empty());
    EXPECT_TRUE(cross_pairs({}).empty());
}

TEST(CrossPlots, models_that_lack_the_body_are_left_out_of_every_axis) {
    Sheet sheet;
    sheet.ensemble.samples[3].values[3] = NAN;
    for (const CrossAxis& axis : cross_plots(sheet.workspace, sheet.ensemble, 2).axes)
        EXPECT_EQ(axis.values.size(), 40U);
}

TEST(CrossPlots, width_times_susceptibility_is_marked_where_the_data_determine_it) {
    Sheet sheet;
    const auto product = cross_plots(sheet.workspace, sheet.ensemble, 2).product;
    ASSERT_TRUE(product);
    EXPECT_TRUE(product->determined);
    EXPECT_NEAR(product->fitted, 5e6, 1);
    EXPECT_EQ(product->power, 1);
    EXPECT_TRUE(product->words.starts_with("Width x susceptibility of body 2: 5.0")) << product->words;
    EXPECT_TRUE(product->words.ends_with("m SI (90 %), which the data determine better than either"));
    // One that goes with the width is no better known.
    for (EnsembleSample& sample : sheet.ensemble.samples) sample.values[1] = 500 * sample.values[3];
    const auto other = cross_plots(sheet.workspace, sheet.ensemble, 2).product;
    EXPECT_FALSE(other->determined);
    EXPECT_TRUE(other->words.ends_with("(90 %)")) << other->words;
}

TEST(CrossPlots, of_round_bodies_the_size_counts_by_its_section_and_wires_have_none) {
    EXPECT_EQ(Sheet(pipe).workspace.body(2).type, pipe);
    const auto power = [](std::int32_t type) {
        const Sheet sheet(type);
        const auto product = cross_plots(sheet.workspace, sheet.ensemble, 2).product;
        return product ? product->power : 0;
    };
    EXPECT_EQ(power(pipe), 2);
    EXPECT_EQ(power(sphere), 3);
    EXPECT_EQ(power(wire), 0);
}

TEST(CrossPlots, are_dots_a_square_and_the_curve_of_the_product) {
    const Sheet sheet;
    const CrossPlots plots = cross_plots(sheet.workspace, sheet.ensemble, 2);
    chart::RecordingDevice device(4500, 4500);
    chart::AX_Grapher chart;
    chart.SetSurface(&device);
    set_up_cross_plot(chart);
    const auto count = [&](std::size_t x, std::size_t y) {
        device.forget();
        draw_cross_plot(chart, plots, x, y);
        std::size_t dots = 0, squares = 0, curves = 0;
        for (const auto& entry : device.entries) {
            if (entry.kind == Kind::markers && entry.style == 2) dots += entry.points.size();
            if (entry.kind == Kind::markers && entry.style == 3) squares += entry.points.size();
            if (entry.kind == Kind::polyline && entry.pen.width == 2) ++curves;
        }
        return std::array{dots, squares, curves};
    };
    EXPECT_EQ(count(0, 1), (std::array<std::size_t, 3>{41, 1, 0}));
    EXPECT_EQ(count(1, 2), (std::array<std::size_t, 3>{41, 1, 1}));
    const chart::Rect shown = chart.ViewLimits();
    EXPECT_LE(shown.x_low, 60);
    EXPECT_GE(shown.x_high, 140);
    chart.SetSurface(nullptr);
}

}  // namespace
}  // namespace anomalis::show
