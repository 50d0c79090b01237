// Charts whose host sets whatever a number can be: what is drawn stays what can be seen.

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

constexpr double inf = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

constexpr std::size_t data_points = 30;

/// Draws numbers, the same on every machine.
class Dice {
  public:
    explicit Dice(unsigned seed) : random_(seed) {}
    std::size_t below(std::size_t count) { return random_() % count; }
    bool flag() { return below(2) == 0; }
    double number() {
        constexpr double known[] = {0,    1,     -1,   0.3,  1e-30, 1e-300, 5e-324,  1e30,     -1e30, 1e32,
                                    inf,  -inf,  nan,  7400, -300,  700,    1e6,     -1e6,     1e15,  1e300,
                                    -5e5, 99999, 1e-5, 2e9,  3e38,  -99999, 1.7e308, -1.7e308, 1e-9};
        if (below(4) == 0)
            return std::ldexp(static_cast<double>(below(2001)) - 1000.0, static_cast<int>(below(60)) - 30);
        return known[below(std::size(known))];
    }
    float single() { return static_cast<float>(number()); }
    int whole() {
        constexpr int known[] = {0, 1, 2,  3,    -1,    -2,    -26,        5,
                                 7, 8, 35, 1000, -1000, 65536, 2147483647, -2147483647};
        return known[below(std::size(known))];
    }
    std::string words() {
        const std::size_t length[] = {0, 1, 12, 400, 30000};
        return std::string(length[below(5)], 'W');
    }
    Font font() {
        Font font;
        font.size = number();
        return font;
    }

  private:
    std::mt19937 random_;
};

/// A screen that measures texts by the size of their font, and checks all that it is told to draw.
class WatchedScreen : public RecordingDevice {
  public:
    WatchedScreen(double width, double height) : RecordingDevice(width, height) { raster = true; }
    TextExtent measure(std::string_view text, const Font& font) const override {
        const double size = font.drawn_size() / 8.0;
        const TextExtent plain = RecordingDevice::measure(text, font);
        return {plain.width * size, plain.ascent * size, plain.descent * size};
    }
    void markers(const MarkerShape& shape, std::span<const Point> anchors) override {
        EXPECT_LE(shape.radius, largest_marker);
        RecordingDevice::markers(shape, anchors);
    }

    /// Everything drawn is finite, on the surface, of a size that can be seen, and no more than a tick and a
    /// number every two pixels of each of the four sides, the ticks twice more over curves and items, a piece
    /// for each stretch of data, and the few strokes of frame, titles, items and marks.
    void expect_sane() {
        if (entries.empty()) return;
        const double sides = width() + height();
        const double pixels = sides > 0 && sides <= 2 * largest_surface ? sides / units_per_screen_pixel : 0;
        EXPECT_LE(static_cast<double>(entries.size()), (2 + 2) * pixels + 3 * data_points + 64);
        for (const Entry& entry : entries) {
            EXPECT_GE(entry.pen.width, 1.0);
            EXPECT_LE(entry.pen.width, widest_pen);
            const bool text = entry.kind == Kind::text;
            // A text begins beside the surface when it is longer than that, or turned.
            const double beside = text ? 2.0 * (largest_surface - std::max(width(), height())) : 0.5;
            EXPECT_LE(entry.text.size(), 4096U);
            EXPECT_TRUE(std::isfinite(entry.angle));
            for (const Point& p : entry.points)
                EXPECT_TRUE(Rect({0.0, width(), 0.0, height()}).contains(p, beside)) << p.x << " " << p.y;
        }
    }
};

void set_wild_axes(AX_Grapher& chart, Dice& dice) {
    const auto maybe = [&](auto&& set) {
        if (dice.below(3) == 0) set();
    };
    maybe([&] { chart.XAxisMin(dice.number()); });
    maybe([&] { chart.XAxisMax(dice.number()); });
    maybe([&] { chart.YAxisMin(dice.number()); });
    maybe([&] { chart.YAxisMax(dice.number()); });
    maybe([&] { chart.XTickInterval(dice.number()); });
    maybe([&] { chart.YTickInterval(dice.number()); });
    maybe([&] { chart.XAxisType(static_cast<int>(dice.below(3))); });
    maybe([&] { chart.YAxisType(static_cast<int>(dice.below(3))); });
    maybe([&] { chart.XBaseLog(dice.number()); });
    maybe([&] { chart.YBaseLog(dice.number()); });
    maybe([&] { chart.XAxisCutoff(dice.number()); });
    maybe([&] { chart.YAxisCutoff(dice.number()); });
    maybe([&] { chart.XAxisLeftMargin(dice.single()); });
    maybe([&] { chart.XAxisRightMargin(dice.single()); });
    maybe([&] { chart.YAxisTopMargin(dice.single()); });
    maybe([&] { chart.YAxisBottomMargin(dice.single()); });
}

