#include "chart/qt/screen_device.h"

#include <array>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

#include <QPainter>

#include "chart/qt/painter_device.h"
#include "chart/qt/picture.h"
#include "sample_chart.h"
#include "screen_sample.h"

namespace anomalis::chart {
namespace {

class Unthinned : public ScreenDevice {
  public:
    bool is_raster() const override { return false; }
};

TEST(ScreenDevice, a_frame_on_the_edge_of_the_surface_is_drawn_in_the_last_pixels) {
    Screen screen(90, 30);
    const double w = screen.device.width(), h = screen.device.height();
    const Point frame[] = {{0, 0}, {w, 0}, {w, h}, {0, h}};
    screen.device.polygon_outline(frame, Pen{});
    const QImage picture = screen.picture();
    for (const QPoint corner :
         {QPoint(0, 0), QPoint(89, 0), QPoint(0, 29), QPoint(89, 29), QPoint(45, 0), QPoint(45, 29)})
        EXPECT_TRUE(is_dark(picture.pixel(corner))) << corner.x() << ", " << corner.y();
    EXPECT_EQ(picture.pixel(45, 1), qRgb(255, 255, 255));
    EXPECT_EQ(picture.pixel(45, 28), qRgb(255, 255, 255));
}

TEST(ScreenDevice, a_line_along_an_axis_inks_whole_rows_at_every_scale) {
    for (const double ratio : {1.0, 1.5, 2.0}) {
        Screen screen(60, 20, ratio);
        const Point line[] = {{150, 101}, {750, 101}};
        screen.device.polyline(line, Pen{black, 1.0, LineStyle::solid});
        const QImage picture = screen.picture();
        EXPECT_EQ(picture.width(), static_cast<int>(std::ceil(60 * ratio)));
        int full = 0, grey = 0;
        const int column = picture.width() / 2;
        for (int y = 0; y < picture.height(); ++y) {
            const int value = qGray(picture.pixel(column, y));
            full += value == 0;
            grey += value > 0 && value < 255;
        }
        EXPECT_EQ(full, std::lround(ratio)) << ratio;
        EXPECT_EQ(grey, 0) << ratio;
    }
}

TEST(ScreenDevice, a_picture_is_filled_to_its_last_pixel_at_every_scale) {
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        ScreenDevice device;
        device.resize(QSize(61, 21), ratio);
        device.select_layer(DrawingDevice::Layer::surface);
        device.clear(colour_of(20, 20, 20), 1);
        device.present();
        const QImage picture = device.picture();
        EXPECT_EQ(picture.pixelColor(picture.width() - 1, picture.height() - 1), QColor(20, 20, 20)) << ratio;
    }
}

/// A chart that moves to another screen of the desk.
TEST(ScreenDevice, another_scale_gives_the_same_picture_with_other_pixels) {
    ScreenDevice device;
    for (const double ratio : {2.0, 1.0, 1.5}) {
        device.resize(QSize(60, 20), ratio);
        device.set_mapping(screen_mapping(device.height()));
        device.select_layer(DrawingDevice::Layer::surface);
        device.clear(white, 1);
        const Point box[] = {{300, 100}, {600, 100}, {600, 200}, {300, 200}};
        device.polygon_fill(box, black);
        device.present();
        const QImage picture = device.picture();
        EXPECT_EQ(picture.size(), (QSizeF(60, 20) * ratio).toSize());
        EXPECT_EQ(device.width(), 60 * units_per_screen_pixel) << "surface units stay";
        EXPECT_EQ(device.pixel_size(), units_per_screen_pixel / ratio);
        int dark = 0;
        for (int x = 0; x < picture.width(); ++x) dark += is_dark(picture.pixel(x, picture.height() / 2));
        EXPECT_NEAR(dark, 20 * ratio, 1) << ratio;
    }
}

TEST(ScreenDevice, a_wide_curve_is_even_along_its_length) {
    const auto ink_of_columns = [](Screen& screen) {
        const QImage picture = screen.picture();
        std::vector<int> ink;
        for (int x = 10; x < picture.width() - 10; ++x) {
            int sum = 0;
            for (int y = 0; y < picture.height(); ++y) sum += 255 - qGray(picture.pixel(x, y));
            ink.push_back(sum);
        }
        return ink;
    };
    std::vector<Point> points;
    for (int i = 0; i <= 50; ++i) points.push_back({60.0 * i, 75.0 + 18.0 * i});
    Screen cut(200, 80), whole(200, 80);
    cut.device.polyline(points, Pen{black, 2.0, LineStyle::solid});
    const Point ends[] = {points.front(), points.back()};
    whole.device.polyline(ends, Pen{black, 2.0, LineStyle::solid});
    const auto a = ink_of_columns(cut), b = ink_of_columns(whole);
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) EXPECT_NEAR(a[i], b[i], 25) << i;
}

