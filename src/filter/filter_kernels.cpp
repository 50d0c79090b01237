#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

#include "core/angles.h"
#include "core/failure.h"
#include "filter/filters.h"
#include "filter/wide_kernels.h"

namespace anomalis::filter {

namespace {

/// Mean of (sin x / x) squared over 0 to pi: the sine integral of 2 pi, divided by pi.
constexpr double mean_sinc2 = 0.451411666790140;

/// The taps that are stored, and how far the kernel really goes.
struct Taps {
    std::span<float> c;  ///< 0 to `stored`
    double half_width;
    int stored;
    bool whole() const { return stored == half_width; }
    double beyond() const { return half_width - stored; }
};

double sum_of_taps(const Taps& taps) {
    double sum = 0;
    for (const float tap : taps.c.subspan(1)) sum += static_cast<double>(tap);
    return sum;
}

double fill_triangular(const Taps& taps) {
    const double base = taps.half_width + 1;
    taps.c[0] = static_cast<float>(1 / base);
    const double centre = static_cast<double>(taps.c[0]);
    for (int j = 1; j <= taps.stored; ++j)
        taps.c[static_cast<std::size_t>(j)] = static_cast<float>(centre * (base - j) / base);
    return centre / base * taps.beyond() * (taps.beyond() + 1) / 2;
}

double fill_boxcar(const Taps& taps) {
    const auto tap = static_cast<float>(1 / (2 * taps.half_width + 1));
    std::fill(taps.c.begin(), taps.c.end(), tap);
    return static_cast<double>(tap) * taps.beyond();
}

double raw_tap(int filter_code, double x) {
    if (filter_code == filter_hanning) return (1 + std::cos(x)) / 2;
    if (filter_code == filter_hamming) return 0.54 + 0.46 * std::cos(x);
    return std::sin(x) / x * (std::sin(x) / x);
}

/// Sum of all raw taps of one side in closed form: the cosines cancel in pairs; for Sinc^2 the trapezoid
/// rule is exact to the third power of 1 / (half-width + 1).
double raw_sum(int filter_code, double half_width) {
    if (filter_code == filter_hanning) return half_width / 2;
    if (filter_code == filter_hamming) return 0.54 * half_width;
    return (half_width + 1) * mean_sinc2 - 0.5;
}

/// The division leaves the centre tap at 1 on purpose, so the gain is 2 - 1/S:
/// test `FilterKernels, the_windowed_kernels_gain_two_less_one_over_their_sum`.
double fill_windowed(int filter_code, const Taps& taps) {
    taps.c[0] = 1;
    for (int j = 1; j <= taps.stored; ++j)
        taps.c[static_cast<std::size_t>(j)] =
            static_cast<float>(raw_tap(filter_code, pi * j / (taps.half_width + 1)));
    const double stored_sum = sum_of_taps(taps);
    const double side = taps.whole() ? stored_sum : raw_sum(filter_code, taps.half_width);
    const double total = 1 + 2 * side;
    for (float& tap : taps.c.subspan(1)) tap = static_cast<float>(static_cast<double>(tap) / total);
    return (side - stored_sum) / total;
}

double fill_vertical_gradient(const Taps& taps) {
    taps.c[0] = static_cast<float>(pi / 2);
    for (int j = 1; j <= taps.stored; ++j)
        taps.c[static_cast<std::size_t>(j)] =
            j % 2 == 1 ? static_cast<float>(-2 / pi / (static_cast<double>(j) * j)) : 0.0F;
    const double beyond = taps.whole() ? 0.0 : vertical_gradient_taps_beyond(taps.stored, taps.half_width);
    const double total = static_cast<double>(taps.c[0]) + 2 * (sum_of_taps(taps) + beyond);
    taps.c[0] = static_cast<float>(static_cast<double>(taps.c[0]) - total);
    return beyond;
}

/// The signs alternate, so what lies beyond the stored taps is below their rounding.
double fill_horizontal_derivative(const Taps& taps) {
    taps.c[0] = 0;
    double sign = 1;
    for (int j = 1; j <= taps.stored; ++j) {
        float& tap = taps.c[static_cast<std::size_t>(j)];
        tap = 0;
        if (j % 2 == 0) continue;
        tap = static_cast<float>(sign * (2 / pi) / (static_cast<double>(j) * j));
        sign = -sign;
    }
    return 0;
}

double fill_kernel(int filter_code, const Taps& taps) {
    switch (filter_code) {
        case filter_triangular:
            return fill_triangular(taps);
        case filter_boxcar:
            return fill_boxcar(taps);
        case filter_vertical_gradient:
            return fill_vertical_gradient(taps);
        case filter_horizontal_derivative:
            return fill_horizontal_derivative(taps);
        default:
            return fill_windowed(filter_code, taps);
    }
}

}  // namespace

bool has_kernel(int filter_code) {
    return filter_code == filter_vertical_gradient || filter_code == filter_horizontal_derivative ||
           (filter_code >= filter_triangular && filter_code <= filter_boxcar);
}

bool is_added_tap_by_tap(int filter_code, int half_width, int stations) {
    const int always = filter_code < filter_smoothing ? 2048 : 256;  // about where windows become cheaper
    constexpr std::int64_t work = std::int64_t{1} << 24;             // additions, some milliseconds
    return half_width <= always ||
           std::int64_t{std::min(half_width, longest_stored_kernel)} * stations <= work;
}

void define_filter_coefficients(int filter_code, int half_width, int longest, FilterScratch& scratch,
                                Faults& faults) {
    report_failure(faults, "An error occurred while defining the filter coefficients: ", [&] {
        if (half_width <= 0 || !has_kernel(filter_code)) return;
        const int stored = std::min(half_width, longest);
        scratch.coefficients.resize(static_cast<std::size_t>(stored) + 1);
        scratch.tail_sum =
            fill_kernel(filter_code, {scratch.coefficients, static_cast<double>(half_width), stored});
    });
}

}  // namespace anomalis::filter