void set_wild_looks(AX_Grapher& chart, Dice& dice) {
    chart.XAxisLabellingPosition(static_cast<int>(dice.below(4)));
    chart.YAxisLabellingPosition(static_cast<int>(dice.below(4)));
    chart.AxisLabellingLocation(static_cast<int>(dice.below(2)));
    chart.DisplayAxes(dice.below(4) != 0);
    chart.PlotPoints(dice.flag());
    chart.EqualScales(dice.below(4) == 0);
    if (dice.below(3) == 0) chart.FONT(dice.font());
    if (dice.below(3) == 0) chart.TitleFont(dice.font());
    if (dice.below(3) == 0) chart.Title(dice.words());
    if (dice.below(3) == 0) chart.YAxisLabel(dice.words());
    chart.MarkerSize(dice.whole());
    chart.DataNull(dice.number());
}

void record_wild_items(AX_Grapher& chart, Dice& dice) {
    chart.DrawMarker(dice.number(), dice.number(), dice.whole(), black, dice.whole());
    chart.DrawText(dice.number(), dice.number(), dice.number(), dice.words());
    chart.DrawText(dice.number(), 3000, 100, dice.words());
    chart.DrawRectangle(dice.number(), dice.number(), dice.number(), dice.number(), black, white,
                        dice.whole());
    chart.DrawLine(dice.number(), dice.number(), dice.number(), dice.number(), black, dice.whole(),
                   dice.whole());
    chart.DrawXLine(dice.number(), black, dice.whole());
    chart.DrawYLine(dice.number(), black, dice.whole());
    std::vector<double> xs, ys;
    for (int i = 0; i < 9; ++i) {
        xs.push_back(dice.number());
        ys.push_back(dice.number());
    }
    chart.DrawPolygon(9, xs.data(), ys.data(), black, white, dice.whole());
}

void register_wild_series(AX_Grapher& chart, Dice& dice) {
    std::vector<double> xs, ys;
    for (std::size_t i = 0; i < data_points; ++i) {
        xs.push_back(dice.flag() ? dice.number() : 250.0 * static_cast<double>(i));
        ys.push_back(dice.flag() ? dice.number() : 10.0 * static_cast<double>(i));
    }
    constexpr double codes[] = {line_series, line_and_marker_series, bar_series, chart_type_series};
    const std::vector<ChartRow> rows{{x_row, xs}, {codes[dice.below(4)], ys}};
    chart.RegisterData(rows);
    chart.SetSeriesOptions(1, 1, black, "", dice.whole(), 1, dice.whole());
}

void gesture_wildly(Rig& rig, Dice& dice) {
    rig.press(1 + static_cast<int>(dice.below(2)), dice.number(), dice.number(), dice.whole() & 7);
    rig.move(1, dice.number(), dice.number());
    rig.release(1, dice.number(), dice.number());
    rig.chart.HandleWheel(0, dice.whole(), dice.single(), dice.single());
    rig.chart.HandlePinch(dice.number(), dice.single(), dice.single());
    rig.chart.PanBy(dice.number(), dice.number());
    rig.chart.SetZoomValues(dice.number(), dice.number(), dice.number(), dice.number());
}

TEST(WildHost, never_makes_a_chart_draw_more_than_can_be_seen) {
    int shown = 0;
    for (unsigned seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(seed);
        Dice dice(seed);
        constexpr double sides[] = {4500, 13500, 300, 30, 0, 1e6, 2e6, 1e30, -1, nan, inf};
        const auto side = [&] { return dice.below(3) == 0 ? sides[dice.below(std::size(sides))] : 6000.0; };
        WatchedScreen screen(side(), side());
        Rig rig;
        rig.make_a();
        rig.chart.SetSurface(&screen);
        rig.chart.Crosshair(dice.flag());
        set_wild_axes(rig.chart, dice);
        set_wild_looks(rig.chart, dice);
        register_wild_series(rig.chart, dice);
        record_wild_items(rig.chart, dice);
        WatchedScreen page(side(), side());
        const auto expect_bounded = [&](auto&& draw) {
            for (WatchedScreen* watched : {&screen, &page}) watched->forget();
            draw();
            for (WatchedScreen* watched : {&screen, &page}) watched->expect_sane();
        };
        expect_bounded([&] { rig.chart.DisplayChart(); });
        shown += rig.chart.HasPlotDefined() ? 1 : 0;
        gesture_wildly(rig, dice);
        expect_bounded([&] { rig.chart.RefreshGraph(0); });
        expect_bounded([&] { rig.chart.DrawTopLayer(screen); });
        expect_bounded([&] { rig.chart.RefreshGraph(1); });
        expect_bounded([&] {
            rig.chart.DrawTo(page, OutputTarget::screen_copy, screen_mapping(4500),
                             SurfaceSize{page.width(), page.height()});
        });
        if (::testing::Test::HasFailure()) return;
        rig.chart.SetSurface(nullptr);
    }
    EXPECT_GT(shown, 100);
}