TEST(ScreenDevice, the_overlay_is_drawn_on_a_copy_and_the_base_stays) {
    Screen screen(40, 20);
    screen.device.select_layer(DrawingDevice::Layer::base);
    screen.device.clear(white, 1);
    screen.device.copy_base_to_surface();
    const Point area[] = {{0, 0}, {600, 0}, {600, 300}, {0, 300}};
    screen.device.polygon_fill(area, 0x0000FF);
    EXPECT_EQ(screen.picture().pixel(20, 10), qRgb(255, 0, 0));
    screen.device.copy_base_to_surface();
    EXPECT_EQ(screen.picture().pixel(20, 10), qRgb(255, 255, 255));
}

TEST(ScreenDevice, no_mark_of_an_overlay_outlives_it) {
    ScreenDevice surface;
    surface.resize(QSize(300, 150), 1.5);
    AX_Grapher chart;
    chart.SetSurface(&surface);
    fill_sample_chart(chart);
    chart.ClearSavedGraphics();
    chart.RefreshGraph(1);
    const QImage bare = surface.picture().copy();
    const double xs[] = {3000, 5000, 5000}, ys[] = {0, 0, 300};
    const std::function<void()> items[] = {
        [&] { chart.DrawLine(2000, 0, 3000, 500, black, 1); },
        [&] { chart.DrawLine(2000, 0, 3000, 0, black, 2, 3); },
        [&] { chart.DrawMarker(3000, 300, 2, black, 1); },
        [&] { chart.DrawText(0, 3000, 300, "mark"); },
        [&] { chart.DrawPolygon(3, xs, ys, no_colour, black, 1); },
        [&] { chart.DrawPolygon(3, xs, ys, black, no_colour, 1); },
    };
    for (const auto& draw : items) {
        draw();
        chart.RefreshGraph(1);
        EXPECT_NE(surface.picture(), bare);
        chart.RefreshGraph(1);
        chart.ClearSavedGraphics();
        chart.RefreshGraph(1);
        EXPECT_EQ(surface.picture(), bare);
        chart.RefreshGraph(1);
        EXPECT_EQ(surface.picture(), bare);
    }
}

/// A chart of two curves, as it is changed while a body is moved.
struct MovedChart {
    int presented = 0;
    ScreenDevice surface{[this] { ++presented; }};
    AX_Grapher chart;
    std::vector<double> x{0, 1, 2, 3, 4, 5}, observed{1, 4, 2, 8, 5, 7}, calculated{2, 3, 3, 6, 6, 5};

    MovedChart() {
        surface.resize(QSize(300, 150), 1.5);
        chart.SetSurface(&surface);
    }
    ~MovedChart() { chart.SetSurface(nullptr); }
    void show() {
        const std::array rows{ChartRow{x_row, x}, ChartRow{line_series, observed},
                              ChartRow{line_series, calculated}};
        chart.RegisterData(rows);
        chart.SetSeriesOptions(1, 1, black, "Observed", marker, -1, 1);
        chart.SetSeriesOptions(1, 2, 65280, "Calculated", 0, -1, width);
        chart.SetSeriesCasing(1, 2, cased);
        chart.ClearSavedGraphics();
        for (const double body : bodies) {
            const std::array xs{body, body + 1, body}, ys{1.0, 3.0, 5.0};
            chart.DrawPolygon(3, xs.data(), ys.data(), black, 0x00A0FF, 1);
        }
        chart.DisplayChart();
    }
    /// Pictures of another size keep nothing of these.
    void forget_pictures() {
        const QSize size = surface.logical_size();
        const double ratio = surface.device_pixel_ratio();
        surface.resize(QSize(20, 20), 1.0);
        surface.resize(size, ratio);
    }
    int marker = 0;
    int width = 1;
    bool cased = false;
    std::vector<double> bodies{1, 3};
};

