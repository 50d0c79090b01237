#include "inversion/find/line_fit.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "core/body_parameters.h"
#include "inversion/fit_weights.h"
#include "inversion/line_place.h"
#include "inversion/rows_problem.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// The most that a rock is taken to have, micro SI (basic dykes hardly exceed it, Clark and Emerson 1991:
/// of a thin one the line knows width times susceptibility alone), and how dense it can be against its
/// surroundings, g/cc.
constexpr float most_susceptibility = 1.5e5F, least_susceptibility = 1;
constexpr float most_contrast = 5;
/// Found bodies stand inside the window, and so much of it deep at most.
constexpr double deepest = 0.2;

/// Least squares of whitened rows: bodies and regional against the noise of the line.
class WhitenedProblem : public RowsProblem {
  public:
    WhitenedProblem(const Workspace& workspace, FitRows& rows, std::span<const FitParameter> parameters,
                    const LineNoise& noise, Pacer& pacer)
        : RowsProblem(workspace, rows, parameters, pacer), own_(rows) {
        for (std::size_t c = 0; c < rows.channels().size(); ++c) {
            FittedRows& channel = rows.channels()[c];
            whitenings_.emplace_back(noise[c], channel.distance);
            MatrixXd basis = channel.basis;
            whitenings_.back().whiten(basis);
            for (Index k = 0; k < basis.cols(); ++k) {
                for (int pass = 0; pass < 2; ++pass)
                    basis.col(k) -= basis.leftCols(k) * (basis.leftCols(k).transpose() * basis.col(k)).eval();
                basis.col(k).normalize();
            }
            bases_.push_back(std::move(basis));
            channel.basis.resize(channel.basis.rows(), 0);
            channel.sigma = 1;
        }
    }

    void residuals(std::vector<float>& values, VectorXd& out) override {
        own_.residuals(values, out);
        whiten(out);
    }
    void columns(std::span<const float> values, MatrixXd& out) override {
        own_.columns(values, out);
        whiten(out);
    }

  private:
    void whiten(Eigen::Ref<MatrixXd> all) {
        Index at = 0;
        for (std::size_t c = 0; c < whitenings_.size(); ++c) {
            const auto count = static_cast<Index>(own_.channels()[c].chain.row_count());
            auto part = all.middleRows(at, count);
            whitenings_[c].whiten(part);
            project_off(bases_[c], part);
            at += count;
        }
    }

    FitRows& own_;
    std::vector<Whitening> whitenings_;
    std::vector<MatrixXd> bases_;  ///< of the regionals, whitened, orthonormal
};

/// What the anomalies of the free bodies are, each for itself, against what they are together; squares.
double cancelling_of(FitRows& rows, const std::vector<bool>& free) {
    VectorXd together = VectorXd::Zero(static_cast<Index>(rows.row_count()));
    double apart = 0;
    for (std::size_t i = 0; i < free.size(); ++i) {
        if (!free[i]) continue;
        const VectorXd own = rows.share_of(static_cast<std::int32_t>(i) + 1);
        const VectorXd anomaly = own.array() - own.mean();
        apart += anomaly.squaredNorm();
        together += anomaly;
    }
    return apart > 0 ? apart / std::max(together.squaredNorm(), 1e-12 * apart) : 1;
}

}  // namespace

double square_strike(const Workspace& workspace) {
    constexpr double degrees_per_radian = 180 / std::numbers::pi, unit = 1e4;
    return std::round((static_cast<double>(workspace.azimuth) * degrees_per_radian + 90) * unit) / unit + 0.0;
}

LineFit::LineFit(const Workspace& workspace, std::span<const std::int32_t> channels)
    : workspace_(workspace), channels_(channels.begin(), channels.end()) {
    workspace_.ensemble.reset();
    workspace_.fit.reset();
    for (Channel* channel : {&workspace_.mag, &workspace_.grav}) channel->work.release();
}

void LineFit::set_degree(std::int32_t degree) {
    for (const std::int32_t channel : channels_) workspace_.channel(channel).regional_degree = degree;
}

std::int32_t LineFit::degree() const {
    return workspace_.channel(channels_.front()).regional_degree;
}

void LineFit::take(const std::vector<ModelBody>& bodies) {
    workspace_.body_count = static_cast<std::int32_t>(bodies.size());
    workspace_.body_capacity = std::max(workspace_.body_capacity, workspace_.body_count);
    workspace_.bodies.resize(static_cast<std::size_t>(workspace_.body_capacity) + 1);
    std::ranges::copy(bodies, workspace_.bodies.begin() + 1);
}

double LineFit::depth(const ModelBody& body) const {
    const double sensor = elevation_at(workspace_, static_cast<double>(body.distance.value), column_sensor);
    return sensor - static_cast<double>(body.top.value);
}

std::vector<int> LineFit::free_parameters(const ModelBody& body) const {
    std::vector<int> codes{param_distance, param_strike, param_dip, param_top};
    if (body.type == thick_sheet) codes.push_back(param_width);
    if (body.depth_extent.value > 0) codes.push_back(param_depth_extent);
    if (body.length.value > 0) codes.push_back(param_length);
    for (const std::int32_t channel : channels_)
        codes.push_back(channel == channel_mag ? param_susc : param_density);
    return codes;
}

