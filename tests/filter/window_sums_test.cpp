#include "filter/window_sums.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "filter/plain_filter.h"
#include "filter/window_kernel.h"

namespace anomalis::filter {

namespace {

std::vector<double> rough(std::size_t count, float level = 0) {
    const std::vector<float> row = rough_row(static_cast<int>(count), level);
    return {row.begin(), row.end()};
}

std::vector<double> window_sums(std::span<const PowerTerm> terms, std::size_t window,
                                const std::vector<double>& in) {
    std::vector<double> out(in.size() + 1 - window);
    add_window_sums(terms, window, in, out);
    return out;
}

double by_hand(std::span<const PowerTerm> terms, std::size_t window, const double* in) {
    long double sum = 0;
    for (std::size_t m = 0; m < window; ++m) {
        long double tap = 0;
        for (const PowerTerm& term : terms) {
            const long double size = std::pow(std::abs(std::complex<long double>(term.base)), m);
            const long double turn = std::arg(std::complex<long double>(term.base)) * m;
            tap += std::real(std::complex<long double>(term.weight) * std::polar(size, turn));
        }
        sum += tap * in[m];
    }
    return static_cast<double>(sum);
}

const std::vector<std::vector<PowerTerm>> kernels = {
    {{.weight = 1}},
    {{.weight = 0.5}, {.weight = {0.3, 0.2}, .base = std::polar(1.0, 0.1)}},
    {{.weight = 2, .base = 0.9}, {.weight = -1, .base = 0.99}, {.weight = 1, .base = 1e-8}},
    {{.weight = 1, .base = -0.97}},
    {{}, {}, {}, {}, {.weight = 3, .base = std::polar(1.0, -2.0)}, {.weight = 1, .base = -1}}};

}  // namespace

TEST(WindowSums, are_the_sums_tap_by_tap) {
    const std::vector<double> in = rough(300, 1000);
    for (const auto& kernel : kernels)
        for (const std::size_t window : {1, 2, 3, 10, 149, 150, 299, 300}) {
            const std::vector<double> out = window_sums(kernel, window, in);
            for (std::size_t k = 0; k < out.size(); ++k)
                ASSERT_NEAR(out[k], by_hand(kernel, window, &in[k]), 1e-12 * 1000 * 300)
                    << window << " " << k;
        }
}

TEST(WindowSums, are_added_to_what_is_there) {
    const std::vector<double> in = {1, 2, 3};
    std::vector<double> out = {10, 20};
    add_window_sums({{PowerTerm{}}}, 2, in, out);
    EXPECT_EQ(out, (std::vector<double>{13, 25}));
}

TEST(WindowSums, without_terms_or_windows_change_nothing) {
    std::vector<double> out = {10, 20};
    add_window_sums({}, 2, std::vector<double>{1, 2, 3}, out);
    add_window_sums({{PowerTerm{}}}, 0, {}, out);
    EXPECT_EQ(out, (std::vector<double>{10, 20}));
}

TEST(WindowSums, do_not_drift_along_a_long_row) {
    const std::vector<double> out =
        window_sums({{PowerTerm{}}}, 1001, std::vector<double>(300000, 0.1 + 58000));
    for (const double value : out) ASSERT_NEAR(value, 1001 * (0.1 + 58000), 1e-5);
}

TEST(WindowSums, hold_nothing_of_what_left_the_window) {
    const std::vector<double> in = rough(500);
    for (const auto& kernel : kernels)
        for (const std::size_t window : {7, 100}) {
            const std::vector<double> calm = window_sums(kernel, window, in);
            for (const double spike : {1e30, std::numeric_limits<double>::infinity()}) {
                std::vector<double> wild = in;
                wild[250] = spike;
                const std::vector<double> out = window_sums(kernel, window, wild);
                for (std::size_t k = 0; k < out.size(); ++k) {
                    if (k <= 250 && k + window > 250) continue;
                    ASSERT_EQ(out[k], calm[k]) << window << " " << k;
                }
            }
        }
}

TEST(WindowSums, give_the_same_bits_at_every_vector_level) {
    const std::vector<double> in = rough(400, 58000);
    TermGroup group{};
    group.window = 37;
    for (std::size_t i = 0; i < side_by_side; ++i) {
        const auto n = static_cast<double>(i + 1);
        const std::complex<double> base = std::polar(1 - 0.01 * n, 0.3 * n);
        group.base.re[i] = base.real();
        group.base.im[i] = base.imag();
        group.inverse.re[i] = (1.0 / base).real();
        group.inverse.im[i] = (1.0 / base).imag();
        group.weight.re[i] = group.last.im[i] = n;
        group.weight.im[i] = group.last.re[i] = 1 / n;
    }
    const auto at = [&](vector::VectorLevel level, bool real) {
        std::vector<double> out(in.size() + 1 - group.window);
        (real ? add_real_windows_at(level) : add_complex_windows_at(level))(group, in.data(), out.data(),
                                                                            out.size());
        return out;
    };
    for (const auto level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512}) {
        if (level > vector::widest_vector_level()) continue;
        for (const bool real : {false, true})
            EXPECT_EQ(at(level, real), at(vector::VectorLevel::baseline, real))
                << vector::vector_level_name(level);
    }
}

}  // namespace anomalis::filter
