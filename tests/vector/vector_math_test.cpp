#include "vector/vector_math.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

#include "vector_math_loops.h"

namespace anomalis::vector {
namespace {

using Values = std::vector<double>;

/// The levels that this processor can run.
std::vector<VectorLevel> levels() {
    std::vector<VectorLevel> found;
    for (VectorLevel level : {VectorLevel::baseline, VectorLevel::avx2, VectorLevel::avx512})
        if (level <= widest_vector_level()) found.push_back(level);
    return found;
}

/// Numbers of every size from 2^-low to 2^high, of both signs when asked.
Values numbers(int low, int high, bool both_signs, std::size_t count = 20000) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> exponent(low, high);
    Values found(count);
    for (double& value : found) {
        value = std::exp2(exponent(random));
        if (both_signs && (random() & 1) != 0) value = -value;
    }
    return found;
}

double relative_error(double got, long double want) {
    if (want == 0) return std::fabs(got);
    return static_cast<double>(std::fabs((static_cast<long double>(got) - want) / want));
}

TEST(VectorMath, the_logarithm_keeps_fifteen_digits_over_the_whole_range) {
    Values x = numbers(-1020, 1020, false);
    const Values near_one = numbers(-50, -1, true);
    for (double value : near_one) x.push_back(1 + value);
    x.push_back(1);
    x.push_back(std::numeric_limits<double>::min());
    x.push_back(std::ldexp(0.999, 1023));
    Values y(x.size());
    for (VectorLevel level : levels()) {
        log_loop_at(level)(x.data(), y.data(), x.size());
        for (std::size_t i = 0; i < x.size(); ++i)
            ASSERT_LT(relative_error(y[i], std::log(static_cast<long double>(x[i]))), 1e-15) << x[i];
    }
}

TEST(VectorMath, a_quotient_near_one_keeps_its_relative_accuracy) {
    const Values s = numbers(-3, 3, false);
    Values e = numbers(-60, -4, false);
    Values y(s.size());
    for (VectorLevel level : levels()) {
        log_quotient_loop_at(level)(s.data(), e.data(), y.data(), s.size());
        for (std::size_t i = 0; i < s.size(); ++i) {
            const long double want = 2 * std::atanh(static_cast<long double>(e[i]) / s[i]);
            ASSERT_LT(relative_error(y[i], want), 1e-15) << s[i] << ' ' << e[i];
        }
    }
}

TEST(VectorMath, the_arc_tangent_keeps_fifteen_digits_in_all_quadrants) {
    const Values y = numbers(-300, 300, true);
    Values x = numbers(-300, 300, true);
    const Values close = numbers(-4, 4, true);
    for (std::size_t i = 0; i < x.size(); i += 2) x[i] = y[i] * close[i];
    Values angle(x.size());
    for (VectorLevel level : levels()) {
        atan2_loop_at(level)(y.data(), x.data(), angle.data(), x.size());
        for (std::size_t i = 0; i < x.size(); ++i) {
            const long double want =
                std::atan2(static_cast<long double>(y[i]), static_cast<long double>(x[i]));
            if (std::fabs(want) < 1e-290L) continue;
            ASSERT_LT(relative_error(angle[i], want), 1e-15) << y[i] << ' ' << x[i];
        }
        atan_loop_at(level)(y.data(), angle.data(), y.size());
        for (std::size_t i = 0; i < y.size(); ++i)
            ASSERT_LT(relative_error(angle[i], std::atan(static_cast<long double>(y[i]))), 1e-15) << y[i];
    }
}

TEST(VectorMath, angles_on_the_axes_are_exact) {
    constexpr double pi = 3.14159265358979323846;
    const Values y{0, 0, 1, -1, -0.0, 1, -2, 0};
    const Values x{0, 2, 0, 0, 3, 1, 2, -1};
    const Values want{0, 0, pi / 2, -pi / 2, -0.0, pi / 4, -pi / 4, pi};
    Values angle(y.size());
    for (VectorLevel level : levels()) {
        atan2_loop_at(level)(y.data(), x.data(), angle.data(), y.size());
        for (std::size_t i = 0; i < y.size(); ++i) {
            EXPECT_DOUBLE_EQ(angle[i], want[i]) << i;
            EXPECT_EQ(std::signbit(angle[i]), std::signbit(want[i])) << i;
        }
    }
}

TEST(VectorMath, not_a_number_stays_not_a_number) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Values first{nan, 1, nan, nan, -1, nan, 0, nan};
    const Values second{1, nan, nan, -1, nan, 0, nan, 5};
    Values result(first.size());
    for (VectorLevel level : levels()) {
        atan2_loop_at(level)(first.data(), second.data(), result.data(), first.size());
        for (double value : result) EXPECT_TRUE(std::isnan(value));
        log_quotient_loop_at(level)(first.data(), second.data(), result.data(), first.size());
        for (double value : result) EXPECT_TRUE(std::isnan(value));
        log_loop_at(level)(first.data(), result.data(), first.size());
        EXPECT_TRUE(std::isnan(result[0]));
        EXPECT_FALSE(std::isnan(result[1]));
    }
}

