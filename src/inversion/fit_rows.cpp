#include "inversion/fit_rows.h"

#include <Eigen/Core>
#include <algorithm>
#include <cmath>
#include <utility>

#include "core/body_parameters.h"
#include "inversion/bounded_step.h"
#include "inversion/eigen_spans.h"
#include "inversion/normal_matrix.h"

namespace anomalis::inversion {

namespace {

using Eigen::Index;
using Eigen::MatrixXd;
using Eigen::VectorXd;

/// Single precision, as a part of a value.
constexpr double single_rounding = 6e-8;

ModelBody without_response(const ModelBody& body) {
    ModelBody copy = body;
    copy.response = {};
    return copy;
}

}  // namespace

FitRows::FitRows(Workspace& workspace, FitRequest request, Faults& faults, Pacer& pacer)
    : workspace_(workspace), request_(std::move(request)), pacer_(pacer) {
    bodies_.resize(static_cast<std::size_t>(workspace.body_count) + 1);
    for (int number = 1; number <= workspace.body_count; ++number)
        bodies_[static_cast<std::size_t>(number)] = without_response(workspace.body(number));
    find_free_bodies();
    for (const std::int32_t channel : request_.channels) add_channel(workspace, channel, faults);
    calculate_fixed();
}

FitRows::FitRows(const FitRows& other, Pacer& pacer)
    : workspace_(other.workspace_),
      request_(other.request_),
      channels_(other.channels_),
      bodies_(other.bodies_),
      free_(other.free_),
      pacer_(pacer),
      calculated_length_(other.calculated_length_) {}

void FitRows::find_free_bodies() {
    for (std::size_t i = 0; i < request_.places.size(); ++i) {
        const int number = request_.places[i].body;
        auto found = std::ranges::find(free_, number, &FreeBody::number);
        if (found == free_.end()) {
            const Eigen::Index column = index_of(free_.size());
            found = free_.emplace(free_.end());
            found->number = number;
            found->column = column;
        }
        found->parameters.push_back(i);
    }
    for (FreeBody& body : free_)
        for (const std::int32_t channel : {channel_mag, channel_grav})
            body.amplitude[channel] = amplitude_of(body, channel);
}

/// The anomaly is proportional to it: not the susceptibility of a body that demagnetises itself.
std::size_t FitRows::amplitude_of(const FreeBody& body, std::int32_t channel) const {
    const ModelBody& own = bodies_[static_cast<std::size_t>(body.number)];
    if (channel == channel_mag && own.include_demagnetisation == 1) return none;
    for (const std::size_t i : body.parameters)
        if (request_.places[i].param_code == (channel == channel_mag ? param_susc : param_density)) return i;
    return none;
}

void FitRows::add_channel(Workspace& workspace, std::int32_t channel, Faults& faults) {
    RowChain chain(workspace, channel, request_.target, faults);
    const auto raw = index_of(chain.raw_count());
    const VectorXd distance = station_distances(workspace, chain.stations());
    const VectorXd observed = observed_rows(workspace, channel, request_.target, chain.stations());
    const double spacing = chain.whole() ? 0 : spacing_in_stretches(distance, chain.starts());
    const std::int32_t degree = solved_degree(workspace, channel, request_.target);
    channels_.push_back({.channel = channel,
                         .chain = std::move(chain),
                         .distance = distance,
                         .spacing = spacing,
                         .observed = observed,
                         .basis = polynomials(distance, degree),
                         .raw = MatrixXd::Zero(raw, index_of(free_.size())),
                         .fixed = VectorXd::Zero(raw)});
}

std::size_t FitRows::row_count() const {
    std::size_t count = 0;
    for (const FittedRows& rows : channels_) count += rows.chain.row_count();
    return count;
}

void FitRows::set_values(FreeBody& body, std::span<const float> values) {
    body.calculated_at.clear();
    for (const std::size_t i : body.parameters) {
        body_param(bodies_[static_cast<std::size_t>(body.number)], request_.places[i].param_code).value =
            values[i];
        body.calculated_at.push_back(values[i]);
    }
}

/// Its raw rows are those of the values.
bool FitRows::calculated(const FreeBody& body, std::span<const float> values) const {
    const auto same = [&, k = std::size_t{0}](std::size_t i) mutable {
        return body.calculated_at[k++] == values[i];
    };
    return !body.calculated_at.empty() && std::ranges::all_of(body.parameters, same);
}

void FitRows::collect(Eigen::Ref<VectorXd> out) {
    Index at = 0;
    double squares = 0;
    for (FittedRows& rows : channels_) {
        const VectorXd raw = rows.fixed + rows.raw.rowwise().sum();
        const auto count = index_of(rows.chain.row_count());
        auto own = out.segment(at, count);
        rows.chain.values(span_of(raw), {own.data(), rows.chain.row_count()});
        squares += (own.squaredNorm() + rows.observed.squaredNorm()) / (rows.sigma * rows.sigma);
        own = (own - rows.observed) / rows.sigma;
        project_off(rows.basis, own);
        at += count;
    }
    calculated_length_ = std::sqrt(squares);
}

double FitRows::rounding() const {
    return single_rounding * calculated_length_;
}

void FitRows::residuals(std::span<const float> values, Eigen::Ref<VectorXd> out) {
    calculate(values);
    collect(out);
    ++evaluations_;
}

void FitRows::rescale(std::span<const double> factors, std::vector<float>& values,
                      std::span<const std::size_t> parameters) {
    for (std::size_t k = 0; k < parameters.size(); ++k) {
        float& value = values[parameters[k]];
        const auto wanted = static_cast<float>(static_cast<double>(value) * factors[k]);
        if (wanted == value || !std::isfinite(wanted) || wanted == 0) continue;
        const InversionParamPlace place = request_.places[parameters[k]];
        const std::int32_t channel = place.param_code == param_density ? channel_grav : channel_mag;
        FreeBody& body = *free_body(place.body);
        for (FittedRows& rows : channels_)
            if (rows.channel == channel)
                rows.raw.col(body.column) *= static_cast<double>(wanted) / static_cast<double>(value);
        value = wanted;
        set_values(body, values);
    }
}

void FitRows::residuals_at_best_amplitudes(std::vector<float>& values, std::span<const float> lower,
                                           std::span<const float> upper, double most_change,
                                           Eigen::Ref<VectorXd> out) {
    residuals(values, out);
    if (!out.allFinite()) return;
    const double before = out.squaredNorm();
    const std::vector<float> kept = values;
    Index at = 0;
    for (FittedRows& rows : channels_) {
        const auto count = index_of(rows.chain.row_count());
        const VectorXd own = out.segment(at, count);
        at += count;
        if (!rows.chain.linear()) continue;
        std::vector<std::size_t> parameters;
        for (const FreeBody& body : free_) {
            const std::size_t i = body.amplitude[rows.channel];
            if (i != none && values[i] != 0 && lower[i] < upper[i]) parameters.push_back(i);
        }
        if (parameters.empty()) continue;
        MatrixXd columns(count, index_of(parameters.size()));
        VectorXd least(columns.cols()), most(columns.cols());
        for (std::size_t k = 0; k < parameters.size(); ++k) {
            const std::size_t i = parameters[k];
            auto column = columns.col(index_of(k));
            rows.chain.change(span_of(rows.raw.col(free_body(request_.places[i].body)->column)),
                              {column.data(), rows.chain.row_count()});
            // Of the change of the factor, which is 1 where it stands.
            const double value = static_cast<double>(values[i]);
            double low = static_cast<double>(lower[i]) / value, high = static_cast<double>(upper[i]) / value;
            if (low > high) std::swap(low, high);
            // What may have either sign may change it.
            const bool either = lower[i] < 0 && upper[i] > 0 && most_change > 10;
            least[index_of(k)] = std::min(std::max(low, either ? -most_change : 1 / most_change) - 1, 0.0);
            most[index_of(k)] = std::max(std::min(high, most_change) - 1, 0.0);
        }
        columns /= rows.sigma;
        project_off(rows.basis, columns);
        const VectorXd change = bounded_step({.normal = normal_matrix(columns, pacer_),
                                              .gradient = columns.transpose() * own,
                                              .least = least,
                                              .most = most,
                                              .damping = 1e-9},
                                             pacer_)
                                    .step;
        std::vector<double> factors;
        for (const double part : change) factors.push_back(1 + part);
        rescale(factors, values, parameters);
    }
    if (values == kept) return;
    collect(out);
    if (out.squaredNorm() < before) return;
    values = kept;
    residuals(values, out);
}

VectorXd FitRows::share_of(std::int32_t body) {
    VectorXd share = VectorXd::Zero(index_of(row_count()));
    const FreeBody* const own_body = free_body(body);
    if (!own_body) return share;
    Index at = 0;
    for (FittedRows& rows : channels_) {
        const auto count = index_of(rows.chain.row_count());
        auto own = share.segment(at, count);
        rows.chain.change(span_of(rows.raw.col(own_body->column)), {own.data(), rows.chain.row_count()});
        own /= rows.sigma;
        project_off(rows.basis, own);
        at += count;
    }
    return share;
}

double FitRows::sum_of_squares_without(std::int32_t body, std::span<const float> values) {
    calculate(values);
    const FreeBody* const without = free_body(body);
    VectorXd out(index_of(row_count()));
    if (!without) {
        collect(out);
        return out.squaredNorm();
    }
    const Index column = without->column;
    std::vector<VectorXd> kept;
    for (FittedRows& rows : channels_) {
        kept.emplace_back(rows.raw.col(column));
        rows.raw.col(column).setZero();
    }
    collect(out);
    for (std::size_t c = 0; c < channels_.size(); ++c) channels_[c].raw.col(column) = kept[c];
    return out.squaredNorm();
}

void FitRows::columns(std::span<const float> values, Eigen::Ref<MatrixXd> out) {
    // A chain that is not linear is at the values of its last state.
    const auto linear = [](const FittedRows& rows) { return rows.chain.linear(); };
    if (!std::ranges::all_of(channels_, linear)) {
        VectorXd state(index_of(row_count()));
        calculate(values);
        collect(state);
    }
    double units = 0;
    for (const FreeBody& body : free_) units += units_of(body.number, body.parameters.size());
    share_bodies(
        free_.size(), units, [&](std::size_t i) { return free_[i].number; },
        [&](std::size_t i, BodyAsk& ask) { fill_columns(free_[i], values, out, ask); });
    Index at = 0;
    for (FittedRows& rows : channels_) {
        const auto count = index_of(rows.chain.row_count());
        auto own = out.middleRows(at, count);
        project_off(rows.basis, own);
        at += count;
    }
    ++evaluations_;
}

std::vector<ChannelFit> FitRows::channel_fits(const MatrixXd& columns, const VectorXd& residuals) const {
    std::vector<ChannelFit> fits;
    Index at = 0;
    for (const FittedRows& rows : channels_) {
        const auto count = index_of(rows.chain.row_count());
        fits.push_back({.channel = rows.channel,
                        .distance = rows.distance,
                        .spacing = rows.spacing,
                        .residual = -rows.sigma * residuals.segment(at, count),
                        .columns = rows.sigma * columns.middleRows(at, count),
                        .regional = rows.basis,
                        .sigma = rows.sigma,
                        .sigma_given = rows.sigma_given,
                        .coarse = workspace_.formulas == Formulas::classic,
                        .noise = rows.noise});
        at += count;
    }
    return fits;
}

}  // namespace anomalis::inversion
