#include "flow/fit_window.h"

#include <algorithm>

#include "core/numbers.h"
#include "core/workspace.h"

namespace anomalis::flow {

namespace {

std::string metres(double first, double last) {
    return format_number(first, "0.0") + " to " + format_number(last, "0.0") + " m";
}

}  // namespace

std::string choose_fit_window(Workspace& workspace, const DistanceWindow& window) {
    const auto all = workspace.distances.span().first(static_cast<std::size_t>(workspace.station_count));
    const auto first = std::ranges::lower_bound(all, window.first);
    const auto last = std::ranges::upper_bound(all, window.last);
    const auto stations = last - first;
    if (stations < 2) {
        const std::string line =
            all.empty() ? "has no stations" : "runs from " + metres(all.front(), all.back());
        return "The window " + metres(window.first, window.last) + " holds " +
               (stations == 1 ? "one station" : "no station") + " of the line, which " + line;
    }
    workspace.first_station = static_cast<std::int32_t>(first - all.begin()) + 1;
    workspace.last_station = static_cast<std::int32_t>(last - all.begin());
    workspace.first_distance = workspace.distances[workspace.first_station];
    workspace.last_distance = workspace.distances[workspace.last_station];
    return {};
}

}  // namespace anomalis::flow