TEST(VectorMath, every_level_gives_the_same_bits) {
    const Values x = numbers(-40, 40, false);
    const Values y = numbers(-41, 40, true);
    const std::size_t n = x.size();
    Values log_want(n), atan_want(n), log_got(n), atan_got(n), lanes_got(n), roots(n);
    log_loop_at(VectorLevel::baseline)(x.data(), log_want.data(), n);
    atan2_loop_at(VectorLevel::baseline)(y.data(), x.data(), atan_want.data(), n);
    for (VectorLevel level : levels()) {
        log_loop_at(level)(x.data(), log_got.data(), n);
        atan2_loop_at(level)(y.data(), x.data(), atan_got.data(), n);
        atan2_by_lanes_at(level)(y.data(), x.data(), lanes_got.data(), n);
        sqrt_by_lanes_at(level)(x.data(), roots.data(), n);
        EXPECT_EQ(log_got, log_want) << vector_level_name(level);
        EXPECT_EQ(atan_got, atan_want) << vector_level_name(level);
        EXPECT_EQ(lanes_got, atan_want) << vector_level_name(level);
        for (std::size_t i = 0; i < n; ++i) ASSERT_EQ(roots[i], std::sqrt(x[i]));
    }
}

TEST(VectorMath, a_fused_product_is_rounded_once_at_every_level) {
    Values a = numbers(-40, 40, true), b = a, c = a;
    std::reverse(b.begin(), b.end());
    for (std::size_t i = 0; i < a.size(); i += 2) c[i] = -a[i] * b[i];  // what is left is the rounding
    a[0] = 1 + 0x1p-30;
    b[0] = 1 - 0x1p-30;
    c[0] = -1;
    Values got(a.size()), by_lanes(a.size());
    for (VectorLevel level : levels()) {
        fma_loop_at(level)(a.data(), b.data(), c.data(), got.data(), a.size());
        fma_by_lanes_at(level)(a.data(), b.data(), c.data(), by_lanes.data(), a.size());
        EXPECT_EQ(got[0], -0x1p-60);
        EXPECT_EQ(by_lanes, got) << vector_level_name(level);
        for (std::size_t i = 0; i < a.size(); ++i) ASSERT_EQ(got[i], std::fma(a[i], b[i], c[i])) << i;
    }
}

TEST(VectorMath, any_lane_that_is_less_is_found_and_none_that_is_no_number) {
    for (VectorLevel level : levels()) {
        const auto lanes = static_cast<std::size_t>(lanes_at_once_at(level)());
        Values a(lanes, 2), b(lanes, 2);
        EXPECT_FALSE(any_less_of_lanes_at(level)(a.data(), b.data()));
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            Values some = a;
            some[lane] = 1.5;
            EXPECT_TRUE(any_less_of_lanes_at(level)(some.data(), b.data())) << lane;
            EXPECT_FALSE(any_less_of_lanes_at(level)(b.data(), some.data())) << lane;
            some[lane] = std::nan("");
            EXPECT_FALSE(any_less_of_lanes_at(level)(some.data(), b.data())) << lane;
            EXPECT_FALSE(any_less_of_lanes_at(level)(b.data(), some.data())) << lane;
        }
    }
}

TEST(VectorLevels, wider_levels_work_on_more_lanes) {
    int lanes = 2;
    for (VectorLevel level : levels()) {
        EXPECT_EQ(lanes_at_once_at(level)(), lanes);
        lanes *= 2;
    }
}

}  // namespace
}  // namespace anomalis::vector
