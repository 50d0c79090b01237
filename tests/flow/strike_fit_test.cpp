#include "flow/strike_fit.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <vector>

namespace anomalis::flow {

namespace {

constexpr double radians = std::numbers::pi / 180;  // a degree

/// Eastward lines 200 m apart that find a body of a strike, each off by so many m of its error along the
/// line.
std::vector<StrikePoint> on_lines(double strike, const std::vector<double>& off, double error = 5) {
    std::vector<StrikePoint> points;
    for (const double by : off) {
        const double north = 200.0 * static_cast<double>(points.size());
        points.push_back({.east = 500000 + north * std::tan(strike * radians) + by * error,
                          .north = 6500000 + north,
                          .error = error});
    }
    return points;
}

}  // namespace

TEST(StrikeFit, two_lines_give_the_strike_with_the_error_of_their_places) {
    const auto fit = fit_strike(on_lines(0, {0, 0}), 0);
    ASSERT_TRUE(fit);
    EXPECT_NEAR(fit->strike, 0, 1e-9);
    EXPECT_NEAR(fit->error, std::sqrt(2.0) * 5 / 200 / radians, 1e-9);
    EXPECT_EQ(fit->birge_ratio, 1);
    EXPECT_EQ(fit->lines, 2);
    EXPECT_NEAR(fit_strike(on_lines(25, {0, 0}), 0)->strike, 25, 1e-6);
}

TEST(StrikeFit, more_lines_tell_it_better_and_the_better_known_ones_count_more) {
    const auto two = fit_strike(on_lines(12, {0, 0}), 0), four = fit_strike(on_lines(12, {0, 0, 0, 0}), 0);
    ASSERT_TRUE(two && four);
    EXPECT_LT(four->error, 0.5 * two->error);
    std::vector<StrikePoint> points = on_lines(12, {0, 0, 0, 8});
    const double pulled = std::abs(fit_strike(points, 0)->strike - 12);
    points.back().error *= 10;
    EXPECT_LT(std::abs(fit_strike(points, 0)->strike - 12), 0.2 * pulled);
}

TEST(StrikeFit, places_that_do_not_lie_on_a_line_make_the_error_larger) {
    const auto straight = fit_strike(on_lines(0, {0, 0, 0, 0}), 0),
               bent = fit_strike(on_lines(0, {6, -6, -6, 6}), 0);
    ASSERT_TRUE(straight && bent);
    EXPECT_GT(bent->birge_ratio, 5);
    EXPECT_NEAR(bent->error, straight->error * bent->birge_ratio, 0.05 * bent->error);
}

TEST(StrikeFit, it_points_the_way_that_the_body_was_thought_to_strike) {
    const std::vector<StrikePoint> points = on_lines(20, {0, 0, 0});
    EXPECT_NEAR(fit_strike(points, 10)->strike, 20, 1e-6);
    EXPECT_NEAR(fit_strike(points, 190)->strike, 200, 1e-6);
    EXPECT_NEAR(fit_strike(points, -170)->strike, -160, 1e-6);
    EXPECT_NEAR(fit_strike(points, 370)->strike, 380, 1e-6);
}

TEST(StrikeFit, lines_may_run_any_way_across_it) {
    // Misfits are counted along each line, so a line that crosses at 45 degrees is off by more m there.
    std::vector<StrikePoint> points = on_lines(0, {0, 0});
    for (StrikePoint& p : points) p.line_east = p.line_north = std::sqrt(0.5);
    const auto fit = fit_strike(points, 0);
    ASSERT_TRUE(fit);
    EXPECT_NEAR(fit->strike, 0, 1e-9);
    EXPECT_NEAR(fit->error, std::sqrt(2.0) * 5 * std::sqrt(0.5) / 200 / radians, 1e-9);
}

TEST(StrikeFit, what_tells_no_strike_gives_none) {
    EXPECT_FALSE(fit_strike({}, 0));
    EXPECT_FALSE(fit_strike(on_lines(0, {0}), 0));
    std::vector<StrikePoint> points = on_lines(0, {0, 0});
    points[1] = points[0];
    EXPECT_FALSE(fit_strike(points, 0)) << "twice the same place";
    points = on_lines(0, {0, 0});
    for (StrikePoint& p : points) {
        p.line_east = 0;
        p.line_north = 1;
    }
    EXPECT_FALSE(fit_strike(points, 0)) << "lines along the strike";
}

}  // namespace anomalis::flow
