#include "textbook_fit.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <vector>

#include "core/body_parameters.h"
#include "core/session.h"
#include "inversion/fit_rows.h"
#include "inversion/parameters.h"
#include "model/misfit.h"

namespace anomalis {

namespace {

using Eigen::MatrixXd;
using Eigen::VectorXd;

struct Problem {
    Workspace workspace;
    InversionState state;
    Faults faults;
    std::vector<float> values, lower, upper;
    inversion::FitRequest request;

    Problem(const Session& session, std::int32_t channel)
        : workspace(session.workspace), state(session.inversion) {
        const inversion::FittedModel model{workspace, state, faults};
        int count = 0;
        const auto method = InversionMethod::least_squares;
        inversion::setup_all_body_parameters(0, channel, count, model, method);
        state.inversion_params.assign(count);
        state.inversion_param_map.assign(count);
        int filled = 0;
        inversion::setup_all_body_parameters(1, channel, filled, model, method);
        for (int i = 1; i <= count; ++i) {
            values.push_back(state.inversion_params[i].value);
            lower.push_back(state.inversion_params[i].lower);
            upper.push_back(state.inversion_params[i].upper);
            request.places.push_back(state.inversion_param_map[i]);
        }
        for (const std::int32_t one : {channel_mag, channel_grav})
            if (channel == one || channel == channel_joint) request.channels.push_back(one);
        request.target = target_data;
    }
    inversion::FitRows rows() {
        inversion::FitRows made(workspace, request, faults, no_pace());
        for (inversion::FittedRows& channel : made.channels())
            channel.sigma = channel.channel == channel_mag ? 1.0 : 0.02;
        return made;
    }
};

double difference_of(float value) {
    return std::max(1e-4 * std::abs(static_cast<double>(value)), 1e-3);
}

}  // namespace

double sum_of_squares(const Session& session, std::int32_t channel) {
    Problem problem(session, channel);
    inversion::FitRows rows = problem.rows();
    VectorXd residuals(static_cast<Eigen::Index>(rows.row_count()));
    rows.residuals(problem.values, residuals);
    return residuals.squaredNorm();
}

TextbookFit textbook_fit(const Session& session, std::int32_t channel) {
    Problem problem(session, channel);
    inversion::FitRows rows = problem.rows();
    const auto count = static_cast<Eigen::Index>(problem.values.size());
    VectorXd residuals(static_cast<Eigen::Index>(rows.row_count())), trial = residuals;
    MatrixXd jacobian(residuals.size(), count);
    TextbookFit fit;
    const auto evaluate = [&](const std::vector<float>& values, VectorXd& out) {
        ++fit.evaluations;
        rows.residuals(values, out);
        return out.squaredNorm();
    };
    std::vector<float> values = problem.values;
    double sum = evaluate(values, residuals), damping = 1e-3;
    for (int iteration = 0; iteration < 200; ++iteration) {
        for (Eigen::Index k = 0; k < count; ++k) {
            const auto i = static_cast<std::size_t>(k);
            std::vector<float> moved = values;
            moved[i] += static_cast<float>(difference_of(values[i]));
            evaluate(moved, trial);
            jacobian.col(k) =
                (trial - residuals) / (static_cast<double>(moved[i]) - static_cast<double>(values[i]));
        }
        const MatrixXd normal = jacobian.transpose() * jacobian;
        const VectorXd gradient = jacobian.transpose() * residuals;
        bool better = false;
        double gain = 0;
        while (!better && damping < 1e12) {
            MatrixXd system = normal;
            system.diagonal() += damping * normal.diagonal();
            system.diagonal().array() += 1e-30;
            const VectorXd step = -system.ldlt().solve(gradient);
            std::vector<float> next = values;
            for (std::size_t i = 0; i < next.size(); ++i)
                next[i] = std::clamp(
                    static_cast<float>(static_cast<double>(values[i]) + step[static_cast<Eigen::Index>(i)]),
                    std::min(problem.lower[i], values[i]), std::max(problem.upper[i], values[i]));
            const double reached = evaluate(next, trial);
            better = reached < sum;
            if (!better) {
                damping *= 4;
                continue;
            }
            gain = sum - reached;
            values = next;
            sum = reached;
            residuals = trial;
            damping /= 5;
        }
        if (!better || gain < 1e-4 * sum) break;
    }
    fit.sum_of_squares = sum;
    return fit;
}

}  // namespace anomalis
