#include "chart/surface_mapping.h"

#include <gtest/gtest.h>

namespace anomalis::chart {
namespace {

constexpr double width = 13500.0;
constexpr double height = 4500.0;

TEST(SurfaceMapping, the_screen_turns_y_and_fills_the_surface) {
    const SurfaceMapping mapping = screen_mapping(height);
    EXPECT_EQ(mapping.to_device({0.0, 0.0}), (Point{0.0, 300.0}));
    const Point corner = mapping.to_device({width, height});
    EXPECT_NEAR(corner.x, 900.0, 1e-9);
    EXPECT_NEAR(corner.y, 0.0, 1e-9);
}

TEST(SurfaceMapping, the_metafile_frame_holds_the_whole_picture) {
    const MetafileFrame frame = metafile_frame(width, height);
    EXPECT_EQ(frame.frame_width, 23810);
    EXPECT_EQ(frame.frame_height, 7937);
    EXPECT_EQ(frame.window_width, 2812);
    EXPECT_EQ(frame.window_height, 937);
    EXPECT_EQ(frame.viewport_width, 762);
    EXPECT_EQ(frame.viewport_height, 254);
    EXPECT_NEAR(frame.mapping.device_scale, 300.0 / 1440.0, 1e-12);
    const Point bottom_right = frame.mapping.to_device({width, 0.0});
    EXPECT_NEAR(bottom_right.x, 2812.5, 1e-9);
    EXPECT_NEAR(bottom_right.y, 937.5, 1e-9);
    EXPECT_NEAR(frame.mapping.pen_factor, 3.125, 1e-12);
}

TEST(SurfaceMapping, a_finer_metafile_is_the_same_picture) {
    const MetafileFrame fine = metafile_frame(width, height, 16);
    EXPECT_EQ(fine.frame_width, 23810);
    EXPECT_EQ(fine.window_width, 2812 * 16);
    EXPECT_NEAR(fine.mapping.device_scale, 16.0 * 300.0 / 1440.0, 1e-12);
}

TEST(SurfaceMapping, a_print_fits_the_sheet_with_a_margin) {
    // A4 upright without unprintable edges, 600 dots an inch.
    const double sheet_width = 210.0 / 25.4 * 1440.0;
    const double sheet_height = 297.0 / 25.4 * 1440.0;
    const SurfaceMapping mapping = print_mapping(width, height, sheet_width, sheet_height, 600.0);
    EXPECT_NEAR(mapping.device_scale * 1440.0 / 600.0, 0.86707, 1e-5);
    EXPECT_NEAR(mapping.to_device({0.0, height}).x, 100.0 * 600.0 / 1440.0, 1e-9);
    EXPECT_NEAR(mapping.to_device({0.0, height}).y, 100.0 * 600.0 / 1440.0, 1e-9);
    EXPECT_LT(mapping.to_device({width, 0.0}).x, 4961.0);
    EXPECT_NEAR(mapping.pen_factor, 6.25, 1e-12);
    EXPECT_EQ(print_mapping(width, height, sheet_width, sheet_height, 72.0).pen_factor, 2.0);
}

TEST(SurfaceMapping, landscape_exchanges_the_axes_and_turns_texts) {
    SurfaceMapping mapping;
    mapping.device_scale = 1.0;
    mapping.device_offset_y = 1000.0;
    mapping.landscape = true;
    mapping.page_width = 500.0;
    EXPECT_EQ(mapping.to_device({100.0, 20.0}), (Point{20.0, 600.0}));
    EXPECT_EQ(mapping.device_angle(90.0), 0.0);
}

}  // namespace
}  // namespace anomalis::chart
