#include "survey/joined_values.h"

#include <algorithm>
#include <cmath>
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
    return {middle, middle * error, middle * std::exp(-half), middle * std::exp(half)};
}

double sum_quantile(double first, double second, double probability) {
    const double less = std::min(first, second), more = std::max(first, second);
    if (!(more > 0)) return 0;
    const double slope_end = less / (2 * more);  // the density rises, stays, and falls
    if (probability < slope_end) return std::sqrt(2 * less * more * probability);
    if (probability > 1 - slope_end) return less + more - std::sqrt(2 * less * more * (1 - probability));
    return more * probability + less / 2;
}

}  // namespace anomalis::survey
