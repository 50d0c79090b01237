#include <array>
#include <gtest/gtest.h>

#include "chart/tick_rule.h"
#include "chart_rig.h"

namespace anomalis::chart {
namespace {

void expect_plot(const Rig& rig, double x_low, double x_high, double y_low, double y_high) {
    const Rect plot = rig.chart.PlotRect();
    EXPECT_NEAR(plot.x_low, x_low, 1e-9);
    EXPECT_NEAR(plot.x_high, x_high, 1e-9);
    EXPECT_NEAR(plot.y_low, y_low, 1e-9);
    EXPECT_NEAR(plot.y_high, y_high, 1e-9);
}

void expect_scales(const Rig& rig, double x, double y) {
    EXPECT_NEAR(rig.chart.XAxisScale(), x, 1e-6);
    EXPECT_NEAR(rig.chart.YAxisScale(), y, 1e-6);
}

TEST(Layout, numbers_and_titles_on_both_sides_take_their_room) {
    Rig rig;
    rig.make_a();
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 772.5, 12727.5, 577.5, 3675.0);
    expect_scales(rig, 1.615541, 3.0975);
}

TEST(Layout, one_sided_numbers_take_one_side) {
    Rig rig;
    rig.make_b();
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 772.5, 13500.0, 577.5, 4252.5);
    expect_scales(rig, 1.719932, 3.675);
}

TEST(Layout, numbers_inside_take_no_room) {
    Rig both;
    both.make_a();
    both.chart.AxisLabellingLocation(1);
    ASSERT_EQ(both.chart.Layout(), 0);
    expect_plot(both, 247.5, 13252.5, 247.5, 4005.0);
    expect_scales(both, 1.757432, 3.7575);

    Rig one;
    one.make_b();
    one.chart.AxisLabellingLocation(1);
    ASSERT_EQ(one.chart.Layout(), 0);
    expect_plot(one, 247.5, 13500.0, 247.5, 4252.5);
    expect_scales(one, 1.790878, 4.005);
}

TEST(Layout, axes_off_leave_the_title_alone) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayAxes(false);
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 0.0, 13500.0, 0.0, 4252.5);
    expect_scales(rig, 1.824324, 4.2525);
}

TEST(Layout, a_plain_chart_fills_the_surface) {
    Rig rig;
    rig.make_plain();
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 0.0, 13500.0, 0.0, 4500.0);
    expect_scales(rig, 1.824324, 4.5);
}

TEST(Layout, the_hosts_margins_are_added) {
    Rig rig;
    rig.make_plain();
    rig.chart.XAxisLeftMargin(100.0F);
    rig.chart.XAxisRightMargin(200.0F);
    rig.chart.YAxisTopMargin(300.0F);
    rig.chart.YAxisBottomMargin(400.0F);
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 100.0, 13300.0, 400.0, 4200.0);
    EXPECT_EQ(rig.chart.PlotMargins().left, 0.0);
}

TEST(Layout, draws_nothing) {
    Rig rig;
    rig.make_a();
    rig.chart.Layout();
    EXPECT_TRUE(rig.device.entries.empty());
    EXPECT_FALSE(rig.chart.HasPlotDefined());
}

TEST(Layout, the_plot_does_not_move_sideways_during_a_pan) {
    Rig rig;
    rig.make_a();
    rig.chart.DisplayChart();
    rig.chart.SetZoomValues(1.0, 0.5, 4.0, 0.5);
    const Rect plot = rig.chart.PlotRect();
    for (const double centre : {0.125, 0.3, 0.6, 0.875}) {
        rig.chart.SetZoomValues(1.0, 0.5, 4.0, centre);
        EXPECT_EQ(rig.chart.PlotRect(), plot) << centre;
    }
}

TEST(Layout, linked_charts_line_up) {
    Rig wide;
    Rig narrow;
    wide.make_b();
    narrow.make_b();
    wide.chart.YAxisMin(-0.006);
    wide.chart.YAxisMax(0.006);
    wide.chart.YTickInterval(0.002);
    const std::vector<AX_Grapher*> charts{&wide.chart, &narrow.chart};
    align_plots(charts);
    // "-0.006" is the widest now; zoomed as deep as that goes it has four digits more.
    EXPECT_EQ(wide.chart.PlotMargins().left, 952.5 + 4 * 90.0);
    EXPECT_EQ(wide.chart.PlotRect().x_low, narrow.chart.PlotRect().x_low);
    EXPECT_EQ(wide.chart.PlotRect().x_high, narrow.chart.PlotRect().x_high);
    // A second time nothing moves on.
    align_plots(charts);
    EXPECT_EQ(narrow.chart.PlotRect().x_low, 952.5 + 4 * 90.0);
}

