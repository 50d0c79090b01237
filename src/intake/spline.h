#pragma once

#include <span>
#include <vector>

namespace anomalis::intake {

/// The cubic spline through given points whose third derivative is continuous also at the second and the last
/// but one of them ("not a knot"; de Boor 1978, A Practical Guide to Splines, chapter IV). Through two points
/// it is a line, through three a parabola; it goes on beyond both ends with its first and last piece.
class CubicSpline {
  public:
    /// At least two points; both spans must outlive the spline. The abscissae increase, but for the last one,
    /// which may fall back. Raises Fault division_by_zero when two neighbours are equal.
    CubicSpline(std::span<const double> x, std::span<const double> y);

    double operator()(double at) const;

  private:
    double step(std::size_t i) const { return x_[i] - x_[i - 1]; }
    double slope(std::size_t i) const { return (y_[i] - y_[i - 1]) / step(i); }
    void solve_for_derivatives();

    std::span<const double> x_;
    std::span<const double> y_;
    std::vector<double> derivatives_;
};

}  // namespace anomalis::intake
