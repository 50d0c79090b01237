#include "intake/spline.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "core/failure.h"

namespace anomalis::intake {
namespace {

double cubic(double x) {
    return 3 - 2 * x + 0.5 * x * x - 0.25 * x * x * x;
}

TEST(Spline, through_two_points_is_a_line) {
    const std::vector<double> x{2, 4}, y{10, 20};
    const CubicSpline spline(x, y);
    EXPECT_DOUBLE_EQ(spline(2), 10);
    EXPECT_DOUBLE_EQ(spline(3), 15);
    EXPECT_DOUBLE_EQ(spline(6), 30);
    EXPECT_DOUBLE_EQ(spline(0), 0);
}

TEST(Spline, through_three_points_is_a_parabola) {
    const auto parabola = [](double v) { return 1 - v + 2 * v * v; };
    const std::vector<double> x{0, 1, 5}, y{parabola(0), parabola(1), parabola(5)};
    const CubicSpline spline(x, y);
    for (double at = -2; at < 8; at += 0.37) EXPECT_NEAR(spline(at), parabola(at), 1e-11);
}

/// The two end conditions make the first two pieces one cubic and the last two, so a cubic comes back whole.
TEST(Spline, gives_back_a_cubic_from_four_points_on) {
    for (std::size_t n = 4; n <= 9; ++n) {
        std::vector<double> x, y;
        for (std::size_t i = 0; i < n; ++i) {
            x.push_back(static_cast<double>(i * i) * 0.3 + static_cast<double>(i));
            y.push_back(cubic(x.back()));
        }
        const CubicSpline spline(x, y);
        for (double at = -1; at < x.back() + 1; at += 0.21)
            EXPECT_NEAR(spline(at), cubic(at), 1e-9 * (1 + std::abs(at * at * at)));
    }
}

TEST(Spline, passes_through_its_points_and_is_smooth_at_them) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> uniform(0.1, 1);
    std::vector<double> x{0}, y{0};
    for (int i = 0; i < 40; ++i) {
        x.push_back(x.back() + uniform(random));
        y.push_back(uniform(random) * 10);
    }
    const CubicSpline spline(x, y);
    for (std::size_t i = 0; i < x.size(); ++i) EXPECT_NEAR(spline(x[i]), y[i], 1e-12);

    // Differences across a point, by a cubic through four samples on each side.
    const double h = 0.01;
    const auto derivatives = [&](double at, double direction) {
        const double s = direction * h;
        const double a = spline(at), b = spline(at + s), c = spline(at + 2 * s), d = spline(at + 3 * s);
        struct {
            double first, second, third;
        } result{(-11 * a + 18 * b - 9 * c + 2 * d) / (6 * s), (2 * a - 5 * b + 4 * c - d) / (s * s),
                 (-a + 3 * b - 3 * c + d) / (s * s * s)};
        return result;
    };
    for (std::size_t i = 1; i + 1 < x.size(); ++i) {
        const auto left = derivatives(x[i], -1);
        const auto right = derivatives(x[i], 1);
        EXPECT_NEAR(left.first, right.first, 1e-7 * (1 + std::abs(right.first)));
        EXPECT_NEAR(left.second, right.second, 1e-5 * (1 + std::abs(right.second)));
        if (i == 1 || i + 2 == x.size()) {
            EXPECT_NEAR(left.third, right.third, 1e-3 * (1 + std::abs(right.third)));
        }
    }
}

TEST(Spline, goes_on_with_its_end_pieces) {
    const std::vector<double> x{0, 1, 2, 3, 4}, y{0, 1, 0, 1, 0};
    const CubicSpline spline(x, y);
    // A cubic is fixed by four points: those beyond the end must lie on the one of the last piece.
    const double a = spline(3.25), b = spline(3.5), c = spline(3.75), d = spline(4), e = spline(4.25);
    EXPECT_NEAR(a - 4 * b + 6 * c - 4 * d + e, 0, 1e-12);
}

TEST(Spline, equal_neighbours_are_a_division_by_zero) {
    const std::vector<double> x{0, 1, 2, 2}, y{0, 1, 2, 3};
    EXPECT_THROW(CubicSpline(x, y), Fault);
    const std::vector<double> one{1};
    EXPECT_THROW(CubicSpline(one, one), Fault);
}

TEST(Spline, a_last_point_that_falls_back_leaves_the_spline_finite) {
    const std::vector<double> x{0, 10, 20, 30, 24}, y{1, 2, 3, 4, 5};
    const CubicSpline spline(x, y);
    for (double at = 0; at <= 30; at += 0.5) EXPECT_TRUE(std::isfinite(spline(at)));
    EXPECT_NEAR(spline(20), 3, 1e-12);
}

}  // namespace
}  // namespace anomalis::intake
