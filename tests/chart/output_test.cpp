#include <algorithm>
#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

struct Shown : Rig {
    Shown() {
        make_a();
        register_series({0.0, 3700.0, 7400.0}, {0.0, 100.0, 500.0});
        const double xs[] = {3000.0, 4000.0, 4000.0};
        const double ys[] = {0.0, 0.0, 300.0};
        chart.DrawPolygon(3, xs, ys, 4, 5, 1);
        chart.DisplayChart();
    }
};

TEST(Output, holds_the_overlay_and_no_mark_of_the_hand) {
    Shown rig;
    rig.chart.SelectPoint(1, 1, 2, true);
    rig.chart.Crosshair(true);
    rig.move(0, 6000.0, 2000.0);
    RecordingDevice page(13500.0, 4500.0);
    const SurfaceMapping mapping = print_mapping(13500.0, 4500.0, 11900.0, 16800.0, 600.0);
    ASSERT_EQ(rig.chart.DrawTo(page, OutputTarget::printer, mapping), 0);
    EXPECT_EQ(page.mapping, mapping);
    EXPECT_EQ(page.of_kind(Kind::polygon_fill).size(), 2U) << "the ground and the overlay";
    EXPECT_EQ(page.of_kind(Kind::polygon_outline).size(), 3U) << "the frame, the overlay, the frame on it";
    EXPECT_EQ(page.of_kind(Kind::clear).size(), 0U);
    EXPECT_EQ(page.texts().size(), rig.device.texts().size());
}

TEST(Output, never_touches_the_screen) {
    Shown rig;
    const Rect plot = rig.chart.PlotRect();
    const std::size_t drawn = rig.device.entries.size();
    RecordingDevice page(13500.0, 4500.0);
    page.character_width = 200.0;
    page.character_height = 400.0;
    rig.chart.DrawTo(page, OutputTarget::metafile, metafile_frame(13500.0, 4500.0).mapping);
    EXPECT_NE(page.of_kind(Kind::polygon_outline)[0].points[0].x, plot.x_low);
    EXPECT_EQ(rig.chart.PlotRect(), plot);
    EXPECT_EQ(rig.device.entries.size(), drawn);
    rig.device.forget();
    rig.chart.RefreshGraph(1);
    EXPECT_TRUE(rig.device.of_kind(Kind::clear).empty());
}

TEST(Output, shows_the_view_of_the_screen) {
    Shown rig;
    rig.device.forget();
    rig.chart.SetZoomValues(2.0, 0.25, 1.0, 0.5);
    RecordingDevice page(13500.0, 4500.0);
    rig.chart.DrawTo(page, OutputTarget::metafile, SurfaceMapping{});
    EXPECT_EQ(page.texts(), rig.device.texts());
    const auto curve = [](const RecordingDevice& device) {
        const auto lines = device.of_kind(Kind::polyline);
        return std::ranges::max(lines, {}, [](const auto& line) { return line.points.size(); }).points;
    };
    EXPECT_EQ(curve(page), curve(rig.device));
    EXPECT_NE(page.find_text("500"), nullptr);
    EXPECT_EQ(page.find_text("7000"), nullptr);
}

TEST(Output, needs_no_screen) {
    AX_Grapher chart;
    chart.XAxisMin(0.0);
    chart.XAxisMax(10.0);
    chart.YAxisMin(0.0);
    chart.YAxisMax(10.0);
    RecordingDevice page(13500.0, 4500.0);
    EXPECT_EQ(chart.DrawTo(page, OutputTarget::metafile, SurfaceMapping{}), 0);
    EXPECT_NE(page.find_text("10"), nullptr);
    EXPECT_FALSE(chart.HasPlotDefined());
    EXPECT_EQ(chart.DrawTo(page, OutputTarget::metafile, SurfaceMapping{}, SurfaceSize{100.0, 100.0}), -1);
}

TEST(Output, has_its_ground_over_the_whole_page_before_all_else) {
    Shown rig;
    rig.chart.BackColor(0xC0FFFF);
    for (const auto kind : {OutputTarget::screen_copy, OutputTarget::metafile, OutputTarget::printer}) {
        RecordingDevice page(13500.0, 4500.0);
        ASSERT_EQ(rig.chart.DrawTo(page, kind, screen_mapping(4500.0)), 0);
        ASSERT_FALSE(page.entries.empty());
        const auto& ground = page.entries.front();
        EXPECT_EQ(ground.kind, Kind::polygon_fill);
        EXPECT_EQ(ground.pen.colour, 0xC0FFFF);
        EXPECT_EQ(ground.points, (std::vector<Point>{{0, 0}, {13500, 0}, {13500, 4500}, {0, 4500}}));
    }
    rig.chart.BackStyle(0);
    RecordingDevice page(13500.0, 4500.0);
    rig.chart.DrawTo(page, OutputTarget::metafile, screen_mapping(4500.0));
    EXPECT_EQ(page.of_kind(Kind::polygon_fill).size(), 1U) << "a chart that lets its ground through has none";
}

TEST(Output, several_charts_share_a_page) {
    Shown rig;
    RecordingDevice page(13500.0, 9000.0);
    SurfaceMapping upper_half = screen_mapping(9000.0);
    upper_half.device_offset_y -= upper_half.device_scale * 4500.0;
    ASSERT_EQ(rig.chart.DrawTo(page, OutputTarget::screen, upper_half, SurfaceSize{13500.0, 4500.0}), 0);
    EXPECT_EQ(page.mapping.to_device({0.0, 0.0}), (Point{0.0, 300.0}));
    EXPECT_EQ(page.mapping.to_device({0.0, 4500.0}), (Point{0.0, 0.0}));
}

TEST(Output, a_failing_target_is_told_and_the_screen_goes_on) {
    Shown rig;
    RecordingDevice page(13500.0, 4500.0);
    page.failure = "out of paper";
    page.failing_kind = Kind::polygon_fill;
    EXPECT_EQ(rig.chart.DrawTo(page, OutputTarget::printer, SurfaceMapping{}), 0);
    EXPECT_EQ(rig.log.failures, (std::vector<std::string>{"Polygon error: out of paper"}));
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
}

}  // namespace
}  // namespace anomalis::chart
