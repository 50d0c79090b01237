#include "chart/qt/painter_device.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "screen_sample.h"

namespace anomalis::chart {
namespace {

TEST(PainterDevice, a_font_that_is_missing_is_drawn_and_measured_by_another) {
    const Font missing{.name = "No Such Family 42", .size = 10, .bold = false, .italic = false};
    Screen screen(200, 40);
    const TextExtent extent = screen.device.measure("Depth 123.4 m", missing);
    EXPECT_GT(extent.width, 60 * units_per_screen_pixel / 2);
    screen.device.text({300, 150}, 0, "Depth 123.4 m", missing, black);
    const QImage picture = screen.picture();
    int left = picture.width(), right = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (is_dark(picture.pixel(x, y))) {
                left = std::min(left, x);
                right = std::max(right, x);
            }
    EXPECT_NEAR(left, 20, 2);
    EXPECT_NEAR((right + 1 - 20) * units_per_screen_pixel, extent.width, 2 * units_per_screen_pixel)
        << "the room that is kept is the room that is drawn on";
}

TEST(ScreenDevice, a_text_fills_the_box_that_was_measured) {
    Screen screen(200, 40);
    const Font font{"DejaVu Sans", 8, false, false};
    const std::string text = "HBurial depth: 32.00H";
    const TextExtent extent = screen.device.measure(text, font);
    screen.device.text({150, 150}, 0, text, font, black);
    const QImage picture = screen.picture();
    int left = 200, right = 0, top = 40, bottom = 0;
    for (int y = 0; y < 40; ++y) {
        for (int x = 0; x < 200; ++x) {
            if (!is_dark(picture.pixel(x, y))) continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    EXPECT_NEAR(left, 10, 3);
    EXPECT_NEAR(right, 10 + extent.width / units_per_screen_pixel, 3);
    EXPECT_GE(top, 40 - (150 + extent.height()) / units_per_screen_pixel);
    EXPECT_LT(bottom, 40 - 150 / units_per_screen_pixel);
}

}  // namespace
}  // namespace anomalis::chart
