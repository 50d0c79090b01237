#include "inversion/find/model_trials.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "core/body_defaults.h"
#include "core/body_parameters.h"
#include "inversion/line_place.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::VectorXd;

constexpr int alone_iterations = 12, joint_iterations = 25, polish_iterations = 12;
/// Noise is at least this part of the range of the readings: no model of geology is truer.
constexpr double least_noise_part = 1e-4;

/// Nobody knows the strike: sheets square to the line are off by this part of an anomaly.
constexpr double model_error = 0.01;
/// Places are many, and one of them always looks like a body: a parameter costs so much more than one that
/// was chosen before the line was seen.
constexpr double price = 1.1;

/// Correlated noise costs as a body does: where a few bodies explain a line it is not to be taken for
/// geology.
constexpr double correlation_price = 6;

/// A model is there to explain the line: what it leaves to other geology is at most this part of the range.
constexpr double most_correlated_part = 0.08;

/// Bodies that cancel each other explain nothing: what they cost in the criterion.
constexpr double usual_cancelling = 1.5, cancelling_price = 50;

/// Of a reading that counts for nothing.
constexpr double least_weight = 1e-4;

/// A standard deviation that few large values do not reach.
double usual_size(const VectorXd& values) {
    std::vector<double> sizes(values.begin(), values.end());
    for (double& size : sizes) size = std::abs(size);
    const auto middle = sizes.begin() + static_cast<std::ptrdiff_t>(sizes.size() / 2);
    std::nth_element(sizes.begin(), middle, sizes.end());
    return 1.4826 * *middle;
}

/// What is known of rows on an anomaly against those beside it.
VectorXd weights(const VectorXd& calculated, double noise) {
    const Index count = calculated.size(), half = std::max<Index>(2, count / 50);
    VectorXd weight(count);
    for (Index i = 0; i < count; ++i) {
        const Index from = std::max<Index>(0, i - half), behind = std::min(count, i + half + 1);
        const double size = calculated.segment(from, behind - from).cwiseAbs().mean();
        weight[i] = 1 / std::hypot(1.0, model_error * size / noise);
    }
    return weight;
}

/// A stretch begins behind one of the four neighbours before and behind it.
bool is_near_a_gap(const LineFit::ChannelRows& rows, Index i) {
    const auto row = static_cast<std::size_t>(i);
    const auto behind = std::ranges::upper_bound(rows.starts, row - 2);
    return behind != rows.starts.end() && *behind <= row + 2;
}

/// 0 at a reading that stands out of its neighbours while these agree with theirs: at a sheet too, the
/// anomaly reaches the next station. 1 elsewhere.
VectorXd one_beside_lone_readings(const LineFit::ChannelRows& rows, double noise) {
    constexpr double out_of_noise = 15, agreement = 0.1;
    const VectorXd& observed = rows.observed;
    VectorXd share = VectorXd::Ones(observed.size());
    for (Index i = 2; i + 2 < observed.size(); ++i) {
        if (rows.starts.size() > 1 && is_near_a_gap(rows, i)) continue;
        const double out = std::abs(observed[i] - (observed[i - 1] + observed[i + 1]) / 2);
        const double beside = std::max({std::abs(observed[i - 1] - observed[i + 1]),
                                        std::abs(observed[i - 2] - observed[i - 1]),
                                        std::abs(observed[i + 2] - observed[i + 1])});
        if (out > out_of_noise * noise && beside < agreement * out) share[i] = 0;
    }
    return share;
}

}  // namespace

ModelTrials::ModelTrials(LineFit& line, const GrowthRequest& request, Pacer& pacer)
    : request_(request),
      rows_(line.rows(pacer)),
      bank_(std::make_shared<SourceBank>(line.workspace(), line.channels().front(), rows_.front().place(),
                                         request.thick, pacer)) {
    for (const LineFit::ChannelRows& rows : rows_) {
        floor_.push_back(
            std::max({1e-9, 0.7 * rows.noise,
                      least_noise_part * (rows.observed.maxCoeff() - rows.observed.minCoeff())}));
        const VectorXd anomaly = rows.observed - rows.basis * (rows.basis.transpose() * rows.observed);
        most_correlated_.push_back(most_correlated_part * (anomaly.maxCoeff() - anomaly.minCoeff()));
        alone_.push_back(one_beside_lone_readings(rows, floor_.back()));
    }
}

ModelTrials::ModelTrials(LineFit& line, const ModelTrials& other, Pacer& pacer)
    : request_(other.request_),
      rows_(line.rows(pacer)),
      floor_(other.floor_),
      most_correlated_(other.most_correlated_),
      alone_(other.alone_),
      bank_(other.bank_) {}

std::vector<bool> ModelTrials::free_of(const std::vector<ModelBody>& bodies) const {
    std::vector<bool> free(bodies.size(), true);
    for (std::size_t i = 0; i < request_.present.size(); ++i)
        free[i] = request_.free_present && is_sheet(bodies[i].type) && bodies[i].turned_off == 0;
    return free;
}

