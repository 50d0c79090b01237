#include "intake/spline.h"

#include <algorithm>
#include <cstddef>

#include "core/failure.h"

namespace anomalis::intake {

namespace {

double quotient(double numerator, double denominator) {
    if (denominator == 0) throw Fault(FaultKind::division_by_zero);
    return numerator / denominator;
}

/// One end of the spline: the step and the slope of the piece there and of its neighbour.
struct EndPieces {
    double step, next_step;
    double slope, next_slope;
};

/// The derivative at an end of the parabola through three points.
double parabola_derivative(const EndPieces& e) {
    return e.slope + quotient(e.step * (e.slope - e.next_slope), e.step + e.next_step);
}

/// The right side of the not-a-knot condition: next_step s(end) + (step + next_step) s(neighbour) = this.
double not_a_knot_side(const EndPieces& e) {
    const double both = e.step + e.next_step;
    return quotient((e.step + 2 * both) * e.next_step * e.slope + e.step * e.step * e.next_slope, both);
}

}  // namespace

CubicSpline::CubicSpline(std::span<const double> x, std::span<const double> y)
    : x_(x), y_(y), derivatives_(x.size()) {
    const std::size_t n = x_.size();
    if (n < 2) throw Fault(FaultKind::invalid_call);
    for (std::size_t i = 1; i < n; ++i) {
        if (step(i) == 0) throw Fault(FaultKind::division_by_zero);
    }
    if (n == 2) {
        derivatives_[0] = derivatives_[1] = slope(1);
    } else if (n == 3) {
        derivatives_[0] = parabola_derivative({step(1), step(2), slope(1), slope(2)});
        derivatives_[2] = parabola_derivative({step(2), step(1), slope(2), slope(1)});
        derivatives_[1] = quotient(step(2) * slope(1) + step(1) * slope(2), step(1) + step(2));
    } else {
        solve_for_derivatives();
    }
}

/// Gauss elimination of the tridiagonal system for the derivatives at the points. An inner row asks for a
/// continuous second derivative: h(i+1) s(i-1) + 2 (h(i) + h(i+1)) s(i) + h(i) s(i+1) = side.
void CubicSpline::solve_for_derivatives() {
    const std::size_t last = x_.size() - 1;
    std::vector<double> diagonal(x_.size());
    std::vector<double>& side = derivatives_;

    diagonal[0] = step(2);
    side[0] = not_a_knot_side({step(1), step(2), slope(1), slope(2)});
    double above = step(1) + step(2);
    for (std::size_t i = 1; i < last; ++i) {
        const double factor = quotient(-step(i + 1), diagonal[i - 1]);
        side[i] = factor * side[i - 1] + 3 * (step(i) * slope(i + 1) + step(i + 1) * slope(i));
        diagonal[i] = factor * above + 2 * (step(i) + step(i + 1));
        above = step(i);
    }
    const double below = step(last) + step(last - 1);
    const double factor = quotient(-below, diagonal[last - 1]);
    diagonal[last] = factor * above + step(last - 1);
    side[last] = quotient(
        factor * side[last - 1] + not_a_knot_side({step(last), step(last - 1), slope(last), slope(last - 1)}),
        diagonal[last]);
    for (std::size_t i = last - 1; i > 0; --i)
        side[i] = quotient(side[i] - step(i) * side[i + 1], diagonal[i]);
    side[0] = quotient(side[0] - (step(1) + step(2)) * side[1], diagonal[0]);
}

double CubicSpline::operator()(double at) const {
    const std::size_t last = x_.size() - 1;
    const auto inner_end = x_.begin() + static_cast<std::ptrdiff_t>(last);
    const auto found = std::upper_bound(x_.begin() + 1, inner_end, at);
    const auto right = static_cast<std::size_t>(found - x_.begin());
    const std::size_t left = right - 1;
    const double h = step(right);
    const double chord = slope(right);
    const double start = derivatives_[left];
    const double end = derivatives_[right];
    const double quadratic = (3 * chord - 2 * start - end) / h;
    const double cubic = (start + end - 2 * chord) / (h * h);
    const double t = at - x_[left];
    return y_[left] + t * (start + t * (quadratic + t * cubic));
}

}  // namespace anomalis::intake
