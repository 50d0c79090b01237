#include "chart/detail/graphic_stream.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <set>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

/// A chart with everything that a stream can hold.
struct Full : Rig {
    Full() {
        make_a();
        register_series({0.0, 1000.0, 2000.0, 7400.0}, {0.0, 900.0, -999.0, 100.0}, line_and_marker_series);
        chart.SetSeriesOptions(1, 1, 33, "Observed", 2, 1, 2);
        const double xs[] = {3000.0, 9000.0, 9000.0};
        const double ys[] = {0.0, 0.0, 600.0};
        chart.DrawPolygon(3, xs, ys, 4, 5, 1);
        chart.DrawRectangle(500.0, 100.0, 900.0, 200.0, 6, 7, 1);
        chart.DrawText(30.0, 3700.0, 200.0, "dip 30");
        chart.MarkerSize(60);
        chart.DrawMarker(1500.0, 300.0, 8, 9, 3);
        chart.DrawMarker(1600.0, 300.0, -3, 9, 1);
        chart.DrawLine(0.0, 0.0, 9999.0, 500.0, 10, 1, 3);
        chart.DisplayChart();
    }
    std::pair<int, GraphicBytes> captured() {
        int mode = 0;
        GraphicBytes bytes;
        chart.GraphicsStream(mode, bytes);
        return {mode, bytes};
    }
};

/// What a picture shows whatever the calls it was drawn by: every segment, every filled corner, mark and
/// text.
std::set<std::string> ink(const RecordingDevice& device) {
    std::set<std::string> found;
    const auto place = [](Point p) {
        return std::to_string(std::lround(p.x * 16)) + "," + std::to_string(std::lround(p.y * 16));
    };
    for (const auto& e : device.entries) {
        const std::string pen = std::to_string(e.pen.colour) + "/" + std::to_string(e.pen.width) + "/" +
                                std::to_string(static_cast<int>(e.pen.style)) + ":";
        const std::size_t n = e.points.size();
        if (e.kind == Kind::polyline)
            for (std::size_t i = 1; i < n; ++i)
                found.insert("l" + pen + place(e.points[i - 1]) + " " + place(e.points[i]));
        if (e.kind == Kind::polygon_outline)
            for (std::size_t i = 0; i < n; ++i) found.insert("o" + pen + place(e.points[i]));
        if (e.kind == Kind::polygon_fill)
            for (const Point& p : e.points) found.insert("f" + pen + place(p));
        if (e.kind == Kind::markers)
            for (const Point& p : e.points)
                found.insert("m" + std::to_string(e.style) + pen + std::to_string(e.radius) + place(p));
        if (e.kind == Kind::text)
            found.insert("t" + e.text + pen + std::to_string(e.angle) + e.font.name + place(e.points[0]));
    }
    return found;
}

TEST(GraphicStream, played_at_scale_1_gives_the_picture_of_the_redraw) {
    Full rig;
    const auto [count, bytes] = rig.captured();
    ASSERT_GT(count, 50);
    RecordingDevice copy(13500.0, 4500.0);
    ASSERT_EQ(rig.chart.DrawGraphicsStream(&copy, count, bytes, false, 13500.0, 4500.0, 1.0, 0.0, 299.0), 0);
    EXPECT_EQ(copy.mapping.device_offset_y, rig.device.mapping.device_offset_y);
    EXPECT_EQ(copy.mapping.device_scale, rig.device.mapping.device_scale);
    EXPECT_EQ(ink(copy), ink(rig.device));
}

TEST(GraphicStream, holds_surface_items_of_each_kind) {
    Full rig;
    const auto [count, bytes] = rig.captured();
    const auto items = unpack_items(bytes);
    ASSERT_TRUE(items.has_value());
    EXPECT_EQ(items->size(), static_cast<std::size_t>(count));
    std::set<ItemKind> kinds;
    for (const GraphicItem& item : *items) kinds.insert(item.kind);
    EXPECT_EQ(kinds, (std::set<ItemKind>{ItemKind::window, ItemKind::line, ItemKind::marker,
                                         ItemKind::polygon, ItemKind::rectangle, ItemKind::text}));
    ASSERT_EQ(items->front().kind, ItemKind::window);
    EXPECT_EQ(items->front().x2, 13500.0);
    EXPECT_EQ(items->front().y2, 4500.0);
    int windows = 0;
    for (const GraphicItem& item : *items) {
        windows += item.kind == ItemKind::window ? 1 : 0;
        if (item.kind != ItemKind::window || windows != 2) continue;
        EXPECT_EQ((Rect{item.x1, item.x2, item.y1, item.y2}), rig.chart.PlotRect());
    }
    EXPECT_EQ(windows, 2);
}

TEST(GraphicStream, capturing_does_not_touch_the_screen) {
    Full rig;
    const std::size_t drawn = rig.device.entries.size();
    rig.captured();
    EXPECT_EQ(rig.device.entries.size(), drawn);
    rig.device.forget();
    rig.chart.RefreshGraph(1);
    EXPECT_TRUE(rig.device.of_kind(Kind::clear).empty());
}

TEST(GraphicStream, text_keeps_its_angle) {
    Full rig;
    const auto [count, bytes] = rig.captured();
    RecordingDevice copy(13500.0, 4500.0);
    rig.chart.DrawGraphicsStream(&copy, count, bytes, false, 0.0, 0.0, 2.0, 10.0, 20.0);
    ASSERT_NE(copy.find_text("dip 30"), nullptr);
    EXPECT_EQ(copy.find_text("dip 30")->angle, 30.0);
    EXPECT_EQ(copy.find_text("nT")->angle, 90.0);
    EXPECT_NEAR(copy.mapping.device_scale, 2.0 / 15.0, 1e-12);
    EXPECT_EQ(copy.mapping.device_offset_x, 10.0);
    EXPECT_EQ(copy.mapping.pen_factor, 2.0);
}

