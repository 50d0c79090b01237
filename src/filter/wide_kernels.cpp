#include "filter/wide_kernels.h"

#include <cmath>

#include "core/angles.h"
#include "filter/filters.h"

namespace anomalis::filter {

namespace {

/// A kernel as the sum of weight * cos(angle * distance).
struct Cosine {
    double weight;
    double angle;  ///< radians from tap to tap
};

struct Cosines {
    std::array<Cosine, 10> list{};
    std::size_t count = 0;
    void add(double weight, double angle) { list.at(count++) = {weight, angle}; }
    std::span<const Cosine> span() const { return std::span(list).first(count); }
};

/// Positive nodes of Legendre's polynomial of degree 10 and their weights (Abramowitz and Stegun 1964, table
/// 25.4).
constexpr double legendre[5][2] = {{0.1488743389816312, 0.2955242247147529},
                                   {0.4333953941292472, 0.2692667193099964},
                                   {0.6794095682990244, 0.2190863625159820},
                                   {0.8650633666889845, 0.1494513491505806},
                                   {0.9739065285171717, 0.0666713443086881}};

/// The raw kernel of code 101 to 104 with a centre tap of 1; x is the angle pi / (half_width + 1).
Cosines raw_cosines(int filter_code, double x) {
    Cosines raw;
    if (filter_code == filter_boxcar) {
        raw.add(1, 0);
    } else if (filter_code == filter_hanning) {
        raw.add(0.5, 0);
        raw.add(0.5, x);
    } else if (filter_code == filter_hamming) {
        raw.add(0.54, 0);
        raw.add(0.46, x);
    } else {
        for (const auto& [node, weight] : legendre) {
            raw.add(weight * (1 - node) / 2, x * (1 + node));
            raw.add(weight * (1 + node) / 2, x * (1 - node));
        }
    }
    return raw;
}

/// Sum of the raw taps at distances 1 to `last`, each cosine by Dirichlet's kernel.
double sum_of_side(const Cosines& raw, double last) {
    double sum = 0;
    for (const auto& [weight, angle] : raw.span())
        sum += weight * (angle == 0 ? last : (std::sin((last + 0.5) * angle) / std::sin(angle / 2) - 1) / 2);
    return sum;
}

SmoothingKernel triangular_kernel(double half_width, double reach) {
    const double base = half_width + 1;
    const double scale = static_cast<double>(static_cast<float>(1 / base)) / base;
    const double beyond = half_width - reach;
    SmoothingKernel kernel;
    kernel.triangle = scale;
    if (beyond > 0) kernel.terms.add({.weight = scale * beyond});
    kernel.taps_beyond = scale * beyond * (beyond + 1) / 2;
    return kernel;
}

}  // namespace

SmoothingKernel smoothing_kernel(int filter_code, int half_width, int reach) {
    if (filter_code == filter_triangular) return triangular_kernel(half_width, reach);
    const Cosines raw = raw_cosines(filter_code, pi / (static_cast<double>(half_width) + 1));
    const double side = sum_of_side(raw, half_width);
    const double total = 1 + 2 * side;
    const bool boxcar = filter_code == filter_boxcar;
    const double scale = boxcar ? static_cast<double>(static_cast<float>(1 / total)) : 1 / total;
    SmoothingKernel kernel;
    for (const auto& [weight, angle] : raw.span())
        kernel.terms.add(
            {.weight = std::polar(scale * weight, -angle * reach), .base = std::polar(1.0, angle)});
    kernel.centre = boxcar ? 0 : 1 - scale;
    kernel.taps_beyond = scale * (side - sum_of_side(raw, reach));
    return kernel;
}

TermList inverse_square_terms(int first, int last, bool alternating) {
    constexpr double step = 0.4;     // of log t
    constexpr double before = 10.5;  // beyond these the integrand is below 1e-9 of its sum
    constexpr double after = 3.5;
    TermList terms;
    const double end = after - std::log(static_cast<double>(first));
    for (double u = -before - std::log(static_cast<double>(last)); u < end + step; u += step) {
        const double t = std::exp(u);
        terms.add({.weight = step * t * t * std::exp(-first * t),
                   .base = alternating ? -std::exp(-2 * t) : std::exp(-2 * t)});
    }
    return terms;
}

double vertical_gradient_taps_beyond(double inner, double half_width) {
    const double last = std::floor((half_width - 1) / 2) * 2 + 1;
    const double first = std::floor((inner + 1) / 2) * 2 + 1;
    return last < first ? 0.0 : -2 / pi * (1 / (first - 1) - 1 / (last + 1)) / 2;
}

}  // namespace anomalis::filter
