#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

using Values = std::vector<double>;

/// What one registered series draws on the plain chart.
struct Drawn {
    std::vector<RecordingDevice::Entry> lines, fills, outlines, markers, texts;
};

Drawn draw(Rig& rig, const Values& xs, const Values& ys, double code) {
    rig.make_plain();
    rig.register_series(xs, ys, code);
    rig.device.forget();
    rig.chart.DisplayChart();
    const auto of = [&](Kind kind) { return rig.device.of_kind(kind); };
    return {of(Kind::polyline), of(Kind::polygon_fill), of(Kind::polygon_outline), of(Kind::markers),
            of(Kind::text)};
}

TEST(SeriesPainter, a_null_breaks_the_line) {
    Rig rig;
    const Drawn drawn = draw(rig, {0, 1000, 2000, 3000, 4000}, {0, 100, -999, 100, 0}, line_series);
    ASSERT_EQ(drawn.lines.size(), 2U);
    EXPECT_EQ(drawn.lines[0].points.size(), 2U);
    EXPECT_NEAR(drawn.lines[0].points[1].x, 1000.0 * 1.8243243243, 1e-6);
    EXPECT_NEAR(drawn.lines[0].points[1].y, 400.0 * 4.5, 1e-9);
    EXPECT_NEAR(drawn.lines[1].points[0].x, 3000.0 * 1.8243243243, 1e-6);
}

TEST(SeriesPainter, a_series_is_dashed_as_its_host_says_until_it_is_registered_anew) {
    Rig rig;
    rig.make_plain();
    rig.register_series({0, 1000}, {0, 100}, line_series);
    rig.chart.SetSeriesLineStyle(1, 1, LineStyle::dash);
    const auto style = [&] {
        rig.device.forget();
        rig.chart.DisplayChart();
        return rig.device.of_kind(Kind::polyline).at(0).pen.style;
    };
    EXPECT_EQ(style(), LineStyle::dash);
    rig.register_series({0, 1000}, {0, 100}, line_series);
    EXPECT_EQ(style(), LineStyle::solid);
    rig.chart.SetSeriesLineStyle(9, 9, LineStyle::dash);
    EXPECT_EQ(rig.log.failures.size(), 1U);
}

TEST(SeriesPainter, every_kind_of_null_breaks_the_line_and_x_too) {
    const double endless = std::numeric_limits<double>::infinity();
    for (const double null : {-999.0, -1e30, -1e35, endless, -endless, std::nan("")}) {
        Rig rig;
        EXPECT_EQ(draw(rig, {0, 1000, 2000, 3000, 4000}, {0, 9, null, 9, 0}, line_series).lines.size(), 2U);
        if (null == -999.0) continue;
        Rig other;
        EXPECT_EQ(draw(other, {0, 1000, null, 3000, 4000}, {0, 9, 9, 9, 0}, line_series).lines.size(), 2U);
    }
}

TEST(SeriesPainter, a_series_of_nulls_draws_nothing) {
    for (const double code : {line_series, line_and_marker_series, bar_series}) {
        Rig rig;
        rig.chart.PlotPoints(true);
        const Drawn drawn = draw(rig, {0, 1000}, {-999, -999}, code);
        EXPECT_TRUE(drawn.lines.empty() && drawn.fills.empty() && drawn.markers.empty());
    }
}

TEST(SeriesPainter, an_isolated_point_of_a_line_is_a_dot_wider_than_the_pen) {
    Rig rig;
    const Drawn drawn = draw(rig, {0, 1000, 2000}, {-999, 0, -999}, line_series);
    ASSERT_EQ(drawn.fills.size(), 1U);
    EXPECT_TRUE(drawn.lines.empty());
    EXPECT_NEAR(drawn.fills[0].points[1].x - drawn.fills[0].points[0].x, 45.0, 1e-9);
}

