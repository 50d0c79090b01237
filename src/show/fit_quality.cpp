#include "show/fit_quality.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "core/model_mark.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "inversion/noise.h"

namespace anomalis::show {

namespace {

/// Stations of the fit window, from 0; none where the window lies beyond the line.
struct Window {
    std::size_t first = 0, count = 0;
};

Window window_of(const Workspace& workspace) {
    if (workspace.first_station < 1 || workspace.last_station < workspace.first_station ||
        workspace.last_station > workspace.station_count)
        return {};
    return {static_cast<std::size_t>(workspace.first_station - 1),
            static_cast<std::size_t>(workspace.last_station - workspace.first_station) + 1};
}

bool has_channel(const Workspace& workspace, int channel) {
    return channel == channel_mag ? workspace.has_mag() : workspace.has_grav();
}

struct Residuals {
    double sum = 0;  ///< of squares
    int stations = 0;
};

Residuals residuals_of(std::span<const float> observed, std::span<const float> calculated) {
    Residuals all;
    for (std::size_t i = 0; i < observed.size(); ++i) {
        if (static_cast<double>(observed[i]) <= missing_limit) continue;
        const double residual = static_cast<double>(observed[i]) - static_cast<double>(calculated[i]);
        all.sum += residual * residual;
        ++all.stations;
    }
    return all;
}

double estimated_noise(const Workspace& workspace, int channel) {
    const Window window = window_of(workspace);
    const auto readings = workspace.channel(channel).data.row(workspace.raw_row, stage_observed);
    if (readings.size() < window.first + window.count) return 0;
    return inversion::noise_of_readings(workspace, channel, workspace.first_station, workspace.last_station);
}

}  // namespace

std::string_view channel_unit(int channel) {
    return channel == channel_mag ? "nT" : "mGal";
}

ChannelNoise channel_noise(const Workspace& workspace, int channel) {
    const float keyed = workspace.channel(channel).noise;
    if (keyed > 0) return {static_cast<double>(keyed), NoiseSource::keyed};
    if (as_fitted(workspace)) {
        const auto& fitted = channel == channel_mag ? workspace.fit->mag : workspace.fit->grav;
        if (fitted && fitted->noise > 0) return {fitted->noise, NoiseSource::fitted};
    }
    const double estimate = estimated_noise(workspace, channel);
    return estimate > 0 ? ChannelNoise{estimate, NoiseSource::estimated} : ChannelNoise{};
}

std::optional<FitQuality> fit_quality(const Workspace& workspace, int channel) {
    auto quality = fit_quality(workspace, channel, {});
    if (quality) quality->noise = channel_noise(workspace, channel);
    return quality;
}

std::optional<FitQuality> fit_quality(const Workspace& workspace, int channel, const ChannelNoise& noise) {
    const Window window = window_of(workspace);
    const ChannelTable& rows = workspace.channel(channel).data;
    if (!has_channel(workspace, channel) || window.count == 0 || rows.stations() < workspace.station_count)
        return std::nullopt;
    const auto row = [&](int stage) {
        return rows.row(workspace.residual_row, stage).subspan(window.first, window.count);
    };
    const Residuals residuals = residuals_of(row(stage_observed), row(stage_calculated));
    if (residuals.stations == 0) return std::nullopt;
    return FitQuality{residuals.stations, std::sqrt(residuals.sum / residuals.stations), noise};
}

std::string quantity_text(double value, int digits, std::string_view unit) {
    const double size = std::abs(value);
    int decimals = digits - 1;
    if (size > 0 && std::isfinite(size)) decimals -= static_cast<int>(std::floor(std::log10(size)));
    constexpr int most_decimals = 12;
    decimals = std::clamp(decimals, 0, most_decimals);
    const std::string pattern =
        decimals > 0 ? "0." + std::string(static_cast<std::size_t>(decimals), '0') : "0";
    return (std::isfinite(value) ? format_number(value, pattern) : "beyond all numbers") + " " +
           std::string(unit);
}

std::string fit_quality_text(const FitQuality& quality, int channel) {
    constexpr int rms_digits = 4, noise_digits = 2;
    const std::string_view unit = channel_unit(channel);
    std::string text = "rms " + quantity_text(quality.rms, rms_digits, unit) + " over " +
                       std::to_string(quality.stations) + (quality.stations == 1 ? " station" : " stations");
    const double noise = quality.noise.value;
    if (!(noise > 0) || !std::isfinite(quality.rms)) return text;
    return text + ", " + format_number(quality.rms / noise, "0.0") + " times the noise of " +
           quantity_text(noise, noise_digits, unit);
}

}  // namespace anomalis::show
