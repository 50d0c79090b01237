#include "chart/detail/clip.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace anomalis::chart {
namespace {

constexpr Rect window{0.0, 10.0, 0.0, 5.0};

double area(const std::vector<Point>& points) {
    double sum = 0.0;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Point a = points[i];
        const Point b = points[(i + 1) % points.size()];
        sum += a.x * b.y - b.x * a.y;
    }
    return std::abs(sum) / 2.0;
}

TEST(Clip, out_codes_tell_the_sides) {
    EXPECT_EQ(out_code(window, {5.0, 2.0}), 0);
    EXPECT_EQ(out_code(window, {-1.0, 2.0}), 1);
    EXPECT_EQ(out_code(window, {11.0, 2.0}), 2);
    EXPECT_EQ(out_code(window, {5.0, -1.0}), 4);
    EXPECT_EQ(out_code(window, {11.0, 6.0}), 10);
    EXPECT_EQ(out_code(window, {10.0, 5.0}), 0);
}

TEST(Clip, a_segment_across_is_cut_at_both_sides) {
    Point a{-10.0, 1.0};
    Point b{30.0, 3.0};
    ASSERT_TRUE(clip_segment(window, a, b));
    EXPECT_EQ(a.x, 0.0);
    EXPECT_DOUBLE_EQ(a.y, 1.5);
    EXPECT_EQ(b.x, 10.0);
    EXPECT_DOUBLE_EQ(b.y, 2.0);
}

TEST(Clip, segments_outside_and_past_a_corner_are_dropped) {
    for (auto [a, b] : {std::pair{Point{-5.0, -5.0}, Point{-1.0, 9.0}},
                        {{-2.0, 4.0}, {2.0, 8.0}},
                        {{12.0, 0.0}, {8.0, -4.0}}})
        EXPECT_FALSE(clip_segment(window, a, b));
}

TEST(Clip, ends_that_are_no_numbers_drop_the_segment_and_do_not_hang) {
    const double endless = std::numeric_limits<double>::infinity();
    for (const double bad : {endless, -endless, std::nan("")}) {
        Point a{5.0, 2.0};
        Point b{bad, 2.0};
        EXPECT_FALSE(clip_segment(window, a, b));
        a = {5.0, bad};
        b = {6.0, 2.0};
        EXPECT_FALSE(clip_segment(window, a, b));
    }
    Point a{-1e308, -1e308};
    Point b{1e308, 1e308};
    clip_segment(window, a, b);
    std::vector<Point> cut, scratch;
    const std::vector<Point> polygon{{0.0, 0.0}, {endless, 0.0}, {1.0, 1.0}};
    clip_polygon(window, polygon, cut, scratch);
    EXPECT_TRUE(cut.empty());
}

TEST(Clip, random_segments_stay_on_their_line_and_in_the_window) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(-20.0, 25.0);
    int kept = 0;
    for (int i = 0; i < 2000; ++i) {
        const Point from{place(random), place(random)};
        const Point to{place(random), place(random)};
        Point a = from;
        Point b = to;
        if (!clip_segment(window, a, b)) continue;
        ++kept;
        for (const Point p : {a, b}) {
            EXPECT_TRUE(window.contains(p, 1e-9));
            const double cross = (to.x - from.x) * (p.y - from.y) - (to.y - from.y) * (p.x - from.x);
            EXPECT_NEAR(cross, 0.0, 1e-9);
        }
    }
    EXPECT_GT(kept, 200);
}

TEST(Clip, a_polygon_keeps_the_area_inside) {
    std::vector<Point> cut, scratch;
    const std::vector<Point> around{{-5.0, -5.0}, {20.0, -5.0}, {20.0, 20.0}, {-5.0, 20.0}};
    clip_polygon(window, around, cut, scratch);
    EXPECT_DOUBLE_EQ(area(cut), 50.0);
    const std::vector<Point> half{{5.0, -1.0}, {15.0, -1.0}, {15.0, 2.0}, {5.0, 2.0}};
    clip_polygon(window, half, cut, scratch);
    EXPECT_DOUBLE_EQ(area(cut), 10.0);
    // A notch from the left leaves two arms of 5 x 1 each.
    const std::vector<Point> notched{{5.0, 1.0}, {-5.0, 1.0}, {-5.0, 4.0}, {5.0, 4.0},
                                     {5.0, 3.0}, {-3.0, 3.0}, {-3.0, 2.0}, {5.0, 2.0}};
    clip_polygon(window, notched, cut, scratch);
    EXPECT_DOUBLE_EQ(area(cut), 10.0);
    const std::vector<Point> away{{20.0, 1.0}, {30.0, 1.0}, {30.0, 4.0}};
    clip_polygon(window, away, cut, scratch);
    EXPECT_TRUE(cut.empty());
}

TEST(Clip, a_polygon_inside_stays_as_it_is) {
    std::vector<Point> cut, scratch;
    const std::vector<Point> inside{{1.0, 1.0}, {9.0, 1.0}, {4.0, 4.0}};
    clip_polygon(window, inside, cut, scratch);
    EXPECT_EQ(cut, inside);
}

}  // namespace
}  // namespace anomalis::chart
