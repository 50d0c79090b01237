#include "inversion/rows_refit.h"

#include <algorithm>

namespace anomalis::inversion {

namespace {

constexpr int most_steps = 10;

}  // namespace

double RowsRefit::sum_of_squares(std::span<const double> values) {
    std::vector<float> singles(values.size());
    std::ranges::transform(values, singles.begin(), [](double v) { return static_cast<float>(v); });
    Eigen::VectorXd residuals(static_cast<Eigen::Index>(rows_.row_count()));
    rows_.residuals(singles, residuals);
    return residuals.squaredNorm();
}

double RowsRefit::refit(std::size_t parameter, double value, std::span<const double> start) {
    std::vector<FitParameter> parameters(parameters_.begin(), parameters_.end());
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        FitParameter& p = parameters[i];
        // The profile is of the data alone.
        p.hold = 0;
        if (p.lower <= p.upper) p.value = std::clamp(static_cast<float>(start[i]), p.lower, p.upper);
    }
    FitParameter& held = parameters[parameter];
    held.value = held.lower = held.upper = static_cast<float>(value);
    RowsProblem problem(workspace_, rows_, parameters, pacer_);
    return fit_least_squares(problem, parameters, most_steps).sum_of_squares;
}

}  // namespace anomalis::inversion