ModelBody ModelTrials::body_of(const LineFit& line, const Source& source) const {
    const Workspace& workspace = line.workspace();
    ModelBody body;
    body.type = request_.thick ? thick_sheet : thin_sheet;
    body.distance.value = static_cast<float>(source.distance);
    body.top.value =
        static_cast<float>(elevation_at(workspace, source.distance, column_sensor) - source.depth);
    body.dip.value = static_cast<float>(source.dip);
    body.width.value = static_cast<float>(request_.thick ? source.width : 0.1 * source.depth);
    body.strike.value = static_cast<float>(square_strike(workspace));
    body.susc.value = 10000;
    body.density.value = line.magnetic() && line.channels().size() == 1
                             ? default_density
                             : 0.1F * static_cast<float>(source.sign);
    return body;
}

LineNoise ModelTrials::white_noise(const TriedModel& model) const {
    LineNoise noise;
    Index at = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        const Index count = rows_[c].distance.size();
        const VectorXd residual = model.residual.segment(at, count).cwiseProduct(alone_[c]);
        const double rms = residual.norm() / std::sqrt(static_cast<double>(count));
        noise.emplace_back().covariance.white = std::max(rms, floor_[c]);
        if (alone_[c].minCoeff() < 1) noise.back().weight = alone_[c].cwiseMax(least_weight);
        at += count;
    }
    return noise;
}

LineNoise ModelTrials::noise_of(const TriedModel& model, Pacer& pacer) const {
    LineNoise noise;
    Index at = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        const Index count = rows_[c].distance.size();
        RowNoise& own = noise.emplace_back();
        const VectorXd residual = model.residual.segment(at, count);
        own.weight = weights(model.calculated.segment(at, count), std::max(usual_size(residual), floor_[c]))
                         .cwiseProduct(alone_[c].cwiseMax(least_weight));
        own.covariance = find_residual_covariance(rows_[c].distance, residual.cwiseProduct(own.weight),
                                                  rows_[c].basis, pacer, rows_[c].spacing);
        own.covariance.white = std::max(own.covariance.white, floor_[c]);
        own.covariance.correlated = std::min(own.covariance.correlated, most_correlated_[c]);
        at += count;
    }
    return noise;
}

JudgedModel ModelTrials::judge(const TrialBench& bench, TriedModel model, int found) const {
    JudgedModel judged{.noise = noise_of(model, bench.pacer), .found = found};
    const std::vector<bool> free = free_of(model.bodies);
    if (std::ranges::find(free, true) != free.end()) {
        model = bench.line.fit(std::move(model.bodies), free, judged.noise, polish_iterations, bench.pacer);
        judged.noise = noise_of(model, bench.pacer);
    }
    const double cancelling = model.cancelling;
    model = bench.line.as_it_is(std::move(model.bodies), judged.noise, bench.pacer);
    double minus_two_log = model.squares + cancelling_price * std::max(cancelling - usual_cancelling, 0.0);
    double independent = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        minus_two_log += Whitening(judged.noise[c], rows_[c].distance).log_determinant();
        independent += static_cast<double>(rows_[c].distance.size());
        if (judged.noise[c].covariance.correlated > 0)
            minus_two_log += correlation_price * std::log(static_cast<double>(rows_[c].distance.size()));
    }
    std::size_t parameters = 0;
    for (std::size_t i = 0; i < free.size(); ++i) {
        if (!free[i]) continue;
        // What is known of a strike beforehand counts in place of a parameter.
        parameters += bench.line.free_parameters(model.bodies[i]).size() - 1;
        const double off =
            (static_cast<double>(model.bodies[i].strike.value) - square_strike(bench.line.workspace())) /
            usual_obliqueness;
        minus_two_log += off * off;
    }
    for (const LineFit::ChannelRows& rows : rows_) parameters += static_cast<std::size_t>(rows.basis.cols());
    judged.criterion =
        minus_two_log + price * static_cast<double>(parameters) * std::log(std::max(independent, 3.0));
    judged.model = std::move(model);
    return judged;
}

std::vector<double> ModelTrials::lone_readings() const {
    std::vector<double> places;
    for (std::size_t c = 0; c < rows_.size(); ++c)
        for (Index i = 0; i < alone_[c].size(); ++i)
            if (alone_[c][i] == 0) places.push_back(rows_[c].distance[i]);
    return places;
}

std::vector<Source> ModelTrials::sources(const TriedModel& model, std::size_t count, Pacer& pacer) const {
    return bank_->best(model.residual.head(rows_.front().distance.size()).cwiseProduct(alone_.front()), count,
                       pacer);
}

TriedModel ModelTrials::with_source(const TrialBench& bench, const TriedModel& model, const Source& source,
                                    const LineNoise& noise) const {
    std::vector<ModelBody> bodies = model.bodies;
    bodies.push_back(body_of(bench.line, source));
    std::vector<bool> free(bodies.size(), false);
    free.back() = true;
    return bench.line.fit(std::move(bodies), free, noise, alone_iterations, bench.pacer);
}

TriedModel ModelTrials::refitted(const TrialBench& bench, const TriedModel& model,
                                 const LineNoise& noise) const {
    return bench.line.fit(model.bodies, free_of(model.bodies), noise, joint_iterations, bench.pacer);
}

}  // namespace anomalis::inversion