FitParameter LineFit::limits(const ModelBody& body, int param_code) const {
    const double depth_now = std::max(depth(body), 0.1);
    const double first = workspace_.distances[workspace_.first_station];
    const double last = workspace_.distances[workspace_.last_station];
    const double place = body.distance.value;
    InversionParam param{.value = body_param(body, param_code).value, .lower = -no_limit, .upper = no_limit};
    const auto between = [&](double low, double high) {
        param.lower = static_cast<float>(low);
        param.upper = static_cast<float>(high);
    };
    switch (param_code) {
        case param_distance:
            between(first, last);
            break;
        case param_strike:
            between(square_strike(workspace_) - most_oblique, square_strike(workspace_) + most_oblique);
            break;
        case param_dip:
            between(least_found_dip, most_found_dip);
            break;
        case param_top: {
            const double sensor = elevation_at(workspace_, place, column_sensor);
            const double ground = elevation_at(workspace_, place, column_ground);
            between(sensor - deepest * (last - first),
                    std::max(std::min(ground, sensor - 1), sensor - depth_now));
            break;
        }
        case param_width:
            between(least_found_width * depth_now, most_found_width * depth_now);
            break;
        case param_depth_extent:
            between(0.3 * depth_now, 50 * depth_now);
            break;
        case param_length:
            between(0.3 * depth_now, 100 * depth_now);
            break;
        case param_susc:
            between(least_susceptibility, most_susceptibility);
            break;
        case param_density:
            between(-most_contrast, most_contrast);
            break;
        default:
            break;
    }
    param.value = std::clamp(param.value, param.lower, param.upper);
    FitParameter fit = fit_parameter(workspace_, body, param_code, param);
    if (param_code == param_strike) fit.hold = usual_obliqueness;
    return fit;
}

std::vector<LineFit::ChannelRows> LineFit::rows(Pacer& pacer) {
    take({});
    FitRequest request{.channels = channels_, .target = target_data, .places = {}};
    FitRows fit(workspace_, request, faults_, pacer);
    weigh_by_noise(workspace_, target_data, fit);
    std::vector<ChannelRows> all;
    for (const FittedRows& rows : fit.channels()) {
        const auto stations = rows.chain.stations();
        all.push_back({.distance = rows.distance,
                       .observed = rows.observed,
                       .stations = {stations.begin(), stations.end()},
                       .starts = rows.chain.starts(),
                       .spacing = rows.spacing,
                       .basis = rows.basis,
                       .noise = rows.noise});
    }
    return all;
}

TriedModel LineFit::as_it_is(std::vector<ModelBody> bodies, const LineNoise& noise, Pacer& pacer) {
    const std::vector<bool> none(bodies.size(), false);
    return fit(std::move(bodies), none, noise, 0, pacer);
}

TriedModel LineFit::fit(std::vector<ModelBody> bodies, const std::vector<bool>& free, const LineNoise& noise,
                        int iterations, Pacer& pacer) {
    FitRequest request{.channels = channels_, .target = target_data, .places = {}};
    std::vector<FitParameter> parameters;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        if (!free[i]) continue;
        for (const int code : free_parameters(bodies[i])) {
            parameters.push_back(limits(bodies[i], code));
            body_param(bodies[i], code).value = parameters.back().value;
            request.places.push_back({static_cast<std::int32_t>(i) + 1, code});
        }
    }
    take(bodies);
    FitRows rows(workspace_, request, faults_, pacer);
    std::vector<MatrixXd> bases;
    for (const FittedRows& channel : rows.channels()) bases.push_back(channel.basis);
    WhitenedProblem problem(workspace_, rows, parameters, noise, pacer);
    std::vector<float> values;
    for (const FitParameter& parameter : parameters) values.push_back(parameter.value);
    if (iterations > 0 && !parameters.empty())
        values = fit_least_squares(problem, parameters, iterations).values;
    for (std::size_t i = 0; i < values.size(); ++i)
        body_param(bodies[static_cast<std::size_t>(request.places[i].body) - 1], request.places[i].param_code)
            .value = values[i];

    const double cancelling = cancelling_of(rows, free);
    TriedModel tried{.bodies = std::move(bodies), .degree = degree()};
    tried.cancelling = cancelling;
    VectorXd whitened(static_cast<Index>(rows.row_count()));
    problem.residuals(values, whitened);
    tried.squares = whitened.squaredNorm();
    tried.residual.resize(whitened.size());
    rows.residuals(values, tried.residual);
    tried.residual = -tried.residual;
    tried.calculated.resize(whitened.size());
    Index at = 0;
    for (std::size_t c = 0; c < bases.size(); ++c) {
        // The regional that is the best for this noise.
        const auto count = static_cast<Index>(rows.channels()[c].chain.row_count());
        const Whitening whitening(noise[c], rows.channels()[c].distance);
        MatrixXd basis = bases[c];
        VectorXd left = tried.residual.segment(at, count);
        tried.calculated.segment(at, count) = rows.channels()[c].observed - left;
        if (basis.cols() > 0) {
            whitening.whiten(basis);
            whitening.whiten(left);
            const VectorXd best = (basis.transpose() * basis).ldlt().solve(basis.transpose() * left);
            tried.residual.segment(at, count) -= bases[c] * best;
        }
        at += count;
    }
    return tried;
}

}  // namespace anomalis::inversion
