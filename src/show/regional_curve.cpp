#include "show/regional_curve.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "core/gaps.h"
#include "core/workspace.h"
#include "edit/view_state.h"

namespace anomalis::show {

namespace {

/// The regional that was taken off a curve, and the stations that it was found over, from 0, the last one
/// included.
struct FittedRegional {
    const Regional* regional;
    std::span<const double> distances;  ///< m, of all stations
    std::size_t first, last;

    double at(std::size_t station) const { return regional->at(distances[station]); }
    bool fitted(std::size_t station) const { return station >= first && station <= last; }
};

std::optional<FittedRegional> regional_of_chart(const Workspace& workspace, int chart) {
    if (chart != edit::chart_mag && chart != edit::chart_grav) return std::nullopt;
    const Regional& regional =
        workspace.channel(chart == edit::chart_mag ? channel_mag : channel_grav).regional;
    const int first = std::max(workspace.first_station, 1);
    const int last = std::min(workspace.last_station, workspace.station_count);
    if (regional.degree == no_regional || first > last) return std::nullopt;
    return FittedRegional{&regional,
                          workspace.distances.span().first(static_cast<std::size_t>(workspace.station_count)),
                          static_cast<std::size_t>(first - 1), static_cast<std::size_t>(last - 1)};
}

}  // namespace

std::vector<float> regional_curve(const Workspace& workspace, int chart) {
    const std::optional<FittedRegional> found = regional_of_chart(workspace, chart);
    if (!found) return {};
    double sum = 0;
    for (std::size_t i = found->first; i <= found->last; ++i) sum += found->at(i);
    const double mean = sum / static_cast<double>(found->last - found->first + 1);
    std::vector<float> curve(found->distances.size(), -1e32F);
    for (std::size_t i = found->first; i <= found->last; ++i)
        curve[i] = static_cast<float>(found->at(i) - mean);
    return curve;
}

std::vector<float> with_regional_held(const Workspace& workspace, int chart,
                                      std::span<const float> observed) {
    const std::optional<FittedRegional> found = regional_of_chart(workspace, chart);
    if (!found || found->regional->degree == 0) return {};
    if (found->first == 0 && found->last + 1 == found->distances.size()) return {};
    std::vector<float> held(observed.begin(), observed.end());
    const double before = found->at(found->first), behind = found->at(found->last);
    for (std::size_t i = 0; i < std::min(held.size(), found->distances.size()); ++i) {
        const auto value = static_cast<double>(held[i]);
        if (found->fitted(i) || !is_reading(value)) continue;
        held[i] = static_cast<float>(value + found->at(i) - (i < found->first ? before : behind));
    }
    return held;
}

}  // namespace anomalis::show