TEST(SeriesPainter, the_code_and_the_chart_type_tell_the_style) {
    struct Expected {
        int type;
        double code;
        bool lines, markers, bars;
    };
    for (const Expected& e : {Expected{1, 0.0, true, false, false},
                              {0, 0.0, false, true, false},
                              {2, 0.0, false, true, true},
                              {0, line_series, true, false, false},
                              {0, line_and_marker_series, true, true, false},
                              {1, bar_series, false, true, true},
                              {2, line_series, false, true, true},
                              {7, 0.0, false, true, false},
                              {1, 5.5, true, false, false}}) {
        Rig rig;
        rig.chart.ChartType(e.type);
        EXPECT_EQ(rig.chart.ChartType(), e.type);
        rig.register_series({0, 1000}, {0, 100}, e.code);
        rig.chart.SetSeriesOptions(1, 1, -1, "", 2, 1, 1);
        const Drawn drawn = draw(rig, {0, 1000}, {0, 100}, e.code);
        EXPECT_EQ(!drawn.lines.empty(), e.lines) << e.type << " " << e.code;
        EXPECT_EQ(!drawn.markers.empty(), e.markers) << e.type << " " << e.code;
        EXPECT_EQ(!drawn.fills.empty(), e.bars) << e.type << " " << e.code;
    }
}

TEST(SeriesPainter, plot_points_adds_markers_to_every_style) {
    Rig rig;
    rig.register_series({0, 1}, {0, 1});
    rig.chart.SetSeriesOptions(1, 1, -1, "", 5, 1, 1);
    rig.chart.PlotPoints(true);
    EXPECT_EQ(draw(rig, {0, 1000}, {0, 100}, line_series).markers.size(), 1U);
}

TEST(SeriesPainter, markers_only_with_marker_0_draw_nothing) {
    Rig rig;
    rig.chart.ChartType(0);
    EXPECT_TRUE(draw(rig, {0, 1000}, {0, 100}, chart_type_series).markers.empty());
}

TEST(SeriesPainter, a_bar_spans_from_the_previous_point_to_this_one) {
    Rig rig;
    const Drawn drawn = draw(rig, {0, 1000, 2000, 3000, 4000}, {100, 200, -999, 100, -100}, bar_series);
    ASSERT_EQ(drawn.fills.size(), 2U);
    const double zero = 300.0 * 4.5;
    EXPECT_NEAR(drawn.fills[0].points[0].x, 0.0, 1e-9);
    EXPECT_NEAR(drawn.fills[0].points[1].x, 1824.324324, 1e-5);
    EXPECT_NEAR(drawn.fills[0].points[0].y, zero, 1e-9);
    EXPECT_NEAR(drawn.fills[0].points[2].y, 500.0 * 4.5, 1e-9);
    EXPECT_NEAR(drawn.fills[1].points[0].y, 200.0 * 4.5, 1e-9);
    EXPECT_NEAR(drawn.fills[1].points[2].y, zero, 1e-9);
    EXPECT_EQ(drawn.outlines.size(), 2U);
}

TEST(SeriesPainter, bars_hang_from_the_edge_when_zero_is_not_in_view_and_stay_inside) {
    Rig rig;
    rig.make_plain();
    rig.set_limits(0.0, 10.0, 1.0, 3.0);
    rig.register_series({0, 5, 10}, {0, 2, -1}, bar_series);
    rig.chart.DisplayChart();
    auto fills = rig.device.of_kind(Kind::polygon_fill);
    ASSERT_EQ(fills.size(), 1U);
    EXPECT_EQ(fills[0].points[0].y, 0.0);
    EXPECT_NEAR(fills[0].points[2].y, 2250.0, 1e-9);

    rig.set_limits(0.0, 10.0, -3.0, -1.0);
    rig.register_series({0, 5, 10}, {0, -2, 2}, bar_series);
    rig.device.forget();
    rig.chart.DisplayChart();
    fills = rig.device.of_kind(Kind::polygon_fill);
    ASSERT_EQ(fills.size(), 1U);
    EXPECT_NEAR(fills[0].points[0].y, 2250.0, 1e-9);
    EXPECT_EQ(fills[0].points[2].y, 4500.0);
}

TEST(SeriesPainter, a_bar_across_the_frame_has_no_outline_along_it) {
    Rig rig;
    rig.make_plain();
    rig.chart.YAxisMax(100.0);
    rig.register_series({0, 3700, 7400}, {0, 500, 500}, bar_series);
    rig.chart.DisplayChart();
    for (const auto& line : rig.device.of_kind(Kind::polyline))
        for (std::size_t i = 1; i < line.points.size(); ++i)
            EXPECT_FALSE(line.points[i - 1].y == 4500.0 && line.points[i].y == 4500.0);
    EXPECT_FALSE(rig.device.of_kind(Kind::polygon_fill).empty());
}

