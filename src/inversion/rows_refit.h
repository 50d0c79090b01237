#pragma once

#include <vector>

#include "inversion/intervals.h"
#include "inversion/rows_problem.h"

namespace anomalis::inversion {

/// Fits the rows again with one parameter held, for the profile of its likelihood: a few damped steps from
/// where the others are expected, without weak holds. The state of the rows is that of the last call
/// afterwards.
class RowsRefit : public Refit {
  public:
    RowsRefit(const Workspace& workspace, FitRows& rows, std::span<const FitParameter> parameters,
              Pacer& pacer)
        : workspace_(workspace), rows_(rows), parameters_(parameters), pacer_(pacer) {}

    double sum_of_squares(std::span<const double> values) override;
    double refit(std::size_t parameter, double value, std::span<const double> start) override;

  private:
    const Workspace& workspace_;
    FitRows& rows_;
    std::span<const FitParameter> parameters_;
    Pacer& pacer_;
};

}  // namespace anomalis::inversion
