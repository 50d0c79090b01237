#include "chart/detail/stroke_mask.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <vector>

#include "chart/detail/dashes.h"
#include "chart/detail/sharp_painter.h"

namespace anomalis::chart {
namespace {

/// A mask read out into one byte a pixel.
struct Cover {
    StrokeMask mask;
    std::vector<int> pixels;
    int width, height;

    Cover(int w, int h) : width(w), height(h) { mask.resize(w, h); }
    void read() {
        pixels.assign(static_cast<std::size_t>(width * height), 0);
        mask.take([&](int left, int y, std::span<const std::uint8_t> cover) {
            for (std::size_t i = 0; i < cover.size(); ++i)
                pixels[static_cast<std::size_t>(y * width + left) + i] = cover[i];
        });
    }
    int at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    double ink() const {
        double sum = 0;
        for (const int cover : pixels) sum += cover / 255.0;
        return sum;
    }
};

TEST(StrokeMask, a_line_has_its_width_times_its_length_of_ink_in_every_direction) {
    for (const double width : {1.0, 1.25, 1.5, 2.0, 3.0, 7.0}) {
        Cover cover(120, 120);
        for (int degrees = 0; degrees < 180; degrees += 9) {
            const double angle = degrees * std::numbers::pi / 180;
            const Point away{40 * std::cos(angle), 40 * std::sin(angle)};
            const std::vector<Point> line{{60.3 - away.x, 60.2 - away.y}, {60.3 + away.x, 60.2 + away.y}};
            cover.mask.add(line, width);
            cover.read();
            const double round_ends = std::numbers::pi * width * width / 4;
            EXPECT_NEAR(cover.ink(), 80 * width + round_ends, 1 + 0.01 * 80 * width)
                << width << ", " << degrees;
        }
    }
}

TEST(StrokeMask, a_curve_of_many_points_is_as_one_of_few) {
    for (const double width : {1.0, 1.5, 2.0, 3.0}) {
        Cover whole(120, 60), cut(120, 60);
        const Point a{5.2, 7.9}, b{112.4, 49.7};
        const std::vector<Point> ends{a, b};
        std::vector<Point> many;
        for (int i = 0; i <= 1000; ++i)
            many.push_back({a.x + (b.x - a.x) * i / 1000, a.y + (b.y - a.y) * i / 1000});
        whole.mask.add(ends, width);
        cut.mask.add(many, width);
        whole.read();
        cut.read();
        for (std::size_t i = 0; i < whole.pixels.size(); ++i)
            ASSERT_NEAR(whole.pixels[i], cut.pixels[i], 9) << width << ", " << i;
    }
}

TEST(StrokeMask, cover_is_forgotten_once_it_is_taken) {
    Cover cover(64, 64);
    const std::vector<Point> line{{3, 3}, {60, 50}};
    cover.mask.add(line, 2);
    EXPECT_FALSE(cover.mask.tiles().empty());
    cover.read();
    EXPECT_GT(cover.ink(), 100);
    EXPECT_TRUE(cover.mask.tiles().empty());
    cover.mask.add({line.data(), 1}, 1);
    cover.read();
    EXPECT_LT(cover.ink(), 3);
}

TEST(StrokeMask, lines_far_beyond_the_raster_are_cut_at_it) {
    Cover cover(50, 40);
    const std::vector<Point> line{{-1e6, -1e6}, {25, 20}, {1e6, 20}, {25, 1e6}};
    cover.mask.add(line, 3);
    cover.read();
    EXPECT_EQ(cover.at(10, 5), 255) << "on the way from the upper left";
    EXPECT_EQ(cover.at(49, 20), 255);
    EXPECT_EQ(cover.at(5, 35), 0);
    EXPECT_LT(cover.mask.visited(), 4 * 50 * 40);
}

TEST(StrokeMask, nothing_is_drawn_on_a_raster_of_no_size) {
    StrokeMask mask;
    mask.resize(0, 20);
    mask.add(std::vector<Point>{{0, 0}, {10, 10}}, 1);
    EXPECT_TRUE(mask.tiles().empty());
}

/// A line in random order passes every pixel hundreds of times; what it costs is bound by the raster.
TEST(StrokeMask, a_line_that_fills_the_raster_costs_what_the_raster_has) {
    constexpr int w = 320, h = 200;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> across(0, w), down(0, h);
    std::vector<Point> line;
    for (int i = 0; i < 60000; ++i) line.push_back({across(random), down(random)});
    Cover cover(w, h);
    cover.mask.add(line, 1);
    EXPECT_LT(cover.mask.visited(), 60 * w * h) << "of " << 60000 / 3 * w;
    cover.read();
    int full = 0;
    for (const int pixel : cover.pixels) full += pixel == 255;
    EXPECT_GT(full, 0.99 * w * h);
}

/// What is left out of an overfull line was covered: the picture is that of all its pieces.
TEST(StrokeMask, an_overfull_line_leaves_nothing_out) {
    constexpr int w = 160, h = 128;
    std::mt19937 random(3);
    std::uniform_real_distribution<double> across(20, 120), down(20, 100);
    std::vector<Point> line;
    for (int i = 0; i < 20000; ++i) line.push_back({across(random), down(random)});
    // Towards its end it leaves the crowd.
    line.push_back({155.5, 5.5});
    line.push_back({155.5, 120.5});
    Cover at_once(w, h), in_parts(w, h);
    at_once.mask.add(line, 1);
    at_once.read();
    // Parts that are too short to be told as overfull.
    for (std::size_t i = 0; i + 1 < line.size(); i += 20)
        in_parts.mask.add({line.data() + i, std::min<std::size_t>(21, line.size() - i)}, 1);
    in_parts.read();
    EXPECT_EQ(at_once.at(155, 60), 255);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            EXPECT_FALSE((at_once.at(x, y) == 255 && in_parts.at(x, y) < 90) ||
                         (at_once.at(x, y) == 0 && in_parts.at(x, y) > 165))
                << x << ", " << y;
}

std::vector<std::pair<double, double>> dashes(LineStyle style, double unit, double end, double length) {
    std::vector<std::pair<double, double>> found;
    const std::vector<Point> line{{0, 0}, {length / 3, 0}, {length, 0}};
    DashCutter(style, unit, end).cut(line, [&](std::span<const Point> dash) {
        found.emplace_back(dash.front().x, dash.back().x);
    });
    return found;
}

TEST(Dashes, follow_the_pattern_through_the_corners_of_a_line) {
    EXPECT_EQ(dashes(LineStyle::dash, 2, 0, 30),
              (std::vector<std::pair<double, double>>{{0, 8}, {12, 20}, {24, 30}}));
    EXPECT_EQ(dashes(LineStyle::dash_dot, 1, 0, 12),
              (std::vector<std::pair<double, double>>{{0, 4}, {6, 7}, {9, 12}}));
    EXPECT_TRUE(dashes(LineStyle::solid, 1, 0, 12).empty());
}

TEST(Dashes, round_ends_stay_within_their_dash) {
    const auto found = dashes(LineStyle::dot, 2, 1, 19);
    ASSERT_EQ(found.size(), 4U);
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_DOUBLE_EQ(found[i].first, 1 + 6.0 * static_cast<double>(i));
        EXPECT_DOUBLE_EQ(found[i].second, found[i].first);
    }
}

/// The lengths of dark and light along a row, from the first dark pixel to the last.
std::vector<int> runs(const std::vector<std::uint32_t>& row) {
    std::vector<int> found;
    std::size_t i = 0, end = row.size();
    while (i < end && row[i] == 0xFFFFFFFF) ++i;
    while (end > i && row[end - 1] == 0xFFFFFFFF) --end;
    for (std::uint32_t before = 0; i < end; before = row[i++]) {
        EXPECT_TRUE(row[i] == 0xFF000000 || row[i] == 0xFFFFFFFF) << "a grey pixel";
        if (found.empty() || row[i] != before) found.push_back(0);
        ++found.back();
    }
    return found;
}

TEST(SharpPainter, dashes_along_an_axis_are_whole_pixels_and_all_alike) {
    for (const int pen : {1, 2, 3}) {
        for (const double begin : {3.0, 3.4, 3.9}) {
            std::vector<std::uint32_t> pixels(200 * 10, 0xFFFFFFFF);
            SharpPainter painter;
            painter.open({pixels.data(), 200, 10, 200});
            const std::vector<Point> line{{begin, 5.3}, {begin + 150, 5.3}};
            painter.line(line, false, pen, LineStyle::dash, black);
            const std::vector<int> found = runs({pixels.begin() + 5 * 200, pixels.begin() + 6 * 200});
            ASSERT_GT(found.size(), 10U);
            for (std::size_t i = 0; i + 1 < found.size(); ++i)
                EXPECT_EQ(found[i], i % 2 == 0 ? 4 * pen : 2 * pen) << pen << ", " << begin << ", " << i;
        }
    }
}

TEST(SharpPainter, boxes_side_by_side_leave_no_gap_and_none_is_lost) {
    std::vector<std::uint32_t> pixels(40 * 4, 0xFFFFFFFF);
    SharpPainter painter;
    painter.open({pixels.data(), 40, 4, 40});
    for (int i = 0; i < 100; ++i)
        painter.fill_box({0.4 * i, 1}, {0.4 * (i + 1), 2}, i % 2 == 0 ? 0xFF : 0xFF00);
    for (int x = 0; x < 40; ++x) {
        EXPECT_NE(pixels[static_cast<std::size_t>(40 + x)], 0xFFFFFFFFU) << x;
        EXPECT_EQ(pixels[static_cast<std::size_t>(80 + x)], 0xFFFFFFFFU) << x;
    }
}

TEST(SharpPainter, notes_the_tiles_that_it_drew_on) {
    std::vector<std::uint32_t> pixels(256 * 128, 0xFFFFFFFF);
    SharpPainter painter;
    painter.open({pixels.data(), 256, 128, 256});
    painter.line(std::vector<Point>{{10, 100}, {250, 100}}, false, 1, LineStyle::solid, black);
    painter.line(std::vector<Point>{{10, 3}, {20, 9}}, false, 2, LineStyle::solid, black);
    std::vector<PixelRect> found;
    painter.drawn().for_each_run([&](PixelRect run) { found.push_back(run); });
    EXPECT_EQ(found, (std::vector<PixelRect>{{0, 0, 32, 32}, {0, 96, 256, 128}}));
}

}  // namespace
}  // namespace anomalis::chart
