#include "chart/detail/axis_transform.h"

#include <cmath>

namespace anomalis::chart {

namespace {

constexpr double smallest_decimal_cutoff = 1e-6;
// A power that exceeds a value by rounding alone does not exceed it.
constexpr double rounding = 1e-12;

}  // namespace

bool AxisTransform::set_base(double base) {
    if (!(base > 0.0) || base == 1.0 || !std::isfinite(base)) return false;
    base_ = base;
    log_base_ = std::log(base);
    return true;
}

void AxisTransform::set_cutoff(double cutoff) {
    cutoff_ = 1.0;
    if (!(cutoff > 0.0) || !std::isfinite(cutoff)) return;
    const double power = std::round(std::log(cutoff) / log_base_);
    if (base_ == 10.0 && power <= -6.0) {
        cutoff_ = smallest_decimal_cutoff;
        return;
    }
    double snapped = std::pow(base_, power);
    if (snapped > cutoff * (1.0 + rounding)) snapped = std::pow(base_, power - 1.0);
    // A base of 1e200 has no power near 1e-50 that a number could hold.
    if (std::isnormal(snapped)) cutoff_ = snapped;
}

double AxisTransform::forward(double value) const {
    if (value < null_bound || !logarithmic()) return value;
    if (std::abs(value) < cutoff_) return value / cutoff_;
    const double decades = std::log(std::abs(value) / cutoff_) / log_base_;
    return value < 0.0 ? -1.0 - decades : 1.0 + decades;
}

double AxisTransform::inverse(double value) const {
    if (value < null_bound || type == 0) return value;
    if (type != 1) return 0.0;
    if (value < -1.0) return -std::pow(base_, -value - 1.0) * cutoff_;
    if (value > 1.0) return std::pow(base_, value - 1.0) * cutoff_;
    return value * cutoff_;
}

double AxisTransform::cutoff_power() const {
    // The nearest whole number: ln 1000 / ln 10 is a little under 3.
    return std::round(std::log(cutoff_) / log_base_);
}

}  // namespace anomalis::chart
