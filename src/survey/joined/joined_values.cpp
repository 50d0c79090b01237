#include "survey/joined/joined_values.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "inversion/student.h"

namespace anomalis::survey {

namespace {

std::vector<Measured> known(std::span<const Measured> values, MeanOf mean) {
    std::vector<Measured> left;
    for (const Measured& m : values) {
        if (!std::isfinite(m.value)) continue;
        if (mean == MeanOf::values) left.push_back(m);
        if (mean == MeanOf::logarithms && m.value > 0) left.push_back({std::log(m.value), m.error / m.value});
    }
    return left;
}

/// True when at least one has an error; the others then take the largest.
bool complete_errors(std::vector<Measured>& values) {
    double largest = 0;
    for (const Measured& m : values)
        if (std::isfinite(m.error)) largest = std::max(largest, m.error);
    for (Measured& m : values)
        if (!std::isfinite(m.error)) m.error = largest > 0 ? largest : 1;
    return largest > 0;
}

}  // namespace

JoinedValue joined_value(std::span<const Measured> values, MeanOf mean) {
    std::vector<Measured> left = known(values, mean);
    JoinedValue joined;
    if (left.empty()) return joined;
    const bool has_errors = complete_errors(left);
    double weights = 0, sum = 0;
    for (const Measured& m : left) {
        const double weight = 1 / (m.error * m.error);
        weights += weight, sum += weight * m.value;
    }
    const double value = sum / weights;
    double chi_square = 0;
    for (const Measured& m : left) chi_square += (m.value - value) * (m.value - value) / (m.error * m.error);
    const auto freedom = static_cast<double>(left.size()) - 1;
    const double ratio = freedom > 0 ? std::sqrt(chi_square / freedom) : 1;
    double error = unknown, half = unknown;
    if (has_errors) {
        error = std::max(1.0, ratio) / std::sqrt(weights);
        half = normal_90 * error;
    } else if (freedom > 0) {
        error = ratio / std::sqrt(weights);
        half = inversion::student_quantile(freedom) * error;
    }
    if (mean == MeanOf::values) return {value, error, value - half, value + half};
    const double middle = std::exp(value);
    // Beyond three powers of ten to each side the data leave it open.
    const double most_half = 3 * std::numbers::ln10;
    if (half > most_half) return {middle, unknown, unknown, unknown};
    return {middle, middle * error, middle * std::exp(-half), middle * std::exp(half)};
}

double EndGap::to_next() const {
    const double weight = next + missed * (behind - next);
    return weight > 0 ? next / weight : 1;
}

double EndGap::mean() const {
    const double near = to_next();
    return near * next / 2 + (1 - near) * (next + behind) / 2;
}

double EndGap::variance() const {
    const double near = to_next();
    const double squares =
        near * next * next / 3 + (1 - near) * (next * next + next * behind + behind * behind) / 3;
    return squares - mean() * mean();
}

namespace {

/// Probability that two lengths, equally likely from 0 to `p` and to `q`, stay together below `t`.
double sum_below(double t, double p, double q) {
    const double less = std::min(p, q), more = std::max(p, q);
    if (t >= p + q) return 1;
    if (t <= 0) return 0;
    if (t < less) return t * t / (2 * p * q);
    if (t <= more) return (t - less / 2) / more;
    return 1 - (p + q - t) * (p + q - t) / (2 * p * q);
}

double gaps_below(double t, const EndGap& a, const EndGap& b) {
    const double far_a = a.behind - a.next, far_b = b.behind - b.next;
    const double near_a = a.to_next(), near_b = b.to_next();
    return near_a * near_b * sum_below(t, a.next, b.next) +
           (1 - near_a) * near_b * sum_below(t - a.next, far_a, b.next) +
           near_a * (1 - near_b) * sum_below(t - b.next, a.next, far_b) +
           (1 - near_a) * (1 - near_b) * sum_below(t - a.next - b.next, far_a, far_b);
}

}  // namespace

double gaps_quantile(const EndGap& first, const EndGap& second, double probability) {
    double low = 0, high = first.behind + second.behind;
    constexpr int halvings = 60;
    for (int i = 0; i < halvings; ++i) {
        const double middle = (low + high) / 2;
        (gaps_below(middle, first, second) < probability ? low : high) = middle;
    }
    return high;
}

}  // namespace anomalis::survey
