#include "model/regional.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "core/gaps.h"

namespace anomalis::model {

namespace {

using Polynomial = std::array<double, most_regional_degree + 1>;

double value_at(const Polynomial& polynomial, double t) {
    double sum = 0;
    for (std::size_t k = polynomial.size(); k-- > 0;) sum = sum * t + polynomial[k];
    return sum;
}

/// The stations of the window, and what the regional is to be nearest to.
struct Window {
    std::span<const double> distance;
    std::span<const float> smoothed, calculated;
    double base = 0;

    double left_over(std::size_t i) const {
        return static_cast<double>(smoothed[i]) - base - static_cast<double>(calculated[i]);
    }
};

/// Those of a window that have a reading.
struct WindowReadings {
    explicit WindowReadings(const Window& window) {
        for (std::size_t i = 0; i < window.distance.size(); ++i) {
            if (!is_reading(static_cast<double>(window.smoothed[i]))) continue;
            distance.push_back(window.distance[i]);
            smoothed.push_back(window.smoothed[i]);
            calculated.push_back(window.calculated[i]);
        }
    }
    std::vector<double> distance;
    std::vector<float> smoothed, calculated;
};

Window window_of(const Workspace& workspace, const Channel& channel, const ChannelTable& rows) {
    const auto first = static_cast<std::size_t>(workspace.first_station - 1);
    const auto count = static_cast<std::size_t>(workspace.last_station - workspace.first_station) + 1;
    return {workspace.distances.span().subspan(first, count),
            rows.row(workspace.smoothed_row, stage_observed).subspan(first, count),
            rows.row(workspace.residual_row, stage_calculated).subspan(first, count),
            static_cast<double>(channel.base)};
}

Regional axis_of(const Window& window) {
    const auto [low, high] = std::ranges::minmax(window.distance);
    Regional regional;
    regional.centre = (low + high) / 2;
    if (high > low) regional.half_width = (high - low) / 2;
    return regional;
}

/// Polynomials that are orthogonal over the stations, one after the other (Forsythe 1957): no power of the
/// distance meets another, so the highest degree costs no digits.
Regional nearest(const Window& window, std::int32_t degree) {
    Regional regional = axis_of(window);
    Polynomial before{}, present{1};
    double size_before = 0;
    for (std::int32_t k = 0; k <= degree; ++k) {
        double size = 0, moment = 0, product = 0;
        for (std::size_t i = 0; i < window.distance.size(); ++i) {
            const double t = regional.scaled(window.distance[i]);
            const double p = value_at(present, t);
            size += p * p;
            moment += t * p * p;
            product += window.left_over(i) * p;
        }
        // Stations that stand at fewer places than the degree asks for.
        constexpr double least_part = 1e-18;
        if (!(size > least_part * static_cast<double>(window.distance.size()))) break;
        regional.degree = k;
        Polynomial next{};
        const double shift = moment / size;
        const double back = size_before > 0 ? size / size_before : 0;
        for (std::size_t j = 0; j < present.size(); ++j) {
            regional.coefficients[j] += product / size * present[j];
            next[j] = (j > 0 ? present[j - 1] : 0) - shift * present[j] - back * before[j];
        }
        before = present;
        present = next;
        size_before = size;
    }
    return regional;
}

/// Observed less base level and regional, at every station and not in the window alone.
void take_off(const Workspace& workspace, const Channel& channel, ChannelTable& rows) {
    const auto count = static_cast<std::size_t>(workspace.station_count);
    const auto smoothed = std::as_const(rows).row(workspace.smoothed_row, stage_observed).first(count);
    const auto residual = rows.row(workspace.residual_row, stage_observed).first(count);
    const auto distances = workspace.distances.span().first(count);
    for (std::size_t i = 0; i < count; ++i)
        residual[i] =
            static_cast<float>(static_cast<double>(smoothed[i]) - static_cast<double>(channel.base) -
                               channel.regional.at(distances[i]));
}

void lay_regional(Workspace& workspace, int code, ChannelTable& rows) {
    Channel& channel = workspace.channel(code);
    channel.regional = {};
    if (!regional_in_force(workspace, code)) return;
    const std::int32_t stations = workspace.last_station - workspace.first_station + 1;
    const bool inside = workspace.first_station >= 1 && workspace.last_station <= workspace.station_count;
    if (stations < 1 || !inside || rows.stations() < workspace.station_count) return;
    Window window = window_of(workspace, channel, rows);
    std::optional<WindowReadings> readings;
    if (!channel.gaps.none) {
        readings.emplace(window);
        if (readings->distance.empty()) return;
        window = {readings->distance, readings->smoothed, readings->calculated, window.base};
    }
    channel.regional = nearest(
        window, std::min(channel.regional_degree, static_cast<std::int32_t>(window.distance.size()) - 1));
    take_off(workspace, channel, rows);
}

}  // namespace

bool regional_in_force(const Workspace& workspace, int channel) {
    const bool present = channel == channel_mag ? workspace.has_mag() : workspace.has_grav();
    return present && workspace.channel(channel).regional_degree > no_regional &&
           workspace.processing.residual_filter_width <= 0;
}

void lay_regionals(Workspace& workspace, ChannelTable& mag_rows, ChannelTable& grav_rows) {
    lay_regional(workspace, channel_mag, mag_rows);
    lay_regional(workspace, channel_grav, grav_rows);
}

}  // namespace anomalis::model