TEST(GraphicStream, landscape_takes_the_exchanged_page) {
    Full rig;
    const auto [count, bytes] = rig.captured();
    RecordingDevice copy(13500.0, 4500.0);
    ASSERT_EQ(rig.chart.DrawGraphicsStream(&copy, count, bytes, true, 11000.0, 16000.0, 1.0, 0.0, 0.0), 0);
    EXPECT_TRUE(copy.mapping.landscape);
    EXPECT_EQ(copy.mapping.page_width, 16000.0);
}

TEST(GraphicStream, everything_is_put_back_after_a_playback) {
    Full rig;
    const auto [count, bytes] = rig.captured();
    const Rect plot = rig.chart.PlotRect();
    const SurfaceMapping mapping = rig.device.mapping;
    ASSERT_EQ(rig.chart.DrawGraphicsStream(&rig.device, count, bytes, true, 100.0, 100.0, 3.0, 7.0, 8.0), 0);
    EXPECT_EQ(rig.chart.PlotRect(), plot);
    EXPECT_EQ(rig.device.mapping, mapping);
    EXPECT_EQ(rig.chart.MarkerSize(), 60);
    rig.device.forget();
    rig.chart.RefreshGraph(1);
    EXPECT_TRUE(rig.device.of_kind(Kind::clear).empty());
}

TEST(GraphicStream, a_wrong_call_gives_minus_1_and_draws_nothing) {
    Full rig;
    const auto [count, bytes] = rig.captured();
    RecordingDevice copy(13500.0, 4500.0);
    const auto play = [&](DrawingDevice* device, int n, const GraphicBytes& stream, double scale) {
        return rig.chart.DrawGraphicsStream(device, n, stream, false, 1.0, 1.0, scale, 0.0, 0.0);
    };
    EXPECT_EQ(play(nullptr, count, bytes, 1.0), -1);
    EXPECT_EQ(play(&copy, 0, bytes, 1.0), -1);
    EXPECT_EQ(play(&copy, -4, bytes, 1.0), -1);
    EXPECT_EQ(play(&copy, count + 1, bytes, 1.0), -1);
    EXPECT_EQ(play(&copy, count, {}, 1.0), -1);
    EXPECT_EQ(play(&copy, count, bytes, 0.0), -1);
    EXPECT_EQ(play(&copy, count, bytes, std::nan("")), -1);
    EXPECT_TRUE(copy.entries.empty());
    EXPECT_EQ(copy.mapping, SurfaceMapping{});
}

TEST(GraphicStream, a_stream_cut_anywhere_is_refused) {
    Full rig;
    const auto [count, bytes] = rig.captured();
    RecordingDevice copy(13500.0, 4500.0);
    for (std::size_t length = 0; length < bytes.size(); length += 1 + bytes.size() / 300) {
        const GraphicBytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(rig.chart.DrawGraphicsStream(&copy, count, cut, false, 1.0, 1.0, 1.0, 0.0, 0.0), -1)
            << length;
    }
    GraphicBytes longer = bytes;
    longer.push_back(0);
    EXPECT_FALSE(unpack_items(longer).has_value());
    EXPECT_TRUE(copy.entries.empty());
}

TEST(GraphicStream, a_changed_byte_anywhere_is_noticed) {
    Full rig;
    const auto [count, bytes] = rig.captured();
    for (std::size_t at = 0; at < bytes.size(); at += 1 + bytes.size() / 300) {
        GraphicBytes changed = bytes;
        changed[at] ^= 0x40;
        EXPECT_FALSE(unpack_items(changed).has_value()) << at;
    }
}

TEST(GraphicStream, items_round_trip_field_by_field) {
    GraphicItem item;
    item.kind = ItemKind::polygon;
    item.x1 = -1.5;
    item.y1 = std::numeric_limits<double>::max();
    item.x2 = 1e-300;
    item.colour = 1;
    item.pen_colour = -1;
    item.fill_colour = button_face;
    item.width = 4;
    item.marker = -26;
    item.reserved = 3;
    item.angle = -90.0F;
    item.text = std::string("\xCE\xB1 \0 z", 6);
    item.xs = {1.0, 2.0, 3.0};
    item.ys = {4.0, 5.0, 6.0};
    item.marker_size = 35;
    item.font = FontRole::title;
    const GraphicBytes bytes = pack_items({item, GraphicItem{}});
    EXPECT_EQ(bytes[0], 'A');
    EXPECT_EQ(bytes[4], 1);
    const auto back = unpack_items(bytes);
    ASSERT_TRUE(back.has_value());
    ASSERT_EQ(back->size(), 2U);
    EXPECT_EQ((*back)[0], item);
    EXPECT_EQ((*back)[1], GraphicItem{});
}

TEST(GraphicStream, needs_a_chart_with_room) {
    Rig rig;
    rig.device.resize(10.0, 10.0);
    int mode = -1;
    GraphicBytes bytes{1, 2, 3};
    rig.chart.GraphicsStream(mode, bytes);
    EXPECT_EQ(mode, 0);
    EXPECT_TRUE(bytes.empty());
}

}  // namespace
}  // namespace anomalis::chart
