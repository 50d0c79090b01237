#include "show/regional_curve.h"

#include <algorithm>

#include "core/workspace.h"
#include "edit/view_state.h"

namespace anomalis::show {

std::vector<float> regional_curve(const Workspace& workspace, int chart) {
    if (chart != edit::chart_mag && chart != edit::chart_grav) return {};
    const Regional& regional =
        workspace.channel(chart == edit::chart_mag ? channel_mag : channel_grav).regional;
    const int first = std::max(workspace.first_station, 1);
    const int last = std::min(workspace.last_station, workspace.station_count);
    if (regional.degree == no_regional || first > last) return {};
    double sum = 0;
    for (int i = first; i <= last; ++i) sum += regional.at(workspace.distances[i]);
    const double mean = sum / (last - first + 1);
    std::vector<float> curve(static_cast<std::size_t>(workspace.station_count));
    std::ranges::transform(workspace.distances.span().first(curve.size()), curve.begin(),
                           [&](double at) { return static_cast<float>(regional.at(at) - mean); });
    return curve;
}

}  // namespace anomalis::show
