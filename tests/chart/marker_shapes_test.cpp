#include "chart/detail/marker_shapes.h"

#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

/// Draws markers as the devices do that have no stamps.
class PlainMarkers : public RecordingDevice {
  public:
    using RecordingDevice::RecordingDevice;
    void markers(const MarkerShape& shape, std::span<const Point> anchors) override {
        DrawingDevice::markers(shape, anchors);
    }
};

std::vector<RecordingDevice::Entry> drawn(int style, double radius = 35.0, double width = 2.0) {
    PlainMarkers device(1000.0, 1000.0);
    const MarkerGeometry geometry(style, radius, 7, width);
    const Point at{500.0, 400.0};
    device.markers(geometry.shape(), {&at, 1});
    return device.entries;
}

TEST(MarkerShapes, squares_stand_about_their_anchor) {
    for (const int style : {1, 2, 3}) {
        const auto entries = drawn(style);
        ASSERT_EQ(entries.size(), style == 2 ? 2U : 1U) << style;
        EXPECT_EQ(entries.back().kind, Kind::polygon_outline);
        EXPECT_EQ(entries.back().points[0], (Point{465.0, 365.0}));
        EXPECT_EQ(entries.back().points[2], (Point{535.0, 435.0}));
        EXPECT_EQ(entries.back().pen.width, style == 1 ? 1.0 : 2.0);
        EXPECT_EQ(entries.back().pen.colour, 7);
    }
}

TEST(MarkerShapes, crosses_are_strokes_and_the_star_is_both_a_unit_longer) {
    EXPECT_EQ(drawn(4).size(), 2U);
    EXPECT_EQ(drawn(4)[0].points[0], (Point{465.0, 365.0}));
    EXPECT_EQ(drawn(5).size(), 2U);
    EXPECT_EQ(drawn(5)[0].points[1], (Point{535.0, 400.0}));
    ASSERT_EQ(drawn(6).size(), 4U);
    EXPECT_EQ(drawn(6)[0].points[0], (Point{464.0, 364.0}));
    EXPECT_EQ(drawn(6)[2].points[1], (Point{536.0, 400.0}));
}

TEST(MarkerShapes, the_diamond_is_filled_as_7_and_open_as_8) {
    EXPECT_EQ(drawn(7).front().kind, Kind::polygon_fill);
    EXPECT_EQ(drawn(7).front().points[2], (Point{500.0, 435.0}));
    ASSERT_EQ(drawn(8).size(), 1U);
    EXPECT_EQ(drawn(8)[0].kind, Kind::polygon_outline);
}

TEST(MarkerShapes, other_styles_and_no_size_draw_nothing) {
    for (const int style : {0, 9, 1000, -27}) EXPECT_TRUE(drawn(style).empty()) << style;
    EXPECT_TRUE(drawn(2, 0.0).empty());
    EXPECT_TRUE(drawn(2, -5.0).empty());
}

TEST(MarkerShapes, letters_run_from_a_to_z) {
    EXPECT_TRUE(is_letter_marker(-1));
    EXPECT_TRUE(is_letter_marker(-26));
    EXPECT_FALSE(is_letter_marker(-27));
    EXPECT_FALSE(is_letter_marker(0));
    EXPECT_EQ(marker_letter(-1), 'A');
    EXPECT_EQ(marker_letter(-26), 'Z');
}

}  // namespace
}  // namespace anomalis::chart
