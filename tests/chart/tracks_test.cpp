#include <cmath>
#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

using Values = std::vector<double>;
constexpr Colour low = 0x400000, high = 0x0000FF;

struct Tracked : Rig {
    Values x{0, 1000, 2000, 3000, 4000}, y{0, 0, 100, 100, 0};
    std::vector<Colour> colours{low, low, high, high, low};
    int width = 2;

    Tracked() { make_plain(); }
    void show() {
        const ChartTrack track{x, y, colours, width};
        chart.RegisterTracks({&track, 1});
        device.forget();
        chart.DisplayChart();
    }
    std::vector<RecordingDevice::Entry> lines() const {
        std::vector<RecordingDevice::Entry> found;
        for (const auto& entry : device.of_kind(Kind::polyline))
            if (entry.pen.colour == low || entry.pen.colour == high) found.push_back(entry);
        return found;
    }
    std::size_t pieces() const {
        std::size_t count = 0;
        for (const auto& line : lines()) count += line.points.size() - 1;
        return count;
    }
};

TEST(Tracks, pieces_of_one_colour_that_hang_together_are_one_line) {
    Tracked rig;
    rig.show();
    const auto lines = rig.lines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].pen, (Pen{low, 2}));
    EXPECT_EQ(lines[0].points.size(), 3U);
    EXPECT_EQ(lines[1].pen, (Pen{high, 2}));
    EXPECT_EQ(lines[1].points.front(), lines[0].points.back());
}

TEST(Tracks, a_missing_place_leaves_a_gap) {
    Tracked rig;
    rig.y[2] = std::nan("");
    rig.show();
    EXPECT_EQ(rig.lines().size(), 2U);
    EXPECT_EQ(rig.pieces(), 2U);
}

TEST(Tracks, are_cut_at_the_frame) {
    Tracked rig;
    rig.x = {-1e6, 1e6, 1e6, 1e6, 1e6};
    rig.y = {0, 0, 1e9, 1e9, 1e9};
    rig.show();
    const auto lines = rig.lines();
    ASSERT_EQ(lines.size(), 1U);
    for (const Point& point : lines[0].points) EXPECT_TRUE(rig.chart.PlotRect().contains(point, 1e-6));
}

TEST(Tracks, on_a_raster_points_in_one_pixel_are_one) {
    Tracked rig;
    rig.device.raster = true;
    rig.x.clear();
    rig.y.clear();
    for (int i = 0; i < 50000; ++i) {
        rig.x.push_back(7400.0 * i / 50000);
        rig.y.push_back(0);
    }
    rig.colours.assign(rig.x.size(), low);
    rig.show();
    EXPECT_LT(rig.pieces(), 2000U);
    EXPECT_GT(rig.pieces(), 500U);
}

/// A raster that counts what it is given at once.
struct StrokeDevice : RecordingDevice {
    using RecordingDevice::RecordingDevice;
    void strokes(std::span<const MarkerShape::Stroke> pieces, const Pen&) override {
        count += pieces.size();
        ++calls;
    }
    std::size_t count = 0;
    int calls = 0;
};

TEST(Tracks, a_raster_gets_very_many_pieces_a_colour_at_a_time) {
    Tracked rig;
    StrokeDevice raster(15000, 6000);
    raster.raster = true;
    rig.chart.SetSurface(&raster);
    rig.x.clear();
    rig.y.clear();
    rig.colours.clear();
    for (int i = 0; i < 40000; ++i) {
        rig.x.push_back(7400.0 * (i % 400) / 400);
        rig.y.push_back(i % 2 == 0 ? -100 : 100);
        rig.colours.push_back(i % 3 == 0 ? low : high);
    }
    rig.show();
    EXPECT_EQ(raster.calls, 2);
    EXPECT_GT(raster.count, 30000U);
}

TEST(Tracks, the_same_picture_is_kept_while_they_stay) {
    Tracked rig;
    rig.show();
    rig.device.forget();
    rig.chart.DrawText(0, 1000, 0, "name");
    rig.chart.RefreshGraph(1);
    EXPECT_EQ(rig.pieces(), 0U);
    rig.chart.ClearAll();
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.pieces(), 0U) << "cleared with the data";
}

struct Dotted : Rig {
    std::vector<ChartDot> dots;

    Dotted() { make_plain(); }
    std::vector<RecordingDevice::Entry> show() {
        chart.RegisterDots(dots);
        device.forget();
        chart.DisplayChart();
        return device.of_kind(RecordingDevice::Kind::markers);
    }
};

TEST(Dots, those_that_look_alike_and_follow_each_other_are_drawn_at_once) {
    Dotted rig;
    rig.dots = {{.x = 1000, .y = 10, .radius = 60, .fill = low},
                {.x = 2000, .y = 20, .radius = 60, .fill = low},
                {.x = 3000, .y = 20, .radius = 60, .fill = high}};
    const auto drawn = rig.show();
    ASSERT_EQ(drawn.size(), 2U);
    EXPECT_EQ(drawn[0].points.size(), 2U);
    EXPECT_EQ(drawn[0].fill, low);
    EXPECT_EQ(drawn[1].points, (std::vector{rig.chart.UserToSurface({3000, 20})}));
    EXPECT_EQ(drawn[1].fill, high);
}

TEST(Dots, a_hole_lies_on_its_own_dot_and_below_the_next) {
    Dotted rig;
    rig.dots.assign(2, {.x = 1000, .y = 10, .radius = 60, .fill = low, .hole = 0.5});
    const auto drawn = rig.show();
    ASSERT_EQ(drawn.size(), 4U);
    EXPECT_EQ(drawn[1].fill, white);
    EXPECT_EQ(drawn[1].radius, 30);
    EXPECT_EQ(drawn[2].fill, low);
}

TEST(Dots, without_a_place_a_size_or_in_the_plot_they_are_left_out) {
    Dotted rig;
    rig.dots = {{.x = std::nan(""), .y = 10, .radius = 60, .fill = low},
                {.x = 1000, .y = 10, .radius = 0, .fill = low},
                {.x = 1e9, .y = 10, .radius = 60, .fill = low}};
    EXPECT_TRUE(rig.show().empty());
    rig.dots.clear();
    EXPECT_TRUE(rig.show().empty());
}

TEST(Dots, a_captured_chart_holds_them_as_shapes) {
    Dotted rig;
    rig.dots = {{.x = 1000, .y = 10, .radius = 60, .fill = low},
                {.x = 2000, .y = 10, .radius = 60, .fill = low, .shape = DotShape::cross}};
    EXPECT_EQ(rig.show().size(), 2U);
    const auto count = [&] {
        int items = 0;
        GraphicBytes stream;
        rig.chart.GraphicsStream(items, stream);
        return items;
    };
    const int with_dots = count();
    rig.dots.pop_back();
    rig.show();
    EXPECT_EQ(with_dots - count(), 2) << "the lines of a cross";
    rig.dots.clear();
    rig.show();
    EXPECT_GE(with_dots - count(), 3);
}

}  // namespace
}  // namespace anomalis::chart
