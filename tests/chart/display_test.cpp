#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

/// The order of layers, clears, copies and shows.
std::string steps(const RecordingDevice& device) {
    std::string found;
    for (const auto& entry : device.entries) {
        char step = entry.layer == Layer::base ? 'b' : 's';
        if (entry.kind == Kind::clear) step = 'C';
        if (entry.kind == Kind::copy) step = '>';
        if (entry.kind == Kind::present) step = '!';
        if (found.empty() || found.back() != step) found += step;
    }
    return found;
}

struct Shown : Rig {
    Shown() {
        make_plain();
        register_series({0.0, 7400.0}, {0.0, 500.0});
        chart.DrawLine(0.0, 0.0, 7400.0, 100.0, 9, 1);
    }
};

TEST(Display, the_picture_is_kept_and_the_overlay_drawn_above_its_copy) {
    Shown rig;
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
    EXPECT_EQ(steps(rig.device), "Cb>s!");
    EXPECT_TRUE(rig.chart.HasPlotDefined());
    EXPECT_EQ(rig.device.of_kind(Kind::clear)[0].pen.colour, white);
}

TEST(Display, frame_and_ticks_lie_on_bars_and_on_shapes_of_the_overlay) {
    Rig rig;
    rig.make_a();
    rig.register_series({0.0, 3700.0, 7400.0}, {0.0, 600.0, 650.0}, bar_series);
    const double xs[] = {-1000.0, 4000.0, 4000.0}, ys[] = {0.0, 0.0, 900.0};
    rig.chart.DrawPolygon(3, xs, ys, 4, 5, 1);
    rig.chart.DisplayChart();
    const auto frame_is_above_fills = [&](const std::vector<RecordingDevice::Entry>& entries) {
        std::size_t last_fill = 0, last_frame = 0, last_tick = 0;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const auto& entry = entries[i];
            if (entry.kind == Kind::polygon_fill) last_fill = i;
            if (entry.kind == Kind::polygon_outline && entry.points.size() == 4 && entry.pen.colour == black)
                last_frame = i;
            if (entry.kind == Kind::polyline && entry.points.size() == 2) last_tick = i;
        }
        EXPECT_GT(last_fill, 0U);
        EXPECT_GT(last_frame, last_fill);
        EXPECT_GT(last_tick, last_fill);
    };
    std::vector<RecordingDevice::Entry> base = rig.device.entries;
    std::erase_if(base, [](const auto& entry) { return entry.layer != Layer::base; });
    frame_is_above_fills(base);
    frame_is_above_fills(rig.device.entries);
    // The overlay alone brings them along, and without one nothing covers those of the base.
    rig.device.forget();
    rig.chart.RefreshGraph(1);
    frame_is_above_fills(rig.device.entries);
    rig.chart.ClearSavedGraphics();
    rig.device.forget();
    rig.chart.RefreshGraph(1);
    EXPECT_TRUE(rig.device.of_kind(Kind::polyline).empty());
    // So it is on a page.
    rig.chart.DrawPolygon(3, xs, ys, 4, 5, 1);
    RecordingDevice page(13500.0, 4500.0);
    rig.chart.DrawTo(page, OutputTarget::metafile, screen_mapping(4500.0));
    frame_is_above_fills(page.entries);
}

TEST(Display, an_overlay_alone_reuses_the_kept_picture) {
    Shown rig;
    rig.chart.DisplayChart();
    rig.device.forget();
    rig.chart.ClearSavedGraphics();
    rig.chart.DrawMarker(100.0, 100.0, 2, 5, 1);
    EXPECT_EQ(rig.chart.RefreshGraph(1), 0);
    EXPECT_EQ(steps(rig.device), ">s!");
    EXPECT_EQ(rig.device.of_kind(Kind::markers).size(), 1U);
    EXPECT_TRUE(rig.device.of_kind(Kind::polyline).empty());
}

TEST(Display, without_a_kept_picture_a_refresh_draws_one) {
    Shown rig;
    EXPECT_EQ(rig.chart.RefreshGraph(1), 0);
    EXPECT_EQ(steps(rig.device), "Cb>s!");
    for (int change = 0; change < 3; ++change) {
        rig.chart.RefreshGraph(1);
        rig.device.forget();
        if (change == 0) rig.chart.BackColor(0xFFEEDD);
        if (change == 1) rig.chart.ClearAll();
        if (change == 2) {
            rig.chart.XAxisMax(1000.0);
            rig.chart.Layout();
        }
        rig.chart.RefreshGraph(1);
        EXPECT_FALSE(rig.device.of_kind(Kind::clear).empty()) << change;
    }
}