TEST(SeriesPainter, a_line_out_of_the_frame_is_cut_at_it) {
    Rig rig;
    const Drawn drawn = draw(rig, {0, 3700, 7400}, {-1300, 1700, -1300}, line_series);
    ASSERT_EQ(drawn.lines.size(), 2U);
    EXPECT_EQ(drawn.lines[0].points.front().y, 0.0);
    EXPECT_EQ(drawn.lines[0].points.back().y, 4500.0);
    EXPECT_EQ(drawn.lines[1].points.front().y, 4500.0);
    EXPECT_EQ(drawn.lines[1].points.back().y, 0.0);
}

TEST(SeriesPainter, a_marker_on_the_frame_up_to_rounding_is_drawn_and_one_beyond_is_not) {
    Rig rig;
    rig.make_plain();
    rig.register_series({0.0, 7400.2, 7400.6, 3700.0}, {0, 0, 0, 700.2}, line_and_marker_series);
    rig.chart.SetSeriesOptions(1, 1, -1, "", 2, 1, 1);
    rig.chart.DisplayChart();
    const auto marks = rig.device.of_kind(Kind::markers);
    ASSERT_EQ(marks.size(), 1U);
    ASSERT_EQ(marks[0].points.size(), 2U);
    EXPECT_NEAR(marks[0].points[1].x, 7400.2 * 1.8243243243, 1e-4);
}

TEST(SeriesPainter, points_have_markers_and_colours_of_their_own) {
    Rig rig;
    rig.make_plain();
    rig.chart.ChartType(0);
    rig.register_series({0, 1000, 2000, 3000}, {0, 0, 0, 0});
    rig.chart.SetSeriesOptions(1, 1, 5, "", 2, 1, 1);
    rig.chart.RegisterMarker(MarkerTable{{0, 8, 0, -2}}, 1, 1, 0);
    rig.chart.RegisterMarkerColour(MarkerTable{{-1, 0, 99, -1}}, 1, 1, 0);
    rig.chart.DisplayChart();
    const auto marks = rig.device.of_kind(Kind::markers);
    ASSERT_EQ(marks.size(), 3U);
    EXPECT_EQ(marks[0].style, 2);
    EXPECT_EQ(marks[0].pen.colour, 5);
    EXPECT_EQ(marks[1].style, 8);
    EXPECT_EQ(marks[1].pen.colour, 0);
    EXPECT_EQ(marks[2].pen.colour, 99);
    const auto* letter = rig.device.find_text("B");
    ASSERT_NE(letter, nullptr);
    EXPECT_NEAR(letter->points[0].x, 3000.0 * 1.8243243243 - 2.0 * 35.0, 1e-6);
    EXPECT_NEAR(letter->points[0].y, 300.0 * 4.5 + 1.5 * 35.0, 1e-6);
}

TEST(SeriesPainter, groups_are_drawn_from_the_last_to_the_first_and_series_in_order) {
    Rig rig;
    rig.make_plain();
    const Values xs{0, 7400};
    const Values ys{0, 100};
    const std::vector<ChartRow> rows{{x_row, xs}, {-2.0, ys}, {-2.0, ys},
                                     {x_row, xs}, {-2.0, ys}, {-2.0, ys}};
    rig.chart.RegisterData(rows);
    for (int group = 1; group <= 2; ++group)
        for (int series = 1; series <= 2; ++series)
            rig.chart.SetSeriesOptions(group, series, 10 * group + series, "", 0, 1, 1);
    rig.chart.DisplayChart();
    std::vector<Colour> order;
    for (const auto& line : rig.device.of_kind(Kind::polyline)) order.push_back(line.pen.colour);
    EXPECT_EQ(order, (std::vector<Colour>{21, 22, 11, 12}));
}

TEST(SeriesPainter, a_hidden_series_is_still_drawn) {
    Rig rig;
    rig.register_series({0, 1}, {0, 1});
    rig.chart.SetSeriesOptions(1, 1, -1, "", 0, 0, 1);
    EXPECT_EQ(draw(rig, {0, 1000}, {0, 100}, line_series).lines.size(), 1U);
}

