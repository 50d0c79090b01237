#include "inversion/chance_start.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

#include "core/body_parameters.h"
#include "inversion/line_place.h"

namespace anomalis::inversion {

namespace {

/// How far chance goes: of a place so many depths, of the logarithm of a size or depth, of an angle so many
/// degrees.
constexpr double place_spread = 1.5;
constexpr double size_spread = 1.0;
constexpr double angle_spread = 60;
constexpr double amplitude_factor = 100;

/// From -1 to 1, the same on every system.
class Chance {
  public:
    explicit Chance(std::uint32_t seed) : random_(seed * 2654435761U + 12345U) {}
    double next() { return static_cast<double>(random_()) / 2147483648.0 - 1; }

  private:
    std::mt19937 random_;
};

double depth_of(const Workspace& workspace, const FitRows& rows, std::span<const float> values,
                std::int32_t number) {
    const ModelBody& body = rows.bodies()[static_cast<std::size_t>(number)];
    double top = body.top.value, distance = body.distance.value;
    const auto& places = rows.request().places;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i].body != number) continue;
        if (places[i].param_code == param_top) top = values[i];
        if (places[i].param_code == param_distance) distance = values[i];
    }
    constexpr double least = 0.1;
    return std::max(std::abs(elevation_at(workspace, distance, column_sensor) - top), least);
}

double by_chance(const FitParameter& p, int param_code, double here, double depth, double u) {
    switch (param_code) {
        case param_distance:
        case param_offset:
            return here + place_spread * u * depth;
        case param_strike:
        case param_dip:
        case param_plunge:
        case param_slope:
        case param_rem_d:
        case param_rem_i:
            return here + angle_spread * u;
        default:
            break;
    }
    const double origin = p.origin;
    return p.logarithmic ? origin + (here - origin) * std::exp(size_spread * u) : here;
}

/// Into the limits, from the other side where it would stand on one.
float reflected(const FitParameter& p, double value) {
    const double low = std::min(p.lower, p.value), high = std::max(p.upper, p.value);
    if (value < low) value = std::min(2 * low - value, high);
    if (value > high) value = std::max(2 * high - value, low);
    return static_cast<float>(value);
}

}  // namespace

std::vector<std::int32_t> worst_fitted_bodies(FitRows& rows, std::span<const float> values) {
    Eigen::VectorXd residuals(static_cast<Eigen::Index>(rows.row_count()));
    rows.residuals(values, residuals);
    std::vector<std::pair<double, std::int32_t>> found;
    for (const InversionParamPlace& place : rows.request().places) {
        const auto same = [&](const auto& entry) { return entry.second == place.body; };
        if (std::ranges::any_of(found, same)) continue;
        const Eigen::VectorXd share = rows.share_of(place.body).cwiseAbs2();
        const double whole = share.sum();
        found.emplace_back(whole > 0 ? -share.dot(residuals.cwiseAbs2()) / whole : 0.0, place.body);
    }
    std::ranges::stable_sort(found, {}, &std::pair<double, std::int32_t>::first);
    std::vector<std::int32_t> bodies;
    for (const auto& [size, body] : found) bodies.push_back(body);
    return bodies;
}

std::vector<float> chance_start(const Workspace& workspace, FitRows& rows,
                                std::span<const FitParameter> parameters, std::span<const float> values,
                                std::span<const std::int32_t> bodies, int candidates, std::uint32_t seed) {
    Chance chance(seed);
    std::vector<float> lower, upper;
    for (const FitParameter& p : parameters) {
        lower.push_back(p.lower);
        upper.push_back(p.upper);
    }
    const auto& places = rows.request().places;
    Eigen::VectorXd residuals(static_cast<Eigen::Index>(rows.row_count()));
    std::vector<float> best(values.begin(), values.end());
    double least = std::numeric_limits<double>::infinity();
    for (int turn = 0; turn < candidates; ++turn) {
        std::vector<float> trial(values.begin(), values.end());
        for (std::size_t i = 0; i < trial.size(); ++i) {
            const FitParameter& p = parameters[i];
            const bool taken = std::ranges::find(bodies, places[i].body) != bodies.end();
            if (!taken || p.lower >= p.upper) continue;
            const double depth = depth_of(workspace, rows, values, places[i].body);
            trial[i] = reflected(p, by_chance(p, places[i].param_code, values[i], depth, chance.next()));
        }
        rows.residuals_at_best_amplitudes(trial, lower, upper, amplitude_factor, residuals);
        const double sum = residuals.squaredNorm();
        if (!(sum < least)) continue;
        least = sum;
        best = trial;
    }
    return best;
}

}  // namespace anomalis::inversion