/// What is kept of a picture from one redraw to the next is never seen: each is as one drawn from nothing.
TEST(ScreenDevice, a_chart_after_any_change_is_as_one_drawn_from_nothing) {
    const std::vector<std::function<void(MovedChart&)>> changes{
        [](MovedChart& c) { c.calculated[2] = 7; },
        [](MovedChart& c) { c.observed[1] = 2; },
        [](MovedChart& c) { c.x[5] = 4.5; },
        [](MovedChart& c) { c.observed[3] = std::nan(""); },
        [](MovedChart& c) { c.observed.pop_back(); },
        [](MovedChart& c) { c.chart.YAxisMin(-3), c.chart.YAxisMax(12); },
        [](MovedChart& c) { c.chart.Title("Residual"); },
        [](MovedChart& c) { c.chart.DisplayAxes(false); },
        [](MovedChart& c) { c.chart.PlotPoints(true), c.marker = 2; },
        [](MovedChart& c) { c.marker = 3; },
        [](MovedChart& c) { c.chart.BackColor(0xC0FFFF); },
        [](MovedChart& c) { c.chart.SetZoomValues(2, 0.5, 1, 0.5); },
        [](MovedChart& c) { c.surface.resize(QSize(280, 160), 1.0); },
        [](MovedChart& c) { c.calculated[3] = 1; },
        [](MovedChart& c) { c.width = 2; },
        [](MovedChart& c) { c.cased = true; },
        [](MovedChart& c) { c.bodies[0] = 1.5; },
        [](MovedChart& c) { c.bodies.pop_back(); },
        [](MovedChart& c) { c.bodies.clear(); },
        [](MovedChart& c) { c.chart.DisplayLegend(true); },
        [](MovedChart& c) {
            c.chart.ShowColourKey(ColourKey{"Density", "1", "3", {black, 0x00A0FF}});
        },
        [](MovedChart& c) {
            c.chart.ShowColourKey(ColourKey{"Density", "1", "4", {black, 0x00A0FF}});
        },
        [](MovedChart& c) { c.chart.ShowColourKey(std::nullopt); },
    };
    MovedChart moved;
    moved.show();
    QImage before = moved.surface.picture().copy();
    for (std::size_t i = 0; i < changes.size(); ++i) {
        changes[i](moved);
        moved.show();
        const QImage shown = moved.surface.picture().copy();
        EXPECT_NE(shown, before) << "change " << i << " is not seen";
        moved.forget_pictures();
        moved.chart.DisplayChart();
        EXPECT_EQ(shown, moved.surface.picture()) << "after change " << i;
        before = shown;
    }
}

TEST(ScreenDevice, a_chart_that_would_look_the_same_is_not_drawn_again) {
    MovedChart kept;
    kept.show();
    const int first = kept.presented;
    kept.show();
    EXPECT_EQ(kept.presented, first);
    // What others have drawn or chosen meanwhile goes.
    kept.chart.DrawGraphics();
    const int drawn_over = kept.presented;
    kept.show();
    EXPECT_GT(kept.presented, drawn_over);
    kept.show();
    kept.chart.SelectPoint(1, 1, 2, true);
    const int chosen = kept.presented;
    kept.show();
    EXPECT_GT(kept.presented, chosen) << "the mark of the chosen point";
}

TEST(ScreenDevice, stamped_markers_stand_where_single_ones_stand) {
    const Point corners[] = {{-45, -45}, {45, -45}, {45, 45}, {-45, 45}};
    MarkerShape square;
    square.radius = 45;
    square.outline = corners;
    square.filled = true;
    std::vector<Point> anchors;
    for (int i = 0; i < 10; ++i) anchors.push_back({97.5 + 150 * i, 157.5});

    Screen stamped(110, 20), single(110, 20);
    stamped.device.markers(square, anchors);
    for (const Point& anchor : anchors) single.device.markers(square, {&anchor, 1});
    const QImage a = stamped.picture(), b = single.picture();
    EXPECT_EQ(a, b);
    EXPECT_TRUE(is_dark(a.pixel(6, 9)));
    EXPECT_FALSE(is_dark(a.pixel(11, 9)));
}

/// Dark pixels of each run of dark columns.
std::vector<int> dark_in_runs(const QImage& picture) {
    std::vector<int> found;
    bool before = false;
    for (int x = 0; x < picture.width(); ++x) {
        int dark = 0;
        for (int y = 0; y < picture.height(); ++y) dark += is_dark(picture.pixel(x, y));
        if (dark > 0 && !before) found.push_back(0);
        if (dark > 0) found.back() += dark;
        before = dark > 0;
    }
    return found;
}

int grey_pixels(const QImage& picture) {
    int grey = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            grey += qGray(picture.pixel(x, y)) > 0 && qGray(picture.pixel(x, y)) < 255;
    return grey;
}