Values ramp(std::size_t count, double last) {
    Values values(count);
    for (std::size_t i = 0; i < count; ++i)
        values[i] = last * static_cast<double>(i) / static_cast<double>(count - 1);
    return values;
}

TEST(SeriesPainter, a_raster_gets_at_most_four_points_a_pixel_column_and_a_vector_file_all) {
    const Values xs = ramp(200000, 7400.0);
    Values ys(xs.size());
    for (std::size_t i = 0; i < ys.size(); ++i)
        ys[i] = 200.0 + 150.0 * std::sin(static_cast<double>(i) * 12.9898);
    Rig rig;
    rig.device.raster = true;
    const Drawn raster = draw(rig, xs, ys, line_series);
    ASSERT_EQ(raster.lines.size(), 1U);
    EXPECT_LE(raster.lines[0].points.size(), 4U * 901U);
    EXPECT_GT(raster.lines[0].points.size(), 3U * 900U);

    RecordingDevice vector(13500.0, 4500.0);
    rig.chart.DrawTo(vector, OutputTarget::metafile, metafile_frame(13500.0, 4500.0).mapping);
    EXPECT_EQ(vector.of_kind(Kind::polyline)[0].points.size(), xs.size());

    // A sheet gets every point even by a device of pixels, a picture does not.
    for (const OutputTarget target : {OutputTarget::printer, OutputTarget::screen_copy}) {
        RecordingDevice pixels(13500.0, 4500.0);
        pixels.raster = true;
        rig.chart.DrawTo(pixels, target, screen_mapping(4500.0));
        EXPECT_EQ(pixels.of_kind(Kind::polyline)[0].points.size() == xs.size(),
                  target == OutputTarget::printer);
    }
}

TEST(SeriesPainter, thinning_keeps_first_lowest_highest_and_last_of_a_column_and_every_gap) {
    Rig rig;
    rig.device.raster = true;
    // Six points in the first pixel column, a gap, and one more column.
    const Drawn drawn =
        draw(rig, {0, 1, 2, 3, 4, 5, 6, 4000, 4001}, {10, 50, 20, -80, 30, 40, -999, 0, 1}, line_series);
    ASSERT_EQ(drawn.lines.size(), 2U);
    std::vector<double> kept;
    for (const Point& p : drawn.lines[0].points) kept.push_back(std::round(p.y / 4.5 - 300.0));
    EXPECT_EQ(kept, (std::vector<double>{10, 50, -80, 40}));
}

TEST(SeriesPainter, markers_on_one_pixel_are_drawn_once_on_a_raster) {
    Rig rig;
    rig.device.raster = true;
    rig.chart.ChartType(0);
    rig.register_series({0}, {0});
    rig.chart.SetSeriesOptions(1, 1, -1, "", 2, 1, 1);
    const Values xs = ramp(100000, 7400.0);
    const Drawn drawn = draw(rig, xs, Values(xs.size(), 0.0), chart_type_series);
    ASSERT_EQ(drawn.markers.size(), 1U);
    EXPECT_LE(drawn.markers[0].points.size(), 902U);
    EXPECT_GE(drawn.markers[0].points.size(), 899U);
}

TEST(SeriesPainter, bars_in_one_column_are_drawn_as_one_that_covers_them) {
    const Values xs = ramp(50000, 7400.0);
    Values ys(xs.size());
    for (std::size_t i = 0; i < ys.size(); ++i) ys[i] = i % 2 == 0 ? 150.0 : -50.0;
    Rig rig;
    rig.device.raster = true;
    const Drawn drawn = draw(rig, xs, ys, bar_series);
    EXPECT_LE(drawn.fills.size(), 2U * 901U);
    double lowest = 1e9;
    double highest = -1e9;
    for (const auto& fill : drawn.fills)
        for (const Point& p : fill.points) {
            lowest = std::min(lowest, p.y);
            highest = std::max(highest, p.y);
        }
    EXPECT_NEAR(lowest, 250.0 * 4.5, 1e-6);
    EXPECT_NEAR(highest, 450.0 * 4.5, 1e-6);
}

}  // namespace
}  // namespace anomalis::chart
