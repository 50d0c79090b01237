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

}  // namespace
}  // namespace anomalis::chart
