#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

#include "filter/filters.h"
#include "support/told.h"

namespace anomalis::filter {

namespace {

constexpr double pi_of_kernels = 3.14159265358979;

std::vector<float> kernel(int code, int half_width, int longest = 1000000) {
    Faults faults;
    FilterScratch scratch;
    define_filter_coefficients(code, half_width, longest, scratch, faults);
    EXPECT_TRUE(faults.empty());
    return scratch.coefficients;
}

double gain(const std::vector<float>& c) {
    double sum = 0;
    for (std::size_t j = 1; j < c.size(); ++j) sum += static_cast<double>(c[j]);
    return static_cast<double>(c[0]) + 2 * sum;
}

/// Sum of the raw taps of a windowed kernel, the centre being 1.
double raw_sum(int code, int half_width) {
    double sum = 0;
    for (int j = 1; j <= half_width; ++j) {
        const double x = pi_of_kernels * j / (half_width + 1);
        if (code == filter_sinc2) sum += std::pow(std::sin(x) / x, 2);
        if (code == filter_hanning) sum += (1 + std::cos(x)) / 2;
        if (code == filter_hamming) sum += 0.54 + 0.46 * std::cos(x);
    }
    return 1 + 2 * sum;
}

/// Taps stored up to `longest` and the rest in closed form give the same as all taps stored.
void expect_same_sum_when_cut(int code, int half_width, int longest) {
    Faults faults;
    FilterScratch whole, cut;
    define_filter_coefficients(code, half_width, half_width, whole, faults);
    define_filter_coefficients(code, half_width, longest, cut, faults);
    ASSERT_EQ(cut.coefficients.size(), static_cast<std::size_t>(longest) + 1);
    EXPECT_EQ(whole.tail_sum, 0);
    double rest = 0;
    for (std::size_t j = cut.coefficients.size(); j < whole.coefficients.size(); ++j)
        rest += static_cast<double>(whole.coefficients[j]);
    EXPECT_NEAR(cut.tail_sum, rest, 1e-6 * std::abs(rest) + 1e-9) << "code " << code;
    for (std::size_t j = 0; j < cut.coefficients.size(); ++j)
        EXPECT_NEAR(cut.coefficients[j], whole.coefficients[j],
                    2e-7F * std::abs(whole.coefficients[j]) + 1e-12F)
            << "code " << code << " tap " << j;
}

}  // namespace

TEST(FilterKernels, a_triangle_of_half_width_1_has_a_half_and_quarters) {
    EXPECT_EQ(kernel(filter_triangular, 1), (std::vector<float>{0.5F, 0.25F}));
}

TEST(FilterKernels, triangle_and_boxcar_have_a_gain_of_1) {
    for (const int half_width : {1, 2, 7, 500}) {
        EXPECT_NEAR(gain(kernel(filter_triangular, half_width)), 1, 1e-6);
        EXPECT_NEAR(gain(kernel(filter_boxcar, half_width)), 1, 1e-6);
    }
}

TEST(FilterKernels, a_boxcar_is_flat) {
    EXPECT_EQ(kernel(filter_boxcar, 2), std::vector<float>(3, 0.2F));
}

TEST(FilterKernels, the_windowed_kernels_gain_two_less_one_over_their_sum) {
    for (const int code : {filter_sinc2, filter_hanning, filter_hamming}) {
        for (const int half_width : {1, 3, 40}) {
            const std::vector<float> c = kernel(code, half_width);
            EXPECT_EQ(c[0], 1.0F);
            EXPECT_NEAR(gain(c), 2 - 1 / raw_sum(code, half_width), 1e-6) << code << " " << half_width;
        }
    }
}

TEST(FilterKernels, windowed_taps_follow_their_windows) {
    const double sum = raw_sum(filter_hanning, 3);
    EXPECT_FLOAT_EQ(kernel(filter_hanning, 3)[2], static_cast<float>(0.5 / sum));
    const double hamming = raw_sum(filter_hamming, 1);
    EXPECT_FLOAT_EQ(kernel(filter_hamming, 1)[1], static_cast<float>(0.54 / hamming));
    const double x = pi_of_kernels / 2;
    EXPECT_FLOAT_EQ(kernel(filter_sinc2, 1)[1],
                    static_cast<float>(std::pow(std::sin(x) / x, 2) / raw_sum(filter_sinc2, 1)));
}

TEST(FilterKernels, gradient_taps_sum_to_zero_and_live_on_odd_distances) {
    const std::vector<float> c = kernel(filter_vertical_gradient, 5);
    EXPECT_FLOAT_EQ(c[1], static_cast<float>(-2 / pi_of_kernels));
    EXPECT_EQ(c[2], 0.0F);
    EXPECT_FLOAT_EQ(c[3], static_cast<float>(-2 / pi_of_kernels / 9));
    EXPECT_EQ(c[4], 0.0F);
    EXPECT_NEAR(gain(c), 0, 1e-7);
}

TEST(FilterKernels, horizontal_derivative_taps_alternate) {
    const std::vector<float> c = kernel(filter_horizontal_derivative, 5);
    EXPECT_EQ(c[0], 0.0F);
    EXPECT_FLOAT_EQ(c[1], static_cast<float>(2 / pi_of_kernels));
    EXPECT_EQ(c[2], 0.0F);
    EXPECT_FLOAT_EQ(c[3], static_cast<float>(-2 / pi_of_kernels / 9));
    EXPECT_FLOAT_EQ(c[5], static_cast<float>(2 / pi_of_kernels / 25));
}

TEST(FilterKernels, codes_without_a_kernel_and_half_widths_of_0_leave_the_taps) {
    Faults faults;
    FilterScratch scratch;
    define_filter_coefficients(filter_boxcar, 2, 100, scratch, faults);
    const std::vector<float> before = scratch.coefficients;
    for (const int code : {-1, 0, 1, 4, 99, 105, 1000}) {
        define_filter_coefficients(code, 7, 100, scratch, faults);
        EXPECT_EQ(scratch.coefficients, before) << code;
    }
    for (const int half_width : {0, -1, -2147483647}) {
        define_filter_coefficients(filter_triangular, half_width, 100, scratch, faults);
        EXPECT_EQ(scratch.coefficients, before) << half_width;
    }
    EXPECT_TRUE(faults.empty());
}

TEST(FilterKernels, what_is_not_stored_of_a_wide_kernel_is_known) {
    for (const int code : {filter_triangular, filter_sinc2, filter_hanning, filter_hamming, filter_boxcar,
                           filter_vertical_gradient}) {
        expect_same_sum_when_cut(code, 3000, 1000);
        expect_same_sum_when_cut(code, 3001, 1000);
        expect_same_sum_when_cut(code, 3000, 1001);
    }
}

TEST(FilterKernels, the_widest_kernels_stay_in_bounded_memory) {
    const int longest = longest_stored_kernel;
    for (const int code : {filter_triangular, filter_sinc2, filter_hanning, filter_hamming, filter_boxcar,
                           filter_vertical_gradient, filter_horizontal_derivative}) {
        Faults faults;
        FilterScratch scratch;
        define_filter_coefficients(code, 2147483647, longest, scratch, faults);
        EXPECT_EQ(scratch.coefficients.size(), static_cast<std::size_t>(longest) + 1);
        EXPECT_TRUE(std::isfinite(scratch.tail_sum));
        EXPECT_TRUE(faults.empty());
    }
}

TEST(FilterKernels, usual_widths_are_added_tap_by_tap) {
    EXPECT_TRUE(is_added_tap_by_tap(filter_hanning, 0, 2000000));
    EXPECT_TRUE(is_added_tap_by_tap(filter_hanning, 256, 2000000));
    EXPECT_FALSE(is_added_tap_by_tap(filter_hanning, 257, 2000000));
    EXPECT_TRUE(is_added_tap_by_tap(filter_vertical_gradient, 2048, 2000000));
    EXPECT_FALSE(is_added_tap_by_tap(filter_vertical_gradient, 2049, 2000000));
    EXPECT_TRUE(is_added_tap_by_tap(filter_boxcar, 2047, 8193));
    EXPECT_FALSE(is_added_tap_by_tap(filter_boxcar, 2048, 8193));
    EXPECT_TRUE(is_added_tap_by_tap(filter_boxcar, 2147483647, 256));
    EXPECT_FALSE(is_added_tap_by_tap(filter_boxcar, 2147483647, 257));
}

}  // namespace anomalis::filter