TEST(WildHost, ticks_of_1e_30_on_a_range_of_1e30_are_as_many_as_there_is_room_for) {
    WatchedScreen screen(13500, 4500);
    Rig rig;
    rig.make_a();
    rig.chart.SetSurface(&screen);
    rig.set_limits(0, 1e30, 0, 1e30);
    rig.chart.XTickInterval(1e-30);
    rig.chart.YTickInterval(1e-30);
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
    EXPECT_LE(screen.entries.size(), 2U * (900 + 300) + 32);
    rig.chart.SetSurface(nullptr);
}

TEST(WildHost, margins_below_0_leave_the_plot_on_its_surface) {
    Rig rig;
    rig.make_plain();
    for (const float margin : {-1.0F, -1e6F, -3e38F}) {
        rig.chart.XAxisLeftMargin(margin);
        rig.chart.XAxisRightMargin(margin);
        rig.chart.YAxisTopMargin(margin);
        rig.chart.YAxisBottomMargin(margin);
        ASSERT_EQ(rig.chart.Layout(), 0);
        EXPECT_EQ(rig.chart.PlotRect(), (Rect{0, 13500, 0, 4500}));
    }
    // What numbers and titles need stays theirs.
    rig.chart.DisplayAxes(true);
    rig.chart.XAxisLeftMargin(-100);
    ASSERT_EQ(rig.chart.Layout(), 0);
    EXPECT_GT(rig.chart.PlotRect().x_low, 100);
}

TEST(WildHost, margins_without_a_number_are_none_and_too_wide_ones_leave_no_chart) {
    Rig rig;
    rig.make_plain();
    rig.chart.XAxisLeftMargin(std::numeric_limits<float>::quiet_NaN());
    rig.chart.YAxisTopMargin(std::numeric_limits<float>::infinity());
    ASSERT_EQ(rig.chart.Layout(), 0);
    EXPECT_EQ(rig.chart.PlotRect(), (Rect{0, 13500, 0, 4500}));
    rig.chart.XAxisLeftMargin(14000);
    EXPECT_EQ(rig.chart.DisplayChart(), -1);
    EXPECT_TRUE(rig.device.of_kind(Kind::polyline).empty());
}

TEST(WildHost, surfaces_longer_than_any_screen_show_no_chart) {
    Rig rig;
    rig.make_plain();
    rig.device.resize(largest_surface, 4500);
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
    for (const double width : {largest_surface + 1, 1e30, inf, nan, -5.0}) {
        rig.device.resize(width, 4500);
        EXPECT_EQ(rig.chart.DisplayChart(), -1) << width;
    }
}

TEST(WildHost, a_polygon_of_countless_corners_reaches_a_screen_as_no_more_than_its_pixels) {
    constexpr int corners = 300000;
    std::vector<double> xs(corners), ys(corners);
    for (int i = 0; i < corners; ++i) {
        const double turn = 6.283185307179586 * i / corners;
        xs[static_cast<std::size_t>(i)] = 3700 + 3000 * std::cos(turn);
        ys[static_cast<std::size_t>(i)] = 200 + 400 * std::sin(turn);
    }
    WatchedScreen screen(13500, 4500);
    Rig rig;
    rig.make_plain();
    rig.chart.SetSurface(&screen);
    rig.chart.DrawPolygon(corners, xs.data(), ys.data(), black, white, 1);
    rig.chart.DisplayChart();
    const auto filled = screen.of_kind(Kind::polygon_fill);
    ASSERT_EQ(filled.size(), 1U);
    EXPECT_LE(filled[0].points.size(), 2U * 4U * (900 + 300));
    EXPECT_GT(filled[0].points.size(), 500U);
    double left = 13500, right = 0;
    for (const Point& p : filled[0].points) {
        left = std::min(left, p.x);
        right = std::max(right, p.x);
    }
    EXPECT_NEAR(left, rig.chart.UserToSurface({700, 200}).x, 15);
    EXPECT_NEAR(right, rig.chart.UserToSurface({6700, 200}).x, 15);

    // A file gets every corner.
    RecordingDevice page(13500, 4500);
    rig.chart.DrawTo(page, OutputTarget::metafile, metafile_frame(13500, 4500).mapping);
    EXPECT_GE(page.of_kind(Kind::polygon_fill).back().points.size(), std::size_t{corners});
    rig.chart.SetSurface(nullptr);
}

TEST(WildHost, a_scribble_over_the_whole_screen_is_no_more_than_its_pixels) {
    constexpr int points = 400000;
    std::vector<double> xs, ys;
    Dice dice(3);
    for (int i = 0; i < points; ++i) {
        xs.push_back(static_cast<double>(dice.below(7401)));
        ys.push_back(static_cast<double>(dice.below(1001)) - 300);
    }
    WatchedScreen screen(13500, 4500);
    Rig rig;
    rig.make_plain();
    rig.chart.SetSurface(&screen);
    rig.chart.DrawPolygon(points, xs.data(), ys.data(), black, no_colour, 1);
    rig.chart.DisplayChart();
    std::size_t drawn = 0;
    for (const auto& entry : screen.entries) drawn += entry.points.size();
    EXPECT_LE(drawn, 902U * 302U + 100U);
    rig.chart.SetSurface(nullptr);
}

}  // namespace
}  // namespace anomalis::chart
