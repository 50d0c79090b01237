#include "chart/detail/point_thinner.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "chart/detail/axis_transform.h"

namespace anomalis::chart {
namespace {

using Values = std::vector<double>;

std::vector<std::vector<Point>> runs(const SeriesPoints& points, const Projection& project, double pixel) {
    std::vector<std::vector<Point>> found;
    std::vector<Point> run;
    for (std::size_t i = 0; i < points.ys.size(); ++i) {
        if (is_null(points.xs[i]) || is_null(points.ys[i])) continue;
        i = collect_run(points, i, project, pixel, run);
        found.push_back(run);
    }
    return found;
}

/// With and without the kept extremes the same points are passed, in every view.
TEST(PointThinner, kept_extremes_change_no_point_of_the_picture) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> noise(-1.0, 1.0);
    for (const std::size_t count : {10U, 500U, 20000U}) {
        Values xs(count), ys(count);
        double x = 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            // Stations stand still for a while and leap.
            x += random() % 5 == 0 ? 0.0 : random() % 1000 == 0 ? 300.0 : std::abs(noise(random));
            xs[i] = x;
            ys[i] = std::round(10.0 * noise(random));
        }
        for (std::size_t i = 0; i < count / 500; ++i) ys[random() % count] = null_value;
        BlockExtremes extremes;
        extremes.build(ys);
        for (const double zoom : {1.0, 3.7, 80.0}) {
            const double span = x / zoom;
            const Projection project{
                x / 3.0 * (1.0 - 1.0 / zoom), -10.0, 9000.0 / span, 100.0, {500.0, 9500.0, 300.0, 2300.0}};
            for (const double pixel : {7.5, 15.0, 100.0})
                EXPECT_EQ(runs({xs, ys, &extremes}, project, pixel), runs({xs, ys, nullptr}, project, pixel));
        }
    }
}

TEST(PointThinner, a_row_that_turns_back_is_passed_point_by_point) {
    Values xs(1000), ys(1000, 1.0);
    for (std::size_t i = 0; i < xs.size(); ++i) xs[i] = i % 2 == 0 ? 0.0 : 100.0;
    const Projection project{0.0, 0.0, 90.0, 10.0, {0.0, 9000.0, 0.0, 1000.0}};
    EXPECT_EQ(runs({xs, ys, nullptr}, project, 15.0).at(0).size(), xs.size());
}

TEST(PointThinner, a_value_is_kept_at_its_first_place) {
    Values xs, ys;
    for (int i = 0; i < 400; ++i) {
        xs.push_back(i * 0.01);
        ys.push_back(i == 70 || i == 200 ? 5.0 : i == 90 || i == 300 ? -5.0 : 0.0);
    }
    BlockExtremes extremes;
    extremes.build(ys);
    const Projection project{0.0, 0.0, 1.0, 1.0, {0.0, 9000.0, -100.0, 1000.0}};
    const auto found = runs({xs, ys, &extremes}, project, 15.0);
    ASSERT_EQ(found.size(), 1U);
    ASSERT_EQ(found[0].size(), 4U);
    EXPECT_DOUBLE_EQ(found[0][1].x, 0.70);
    EXPECT_DOUBLE_EQ(found[0][2].x, 0.90);
}

}  // namespace
}  // namespace anomalis::chart
