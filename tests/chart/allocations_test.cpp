#include "../../bench/allocations.h"

#include <cmath>
#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

/// Keeps nothing of what is drawn.
class Blank : public RecordingDevice {
  public:
    using RecordingDevice::RecordingDevice;
    void polyline(std::span<const Point>, const Pen&) override {}
    void polygon_outline(std::span<const Point>, const Pen&) override {}
    void polygon_fill(std::span<const Point>, Colour) override {}
    void text(Point, double, std::string_view, const Font&, Colour) override {}
    void markers(const MarkerShape&, std::span<const Point>) override {}
    void clear(Colour, int) override {}
    void copy_base_to_surface() override {}
    void present() override {}
};

/// The allocations of one redraw, one pan and one step of the wheel, after the first of each.
long allocations(std::size_t points, double code, bool raster) {
    Blank device(13500.0, 4500.0);
    device.raster = raster;
    Rig rig;
    rig.chart.SetSurface(&device);
    rig.make_a();
    std::vector<double> xs(points);
    std::vector<double> ys(points);
    for (std::size_t i = 0; i < points; ++i) {
        xs[i] = 7400.0 * static_cast<double>(i) / static_cast<double>(points);
        ys[i] = 200.0 + 400.0 * std::sin(static_cast<double>(i));
    }
    rig.register_series(xs, ys, code);
    rig.chart.SetSeriesOptions(1, 1, -1, "", 2, 1, 1);
    rig.chart.DisplayChart();
    const auto gestures = [&] {
        rig.chart.RefreshGraph(0);
        rig.chart.SetZoomValues(4.0, 0.5, 2.0, 0.5);
        rig.chart.PanBy(30.0, 30.0);
        rig.chart.HandleWheel(0, -120, 5000.0F, 2000.0F);
    };
    gestures();
    const long before = allocation_count();
    gestures();
    const long used = allocation_count() - before;
    rig.chart.SetSurface(nullptr);
    return used;
}

TEST(Allocations, a_redraw_allocates_nothing_for_a_point) {
    for (const bool raster : {false, true})
        for (const double code : {line_series, line_and_marker_series, bar_series})
            EXPECT_EQ(allocations(1000, code, raster), allocations(50000, code, raster)) << code << raster;
}

}  // namespace
}  // namespace anomalis::chart