TEST(Layout, linked_charts_stay_in_line_while_a_wheel_turns_and_hold_the_place_under_it) {
    constexpr int count = 3;
    std::array<Rig, count> rigs;
    std::vector<AX_Grapher*> charts;
    const std::array<double, count> spans{1000.0, 0.03, 6.0};
    for (int i = 0; i < count; ++i) {
        Rig& rig = rigs.at(static_cast<std::size_t>(i));
        rig.make_b();
        const double span = spans.at(static_cast<std::size_t>(i));
        rig.set_limits(0.0, 7400.0, -0.4 * span, 0.6 * span);
        rig.chart.YTickInterval(tick_interval(0.0, span));
        rig.register_series({0.0, 7400.0}, {0.0, 0.1 * span});
        charts.push_back(&rig.chart);
    }
    align_plots(charts);
    for (AX_Grapher* chart : charts) chart->DisplayChart();
    const Rect start = charts[0]->PlotRect();
    for (int leader = 0; leader < count; ++leader) {
        Rig& turned = rigs.at(static_cast<std::size_t>(leader));
        const Point at{start.x_low + (0.2 + 0.3 * leader) * start.width(),
                       start.y_low + 0.4 * start.height()};
        const Point held = turned.chart.SurfaceToUser(at);
        // As deep as it goes and half the way back.
        for (int step = 0; step < 150; ++step) {
            turned.chart.HandleWheel(0, step < 105 ? 120 : -120, static_cast<float>(at.x), Rig::down(at.y));
            const ZoomValues led = turned.chart.CurrentZoom();
            for (AX_Grapher* chart : charts) {
                const ZoomValues own = chart->CurrentZoom();
                if (chart != &turned.chart)
                    chart->SetZoomValues(led.zoom_x, led.centre_x, own.zoom_y, own.centre_y);
                EXPECT_EQ(chart->PlotRect().x_low, start.x_low) << step;
                EXPECT_EQ(chart->PlotRect().x_high, start.x_high) << step;
                EXPECT_NEAR(chart->UserToSurface(held).x, at.x, 0.5 * units_per_screen_pixel) << step;
            }
            EXPECT_NEAR(turned.chart.UserToSurface(held).y, at.y, 0.5 * units_per_screen_pixel) << step;
        }
        for (AX_Grapher* chart : charts) chart->SetZoomValues(1.0, 0.5, 1.0, 0.5);
    }
}

TEST(Layout, a_chart_by_itself_holds_the_place_under_the_wheel_although_its_numbers_grow) {
    Rig rig;
    rig.make_b();
    rig.register_series({0.0, 7400.0}, {0.0, 500.0});
    rig.chart.DisplayChart();
    const double narrow = rig.chart.PlotRect().x_low;
    const Point at{6000.0, 2500.0};
    const Point held = rig.chart.SurfaceToUser(at);
    for (int step = 0; step < 60; ++step) {
        rig.chart.HandleWheel(0, 120, static_cast<float>(at.x), Rig::down(at.y));
        EXPECT_NEAR(rig.chart.UserToSurface(held).x, at.x, 7.5) << step;
        EXPECT_NEAR(rig.chart.UserToSurface(held).y, at.y, 7.5) << step;
    }
    EXPECT_GT(rig.chart.PlotRect().x_low, narrow) << "numbers with more digits";
}

TEST(Layout, titles_take_the_height_of_their_own_font) {
    class TwoSizes : public RecordingDevice {
      public:
        using RecordingDevice::RecordingDevice;
        TextExtent measure(std::string_view text, const Font& font) const override {
            TextExtent extent = RecordingDevice::measure(text, font);
            extent.ascent *= font.size / 8.0;
            extent.descent *= font.size / 8.0;
            return extent;
        }
    };
    TwoSizes device(13500.0, 4500.0);
    Rig rig;
    rig.make_b();
    rig.chart.SetSurface(&device);
    Font titles;
    titles.size = 16.0;
    rig.chart.TitleFont(titles);
    ASSERT_EQ(rig.chart.Layout(), 0);
    expect_plot(rig, 772.5 + 247.5, 13500.0, 577.5 + 247.5, 4252.5 - 247.5);
    rig.chart.SetSurface(nullptr);
}

TEST(Layout, without_room_the_x_label_goes_first_and_the_title_second) {
    Rig rig;
    rig.make_b();
    const auto texts_at = [&](double height) {
        rig.device.resize(13500.0, height);
        rig.device.forget();
        rig.chart.DisplayChart();
        return std::pair{rig.device.find_text("Residual") != nullptr,
                         rig.device.find_text("Distance") != nullptr};
    };
    EXPECT_EQ(texts_at(855.0), (std::pair{true, true}));
    EXPECT_EQ(texts_at(840.0), (std::pair{true, false}));
    EXPECT_EQ(texts_at(600.0), (std::pair{false, false}));
}

TEST(Layout, without_room_for_two_pixels_only_the_background_is_shown) {
    Rig rig;
    rig.make_a();
    rig.register_series({0.0, 7400.0}, {0.0, 100.0});
    for (const auto& [width, height] : {std::pair{13500.0, 300.0}, {900.0, 4500.0}, {0.0, 0.0}}) {
        rig.device.resize(width, height);
        rig.device.forget();
        EXPECT_EQ(rig.chart.DisplayChart(), -1);
        EXPECT_FALSE(rig.chart.HasPlotDefined());
        EXPECT_EQ(rig.device.of_kind(Kind::clear).size(), 1U);
        EXPECT_EQ(rig.device.of_kind(Kind::copy).size(), 1U);
        EXPECT_TRUE(rig.device.of_kind(Kind::polyline).empty());
        EXPECT_TRUE(rig.device.texts().empty());
    }
    rig.device.resize(13500.0, 4500.0);
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
    rig.device.resize(13500.0, 300.0);
    EXPECT_EQ(rig.chart.DisplayChart(), -1);
    EXPECT_TRUE(rig.chart.HasPlotDefined());
    rig.move(0, 100.0, 100.0);
    EXPECT_EQ(rig.log.last_move.outside, 1);
}

TEST(Layout, needs_a_surface) {
    AX_Grapher chart;
    EXPECT_EQ(chart.Layout(), -1);
    EXPECT_EQ(chart.DisplayChart(), -1);
    EXPECT_EQ(chart.RefreshGraph(0), -1);
    EXPECT_EQ(chart.display_current_chart(), -1);
}

}  // namespace
}  // namespace anomalis::chart