TEST(Display, a_layout_that_changes_nothing_keeps_the_picture) {
    Shown rig;
    rig.chart.DisplayChart();
    rig.chart.Layout();
    rig.device.forget();
    rig.chart.RefreshGraph(1);
    EXPECT_EQ(steps(rig.device), ">s!");
}

TEST(Display, a_refresh_repaints_the_present_limits_and_a_display_takes_new_ones) {
    Rig rig;
    rig.make_plain();
    rig.register_series({0.0, 7400.0}, {0.0, 500.0});
    rig.chart.DisplayChart();
    rig.set_limits(1000.0, 2000.0, 0.0, 10.0);
    for (const int mode : {0, 1}) {
        rig.chart.RefreshGraph(mode);
        EXPECT_EQ(rig.chart.ViewRange(), (Rect{0.0, 7400.0, -300.0, 700.0})) << mode;
    }
    rig.chart.Resize();
    rig.chart.ResetZoom();
    rig.chart.SetZoomValues(1.0, 0.5, 1.0, 0.5);
    RecordingDevice file(13500.0, 4500.0);
    rig.chart.DrawTo(file, OutputTarget::metafile, screen_mapping(4500.0));
    EXPECT_EQ(rig.chart.FullRange(), (Rect{0.0, 7400.0, -300.0, 700.0}));
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.chart.ViewRange(), (Rect{1000.0, 2000.0, 0.0, 10.0}));
    rig.set_limits(0.0, 5000.0, 0.0, 10.0);
    rig.chart.Layout();
    EXPECT_EQ(rig.chart.ViewRange(), (Rect{0.0, 5000.0, 0.0, 10.0}));
}

TEST(Display, the_inner_step_draws_the_chart_alone) {
    Shown rig;
    EXPECT_EQ(rig.chart.display_current_chart(), -1);
    rig.chart.DisplayChart();
    rig.device.forget();
    EXPECT_EQ(rig.chart.display_current_chart(), 0);
    EXPECT_EQ(steps(rig.device), "Cb");
}

TEST(Display, a_resize_without_data_draws_nothing) {
    Rig rig;
    rig.make_a();
    rig.chart.Resize();
    EXPECT_TRUE(rig.device.texts().empty());
    EXPECT_TRUE(rig.device.of_kind(Kind::polyline).empty());
    EXPECT_FALSE(rig.chart.HasPlotDefined());
}

TEST(Display, a_resize_draws_the_data_at_the_new_size) {
    Shown rig;
    rig.chart.DisplayChart();
    rig.device.resize(6750.0, 2250.0);
    rig.device.forget();
    rig.chart.Resize();
    EXPECT_EQ(steps(rig.device), "Cb>s!");
    EXPECT_EQ(rig.chart.PlotRect(), (Rect{0.0, 6750.0, 0.0, 2250.0}));
    EXPECT_EQ(rig.device.mapping, screen_mapping(2250.0));
}

TEST(Display, clear_forgets_data_zoom_drawings_and_selection) {
    Shown rig;
    rig.chart.DisplayChart();
    rig.chart.SelectPoint(1, 1, 1, true);
    rig.chart.SetZoomValues(3.0, 0.5, 3.0, 0.5);
    rig.chart.save_zoom_values();
    rig.device.forget();
    rig.chart.Clear();
    EXPECT_FALSE(rig.chart.HasPlotDefined());
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.chart.SavedCount(), 0);
    EXPECT_FALSE(rig.chart.SelectPoint().has_value());
    EXPECT_EQ(steps(rig.device), "C>!");
    rig.chart.DisplayChart();
    rig.chart.restore_zoom_values();
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_TRUE(rig.device.of_kind(Kind::polyline).empty());
}

TEST(Display, clear_all_keeps_the_zoom_and_shows_no_blank_picture) {
    Shown rig;
    rig.chart.DisplayChart();
    rig.chart.SetZoomValues(3.0, 0.5, 3.0, 0.5);
    const ZoomValues zoom = rig.chart.CurrentZoom();
    rig.chart.SelectPoint(1, 1, 1, true);
    rig.device.forget();
    rig.chart.ClearAll();
    EXPECT_TRUE(rig.device.entries.empty());
    EXPECT_EQ(rig.chart.CurrentZoom(), zoom);
    EXPECT_EQ(rig.chart.SavedCount(), 0);
    EXPECT_FALSE(rig.chart.SelectPoint().has_value());
    rig.chart.DrawTopLayer(rig.device);
    EXPECT_TRUE(rig.device.entries.empty());
}