/// Stations lie anywhere between two pixels; their marks do not show it.
TEST(ScreenDevice, markers_of_a_kind_are_of_one_size_and_sharp_at_every_scale) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        for (const double radius : {30.0, 35.0, 45.0}) {
            const Point corners[] = {
                {-radius, -radius}, {radius, -radius}, {radius, radius}, {-radius, radius}};
            MarkerShape square;
            square.radius = radius;
            square.outline = corners;
            Screen screen(300, 20, ratio);
            for (int i = 0; i < 14; ++i) {
                const Point at{150 + 303.7 * i, 150 + 1.3 * i};
                screen.device.markers(square, {&at, 1});
            }
            const QImage picture = screen.picture();
            const std::vector<int> dark = dark_in_runs(picture);
            ASSERT_EQ(dark.size(), 14U) << ratio;
            for (const int pixels : dark) EXPECT_EQ(pixels, dark.front()) << ratio << ", " << radius;
            EXPECT_EQ(grey_pixels(picture), 0) << ratio << ", " << radius;
        }
    }
}

TEST(ScreenDevice, boxes_and_dashes_on_top_are_whole_pixels_at_every_scale) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        Screen screen(200, 100, ratio);
        screen.device.present();
        screen.device.begin_top();
        const Point box[] = {{303.3, 301.1}, {1507.7, 301.1}, {1507.7, 1207.3}, {303.3, 1207.3}};
        screen.device.polygon_outline(box, Pen{});
        const Point across[] = {{0, 700.7}, {3000, 700.7}};
        screen.device.polyline(across, Pen{black, 1.0, LineStyle::dot});
        screen.device.end_top();
        QImage shown(screen.device.picture().size(), QImage::Format_ARGB32_Premultiplied);
        shown.setDevicePixelRatio(ratio);
        shown.fill(Qt::white);
        {
            QPainter painter(&shown);
            screen.device.show(painter, QPointF(0, 0));
        }
        EXPECT_EQ(grey_pixels(shown), 0) << ratio;
        EXPECT_GT(dark_in_runs(shown).size(), 10U);
        EXPECT_EQ(dark_in_runs(screen.device.picture()).size(), 0U) << "the picture itself has none of it";
        // Emptied, the top leaves nothing.
        screen.device.begin_top();
        screen.device.end_top();
        QPainter painter(&shown);
        screen.device.show(painter, QPointF(0, 0));
        painter.end();
        EXPECT_TRUE(dark_in_runs(shown).empty()) << ratio;
    }
}

TEST(ScreenDevice, a_curve_has_the_ink_of_its_width_at_every_scale) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        for (const double width : {1.0, 2.0}) {
            Screen screen(220, 120, ratio);
            const Point slant[] = {{150, 150}, {3000, 1575}};
            screen.device.polyline(slant, Pen{black, width, LineStyle::solid});
            const QImage picture = screen.picture();
            double ink = 0;
            for (int y = 0; y < picture.height(); ++y)
                for (int x = 0; x < picture.width(); ++x) ink += (255 - qGray(picture.pixel(x, y))) / 255.0;
            const double length = std::hypot(190.0, 95.0) * ratio;
            EXPECT_NEAR(ink, length * width * ratio, 0.02 * length * width * ratio + 4) << ratio;
        }
    }
}

/// Thinning to what the pixel columns can show is for the raster alone; nothing visible may change.
TEST(ScreenDevice, thinning_a_long_series_inks_the_same_pixels) {
    ScreenDevice surface;
    surface.resize(QSize(300, 150), 1.0);
    AX_Grapher chart;
    chart.SetSurface(&surface);
    fill_sample_chart(chart, 60001);
    const SurfaceSize size{surface.width(), surface.height()};
    const QImage thinned = page_image(size, [&](auto& device, auto kind, const auto& mapping) {
        chart.DrawTo(device, kind, mapping, size);
    });
    // Every piece of the curve on a raster eight times as fine.
    Unthinned fine;
    fine.resize(QSize(300, 150), 8.0);
    fine.select_layer(DrawingDevice::Layer::surface);
    fine.clear(white, 1);
    chart.DrawTo(fine, OutputTarget::screen_copy, screen_mapping(size.height), size);
    fine.present();
    const QImage whole = fine.picture().scaled(300, 150, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const Rect plot = chart.PlotRect();
    const auto pixel = [](double units) { return static_cast<int>(units / units_per_screen_pixel); };
    int inked = 0;
    for (int y = 150 - pixel(plot.y_high) + 2; y < 150 - pixel(plot.y_low) - 2; ++y) {
        for (int x = pixel(plot.x_low) + 2; x < pixel(plot.x_high) - 2; ++x) {
            const int a = qGray(thinned.pixel(x, y)), b = qGray(whole.pixel(x, y));
            inked += a < 128;
            EXPECT_FALSE((a < 100 && b > 250) || (b < 100 && a > 250))
                << x << ", " << y << ": " << a << " " << b;
        }
    }
    EXPECT_GT(inked, 300);
}

}  // namespace
}  // namespace anomalis::chart
