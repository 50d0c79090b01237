#include "edit/new_body_size.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

#include "core/body_parameters.h"
#include "core/faults.h"
#include "core/gaps.h"
#include "core/numbers.h"
#include "core/settings.h"
#include "core/workspace.h"
#include "edit/view_state.h"
#include "forward/body_columns.h"

namespace anomalis::edit {

namespace {

constexpr double part_of_view = 30, part_of_range = 3, least_spacings = 2;
/// Depth extent and length are to the width as those of the usual body.
constexpr double usual_slenderness = 2.5;

/// Rock has these; a body too small or too deep to be seen with them is not made of another stuff.
constexpr double least_susceptibility = 10, most_susceptibility = 1e6;  // micro SI
constexpr double least_contrast = 0.01, most_contrast = 1;              // g/cc

bool kept(const Settings& settings, std::string_view key) {
    return is_numeric(settings.get(settings_section, key));
}

/// The nearest of 1, 2 and 5 times a power of ten, by its logarithm.
double round_number(double value) {
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    double nearest = power;
    for (const double part : {2.0, 5.0, 10.0})
        if (std::abs(std::log(part * power / value)) < std::abs(std::log(nearest / value)))
            nearest = part * power;
    return nearest;
}

struct Shown {
    forward::StationRange stations;
    double span = 0;     ///< m
    double spacing = 0;  ///< m, of the line
};

Shown shown(const Workspace& workspace, const ViewState& view) {
    const auto all = workspace.distances.span().first(static_cast<std::size_t>(workspace.station_count));
    const double length = all.back() - all.front();
    const double spacing = length / std::max<double>(1, static_cast<double>(all.size()) - 1);
    if (!(view.window_span > 0)) return {{1, workspace.station_count}, length, spacing};
    const auto span = static_cast<double>(view.window_span);
    const double left = static_cast<double>(view.window_centre) - span / 2;
    const auto first = std::ranges::lower_bound(all, left) - all.begin();
    const auto end = std::ranges::upper_bound(all, left + span) - all.begin();
    return {{static_cast<std::int32_t>(first) + 1, static_cast<std::int32_t>(end)}, span, spacing};
}

template <class Value>
double range_of(std::span<const Value> values) {
    double low = empty_low, high = empty_high;
    for (const Value value : values) {
        if (!is_reading(static_cast<double>(value))) continue;
        low = std::min(low, static_cast<double>(value));
        high = std::max(high, static_cast<double>(value));
    }
    return low <= high ? high - low : 0;
}

/// Range of the observed curve in view, as the charts show it; 0 where there is none.
double observed_range(const Workspace& workspace, int channel, const forward::StationRange& stations) {
    const ChannelTable& data = workspace.channel(channel).data;
    if (stations.count() == 0 || data.stations() < stations.last) return 0;
    return range_of(data.row(workspace.residual_row, stage_observed)
                        .subspan(static_cast<std::size_t>(stations.first - 1), stations.count()));
}

/// Range of the body's own anomaly there.
double calculated_range(const Workspace& workspace, const ModelBody& body, int channel,
                        const forward::StationRange& stations) {
    ModelBody copy = body;
    forward::BodyBench bench;
    forward::ExactNotes exact;
    Faults unheard;  // the calculation that follows tells them
    forward::BodyNotes notes{1, exact, unheard};
    std::vector<double> values(stations.count());
    forward::body_values(workspace, copy, channel, stations, bench, values, notes);
    return range_of(std::span<const double>(values));
}

/// The anomaly is in proportion to the strength. False where the data tell none.
bool suit_strength(const Workspace& workspace, int channel, const Shown& view, double least, double most,
                   const ModelBody& body, BodyParam& strength) {
    const double wanted = observed_range(workspace, channel, view.stations) / part_of_range;
    if (!(wanted > 0)) return false;
    const double now = calculated_range(workspace, body, channel, view.stations);
    const double value = static_cast<double>(strength.value) * wanted / now;
    if (!(now > 0) || !std::isfinite(value) || !(value > 0)) return false;
    strength.value = to_single(std::clamp(round_number(value), least, most));
    return true;
}

void suit_size(const Shown& view, const Settings& settings, ModelBody& body) {
    const double width = std::max(view.span / part_of_view, least_spacings * view.spacing);
    if (!(width > 0) || !std::isfinite(width)) return;
    const auto take = [&](std::string_view key, BodyParam& param, double value) {
        if (!kept(settings, key)) param.value = to_single(round_number(value));
    };
    take("Thick", body.width, width);
    take("Depth", body.depth_extent, usual_slenderness * width);
    take("StrikeLength", body.length, usual_slenderness * width);
}

}  // namespace

void suit_new_body(const Workspace& workspace, const ViewState& view, const Settings& settings,
                   ModelBody& body) {
    if (workspace.station_count < 1) return;
    const Shown seen = shown(workspace, view);
    suit_size(seen, settings, body);
    const bool in_view = seen.stations.count() > 0;
    if (in_view && workspace.has_mag() && !kept(settings, "Susc"))
        suit_strength(workspace, channel_mag, seen, least_susceptibility, most_susceptibility, body,
                      body.susc);
    if (kept(settings, "Density")) return;
    const bool suited =
        in_view && workspace.has_grav() &&
        suit_strength(workspace, channel_grav, seen, least_contrast, most_contrast, body, body.density);
    if (!suited) body.density.value = 0;
}

}  // namespace anomalis::edit