TEST(Display, a_primitive_that_fails_is_told_once_and_drawing_goes_on) {
    Shown rig;
    rig.make_a();
    rig.chart.DisplayAxes(true);
    rig.chart.DisplayBorder(true);
    for (const auto& [kind, prefix] : {std::pair{Kind::polyline, "Line error: "},
                                       {Kind::polygon_outline, "Polyline error: "},
                                       {Kind::text, "Font error: "}}) {
        rig.log.forget();
        rig.device.forget();
        rig.device.failure = "the device is gone";
        rig.device.failing_kind = kind;
        EXPECT_EQ(rig.chart.DisplayChart(), 0);
        ASSERT_FALSE(rig.log.failures.empty()) << prefix;
        EXPECT_EQ(rig.log.failures[0], std::string(prefix) + "the device is gone");
        EXPECT_LE(rig.log.failures.size(), 2U);
        EXPECT_FALSE(rig.device.entries.empty());
    }
    // The turned title has a word of its own.
    EXPECT_EQ(rig.log.failures[1], "Fone error: the device is gone");
}

TEST(Display, a_filled_polygon_that_fails_has_its_word) {
    Shown rig;
    const double xs[] = {100.0, 200.0, 200.0};
    const double ys[] = {0.0, 0.0, 50.0};
    rig.chart.DrawPolygon(3, xs, ys, no_colour, 5, 1);
    rig.device.failure = "no brush";
    rig.device.failing_kind = Kind::polygon_fill;
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.log.failures, (std::vector<std::string>{"Polygon error: no brush"}));
}

TEST(Display, a_surface_that_fails_gives_a_status_and_frees_the_chart) {
    Shown rig;
    rig.device.failure = "no picture";
    rig.device.failing_kind = Kind::clear;
    EXPECT_EQ(rig.chart.DisplayChart(), -1);
    EXPECT_EQ(rig.log.failures, (std::vector<std::string>{"no picture"}));
    rig.device.failure.clear();
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
}

TEST(Display, data_registered_while_a_redraw_runs_are_turned_away) {
    class Meddling : public RecordingDevice {
      public:
        using RecordingDevice::RecordingDevice;
        void polyline(std::span<const Point> points, const Pen& pen) override {
            RecordingDevice::polyline(points, pen);
            const std::vector<double> xs{0.0, 1.0};
            const std::vector<ChartRow> rows{{x_row, xs}, {bar_series, xs}};
            chart->RegisterData(rows);
            EXPECT_EQ(chart->DisplayChart(), -1);
            EXPECT_EQ(chart->RefreshGraph(0), -1);
        }
        AX_Grapher* chart = nullptr;
    };
    Meddling device(13500.0, 4500.0);
    Shown rig;
    device.chart = &rig.chart;
    rig.chart.SetSurface(&device);
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
    EXPECT_EQ(device.of_kind(Kind::polyline).size(), 2U);
    EXPECT_TRUE(device.of_kind(Kind::polygon_fill).empty());
    rig.chart.SetSurface(nullptr);
}

TEST(Display, texts_with_line_breaks_and_any_letters_are_one_line) {
    Shown rig;
    rig.chart.Title("Residual\r\nfield\x07 \xCE\x94T");
    rig.chart.DrawText(0.0, 100.0, 100.0, "\xE5\x9C\xB0\n\xE4\xB8\x8B");
    rig.chart.DrawText(0.0, 100.0, 100.0, "");
    EXPECT_EQ(rig.chart.DisplayChart(), 0);
    EXPECT_NE(rig.device.find_text("Residual field  \xCE\x94T"), nullptr);
    EXPECT_NE(rig.device.find_text("\xE5\x9C\xB0 \xE4\xB8\x8B"), nullptr);
    EXPECT_EQ(rig.device.find_text(""), nullptr);
}

TEST(Display, the_palettes_colours_are_resolved_for_the_device) {
    Rig rig;
    rig.chart.BackColor(button_face);
    rig.chart.ForeColor(button_text);
    rig.make_a();
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.device.of_kind(Kind::clear)[0].pen.colour, rig.device.system_colour(0x0F));
    EXPECT_EQ(rig.device.find_text("Residual")->pen.colour, black);
}

TEST(Display, the_border_style_goes_to_the_surface) {
    Rig rig;
    rig.chart.BorderStyle(0);
    rig.chart.DisplayChart();
    EXPECT_EQ(rig.device.border_style, 0);
}

}  // namespace
}  // namespace anomalis::chart
