#include "inversion/find/model_growth.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "core/body_parameters.h"
#include "inversion/line_place.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::VectorXd;

constexpr std::size_t sources_a_search = 8;
constexpr std::size_t joint_fits = 2;
constexpr int alone_iterations = 12, joint_iterations = 25, polish_iterations = 12;
/// So many bodies may be added without any gain before the search is given up.
constexpr int most_idle = 2;
/// Noise is at least this part of the range of the readings: no model of geology is truer.
constexpr double least_noise_part = 1e-4;

constexpr double degrees_per_radian = 180 / std::numbers::pi;

}  // namespace

ModelGrowth::ModelGrowth(LineFit& line, const GrowthRequest& request, Pacer& pacer)
    : line_(line),
      request_(request),
      pacer_(pacer),
      rows_(line.rows(pacer)),
      bank_(line.workspace(), line.channels().front(), request.thick, pacer) {
    for (const LineFit::ChannelRows& rows : rows_)
        floor_.push_back(std::max(0.7 * rows.noise,
                                  least_noise_part * (rows.observed.maxCoeff() - rows.observed.minCoeff())));
}

std::vector<bool> ModelGrowth::free_of(const std::vector<ModelBody>& bodies) const {
    std::vector<bool> free(bodies.size(), true);
    for (std::size_t i = 0; i < request_.present.size(); ++i)
        free[i] = request_.free_present && is_sheet(bodies[i].type) && bodies[i].turned_off == 0;
    return free;
}

ModelBody ModelGrowth::body_of(const Source& source) const {
    const Workspace& workspace = line_.workspace();
    ModelBody body;
    body.type = request_.thick ? thick_sheet : thin_sheet;
    body.distance.value = static_cast<float>(source.distance);
    body.top.value =
        static_cast<float>(elevation_at(workspace, source.distance, column_sensor) - source.depth);
    body.dip.value = static_cast<float>(source.dip);
    body.width.value = static_cast<float>(request_.thick ? source.width : 0.1 * source.depth);
    // As a new body stands across the line: rounded, so that an east line gives 0.
    constexpr double unit = 1e4;
    body.strike.value = static_cast<float>(
        std::round((static_cast<double>(workspace.azimuth) * degrees_per_radian + 90) * unit) / unit + 0.0);
    body.susc.value = 10000;
    body.density.value = line_.magnetic() && line_.channels().size() == 1 ? 2.67F : 0.1F;
    return body;
}

LineNoise ModelGrowth::white_noise(const TriedModel& model) const {
    LineNoise noise;
    Index at = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        const Index count = rows_[c].distance.size();
        ResidualCovariance one;
        one.white =
            std::max(std::sqrt(model.residual.segment(at, count).squaredNorm() / static_cast<double>(count)),
                     std::max(floor_[c], 1e-12));
        one.independent = static_cast<double>(count);
        noise.push_back(one);
        at += count;
    }
    return noise;
}

LineNoise ModelGrowth::noise_of(const TriedModel& model) {
    LineNoise noise;
    Index at = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        const Index count = rows_[c].distance.size();
        ResidualCovariance one = find_residual_covariance(
            rows_[c].distance, model.residual.segment(at, count), rows_[c].basis, pacer_);
        one.white = std::max(one.white, std::max(floor_[c], 1e-12));
        noise.push_back(one);
        at += count;
    }
    return noise;
}

JudgedModel ModelGrowth::judge(TriedModel model, int found) {
    JudgedModel judged{.noise = noise_of(model), .found = found};
    const std::vector<bool> free = free_of(model.bodies);
    if (std::ranges::find(free, true) != free.end()) {
        model = line_.fit(std::move(model.bodies), free, judged.noise, polish_iterations, pacer_);
        judged.noise = noise_of(model);
    }
    model = line_.as_it_is(std::move(model.bodies), judged.noise, pacer_);
    double minus_two_log = model.squares, independent = 0;
    for (std::size_t c = 0; c < rows_.size(); ++c) {
        minus_two_log += Whitening(judged.noise[c], rows_[c].distance).log_determinant();
        independent += static_cast<double>(rows_[c].distance.size());
        // Correlated noise has two numbers more.
        if (judged.noise[c].correlated > 0)
            minus_two_log += 2 * std::log(static_cast<double>(rows_[c].distance.size()));
    }
    std::size_t parameters = 0;
    for (std::size_t i = 0; i < free.size(); ++i)
        if (free[i]) parameters += line_.free_parameters(model.bodies[i]).size();
    for (const LineFit::ChannelRows& rows : rows_) parameters += static_cast<std::size_t>(rows.basis.cols());
    judged.criterion = minus_two_log + static_cast<double>(parameters) * std::log(std::max(independent, 3.0));
    judged.model = std::move(model);
    return judged;
}

TriedModel ModelGrowth::with_new_body(const TriedModel& model) {
    const LineNoise noise = white_noise(model);
    const VectorXd residual = model.residual.head(rows_.front().distance.size()) / noise.front().white;
    std::vector<TriedModel> alone;
    for (const Source& source : bank_.best(residual, sources_a_search, pacer_)) {
        std::vector<ModelBody> bodies = model.bodies;
        bodies.push_back(body_of(source));
        std::vector<bool> free(bodies.size(), false);
        free.back() = true;
        alone.push_back(line_.fit(std::move(bodies), free, noise, alone_iterations, pacer_));
    }
    std::ranges::sort(alone, {}, &TriedModel::squares);
    TriedModel best;
    for (std::size_t i = 0; i < std::min(joint_fits, alone.size()); ++i) {
        const std::vector<bool> free = free_of(alone[i].bodies);
        TriedModel joint = line_.fit(alone[i].bodies, free, noise, joint_iterations, pacer_);
        if (best.empty() || joint.squares < best.squares) best = std::move(joint);
    }
    return best;
}

std::vector<JudgedModel> ModelGrowth::grow(const Watcher& watcher) {
    std::vector<JudgedModel> path;
    const LineNoise unit(rows_.size(), {.white = 1});
    TriedModel model = line_.as_it_is(request_.present, unit, pacer_);
    path.push_back(judge(model, 0));
    std::size_t best = 0;
    for (int number = 1; number <= request_.most; ++number) {
        TriedModel grown = with_new_body(model);
        if (grown.empty()) break;
        model = std::move(grown);
        path.push_back(judge(model, number));
        if (path.back().criterion < path[best].criterion) {
            best = path.size() - 1;
            watcher(path.back());
        } else if (!request_.exactly && path.size() - 1 - best >= most_idle) {
            break;
        }
    }
    return path;
}

JudgedModel ModelGrowth::without_idle(JudgedModel judged) {
    for (bool better = true; better && judged.found > 0;) {
        better = false;
        JudgedModel best = judged;
        for (int k = 0; k < judged.found; ++k) {
            TriedModel less = judged.model;
            less.bodies.erase(less.bodies.end() - 1 - k);
            const std::vector<bool> free = free_of(less.bodies);
            less = line_.fit(std::move(less.bodies), free, judged.noise, joint_iterations, pacer_);
            JudgedModel trial = judge(std::move(less), judged.found - 1);
            if (trial.criterion < best.criterion) {
                best = std::move(trial);
                better = true;
            }
        }
        judged = std::move(best);
    }
    return judged;
}

}  // namespace anomalis::inversion
