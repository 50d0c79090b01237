#pragma once

#include <span>
#include <vector>

#include "inversion/fit_rows.h"
#include "inversion/least_squares.h"

// The rows of a model as the solver sees them: scales and steps of each kind of parameter.
namespace anomalis::inversion {

/// How the solver takes a parameter: sizes and depths by their logarithm where they keep their side of 0, the
/// rest as they are. `param` holds its value and limits.
FitParameter fit_parameter(const Workspace& workspace, const ModelBody& body, int param_code,
                           const InversionParam& param);

class RowsProblem : public FitProblem {
  public:
    RowsProblem(const Workspace& workspace, FitRows& rows, std::span<const FitParameter> parameters,
                Pacer& pacer);

    std::size_t residual_count() const override { return rows_.row_count(); }
    void residuals(std::vector<float>& values, Eigen::VectorXd& out) override;
    void columns(std::span<const float> values, Eigen::MatrixXd& out) override;
    double rounding() const override { return rows_.rounding(); }
    void largest_steps(std::span<const float> values, std::span<double> out) const override;
    bool iteration_done(int /*iteration*/, std::span<const float> /*values*/) override { return true; }
    Pacer& pacer() override { return pacer_; }
    long rows_evaluated() const { return rows_.evaluations(); }
    const Workspace& workspace() const { return workspace_; }

  private:
    double depth(std::size_t index, std::span<const float> values) const;
    double largest_step(std::size_t index, std::span<const float> values) const;

    const Workspace& workspace_;
    FitRows& rows_;
    Pacer& pacer_;
    std::span<const FitParameter> parameters_;
    std::vector<float> lower_, upper_;
    bool begins_ = true;
};

}  // namespace anomalis::inversion
