#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

constexpr Colour pale = 0xD0E0F0;
using Values = std::vector<double>;

struct Banded : Rig {
    Values xs{0, 1000, 2000, 3000, 4000}, low{-10, -20, -30, -20, -10}, high{10, 20, 30, 20, 10};

    Banded() {
        make_plain();
        register_series({0, 7400}, {0, 0}, line_series);
    }
    void show() {
        const ChartBand band{xs, low, high, pale};
        chart.RegisterBands({&band, 1});
        device.forget();
        chart.DisplayChart();
    }
    std::vector<RecordingDevice::Entry> fills() const { return device.of_kind(Kind::polygon_fill); }
};

constexpr double x_scale = 13500.0 / 7400.0, y_scale = 4.5, zero = 300.0 * 4.5;

TEST(Bands, fill_the_room_between_two_curves_behind_the_series) {
    Banded rig;
    rig.show();
    ASSERT_EQ(rig.fills().size(), 1U);
    const RecordingDevice::Entry fill = rig.fills()[0];
    EXPECT_EQ(fill.pen.colour, pale);
    ASSERT_EQ(fill.points.size(), 10U) << "out along the low edge, back along the high one";
    EXPECT_NEAR(fill.points[2].x, 2000 * x_scale, 1e-6);
    EXPECT_NEAR(fill.points[2].y, zero - 30 * y_scale, 1e-9);
    EXPECT_NEAR(fill.points[7].y, zero + 30 * y_scale, 1e-9);
    const auto kind_at = [&](Kind kind) {
        return std::ranges::find_if(rig.device.entries,
                                    [&](const auto& entry) { return entry.kind == kind; });
    };
    EXPECT_LT(kind_at(Kind::polygon_fill), kind_at(Kind::polyline));
}

TEST(Bands, leave_a_gap_where_one_of_the_three_is_missing) {
    for (const int missing : {0, 1, 2}) {
        Banded rig;
        rig.chart.DataNull(-99999);
        (missing == 0 ? rig.xs : missing == 1 ? rig.low : rig.high)[2] = missing == 2 ? -99999 : std::nan("");
        rig.show();
        ASSERT_EQ(rig.fills().size(), 2U) << missing;
        EXPECT_EQ(rig.fills()[1].points.size(), 4U);
    }
    Banded rig;
    rig.high[1] = rig.high[3] = std::nan("");
    rig.show();
    EXPECT_TRUE(rig.fills().empty()) << "a station by itself has no width";
}

TEST(Bands, are_cut_at_the_frame) {
    Banded rig;
    rig.make_a();
    rig.chart.YAxisMin(-25);
    rig.chart.YAxisMax(25);
    rig.show();
    const Rect plot = rig.chart.PlotRect();
    const auto fills = rig.fills();
    ASSERT_FALSE(fills.empty());
    for (const Point& p : fills[0].points) EXPECT_TRUE(plot.contains(p, 1e-6));
}

TEST(Bands, are_thinned_to_the_pixels_of_a_raster_and_whole_in_a_file) {
    Banded rig;
    constexpr std::size_t many = 100000;
    rig.xs.resize(many);
    rig.low.assign(many, -20);
    rig.high.assign(many, 20);
    for (std::size_t i = 0; i < many; ++i) rig.xs[i] = 7400.0 * static_cast<double>(i) / many;
    rig.high[777] = 200;
    rig.device.raster = true;
    rig.show();
    ASSERT_EQ(rig.fills().size(), 1U);
    EXPECT_LE(rig.fills()[0].points.size(), 8U * 902U) << "4 a pixel column and edge";
    const auto highest = std::ranges::max(rig.fills()[0].points, {}, &Point::y);
    EXPECT_NEAR(highest.y, zero + 200 * y_scale, 1e-9);
    RecordingDevice page(13500, 4500);
    page.raster = true;
    rig.chart.DrawTo(page, OutputTarget::metafile, SurfaceMapping{});
    ASSERT_EQ(page.of_kind(Kind::polygon_fill).size(), 2U) << "the ground and the band";
    EXPECT_EQ(page.of_kind(Kind::polygon_fill)[1].points.size(), 2 * many);
}

TEST(Bands, belong_to_every_output) {
    Banded rig;
    rig.show();
    int count = 0;
    GraphicBytes stream;
    rig.chart.GraphicsStream(count, stream);
    RecordingDevice device(13500, 4500);
    ASSERT_EQ(rig.chart.DrawGraphicsStream(&device, count, stream, false, 0, 0, 1, 0, 299), 0);
    ASSERT_EQ(device.of_kind(Kind::polygon_fill).size(), 1U);
    EXPECT_EQ(device.of_kind(Kind::polygon_fill)[0].pen.colour, pale);
}

TEST(Bands, stay_until_they_are_replaced_or_taken_away) {
    Banded rig;
    rig.show();
    rig.register_series({0, 7400}, {0, 5}, line_series);
    rig.device.forget();
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.fills().size(), 1U);
    rig.chart.RegisterBands({});
    rig.device.forget();
    rig.chart.DisplayChart();
    EXPECT_TRUE(rig.fills().empty());
    rig.show();
    rig.chart.Clear();
    rig.register_series({0, 7400}, {0, 5}, line_series);
    rig.device.forget();
    rig.chart.DisplayChart();
    EXPECT_TRUE(rig.fills().empty());
}

TEST(Bands, take_no_part_in_ranges_and_selection) {
    Banded rig;
    rig.chart.YAxisMin(-99999);
    rig.chart.YAxisMax(-99999);
    rig.register_series({0, 7400}, {0, 1}, line_series);
    const Values lowest(5, -1e6), highest(5, 1e6);
    const ChartBand far{rig.xs, lowest, highest, pale};
    rig.chart.DisplayChart();
    const Rect before = rig.chart.ViewLimits();
    rig.chart.RegisterBands({&far, 1});
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.chart.ViewLimits(), before);
    rig.chart.SelectPoint(1, 2, 1, true);
    EXPECT_FALSE(rig.chart.SelectPoint());
}

/// A surface that keeps its lower picture.
class Keeping : public RecordingDevice {
  public:
    using RecordingDevice::RecordingDevice;
    void keep_lower() override { kept = true; }
    bool take_lower() override { return kept; }
    bool kept = false;
};

TEST(Bands, are_part_of_the_kept_lower_picture_and_drawn_again_only_when_they_change) {
    Keeping device(13500, 4500);
    Banded rig;
    rig.chart.SetSurface(&device);
    const auto fills = [&] {
        const ChartBand band{rig.xs, rig.low, rig.high, pale};
        rig.chart.RegisterBands({&band, 1});
        device.forget();
        rig.chart.DisplayChart();
        return device.of_kind(Kind::polygon_fill).size();
    };
    EXPECT_EQ(fills(), 1U);
    EXPECT_EQ(fills(), 0U) << "the picture has them";
    rig.high[2] = 40;
    EXPECT_EQ(fills(), 1U);
    rig.chart.SetSurface(nullptr);
}

}  // namespace
}  // namespace anomalis::chart
