#include "inversion/line_place.h"

#include <algorithm>

namespace anomalis::inversion {

double elevation_at(const Workspace& workspace, double distance, StationColumn column) {
    const auto places = workspace.distances.span();
    const auto heights = workspace.stations.column(column);
    const std::size_t count = std::min(places.size(), heights.size());
    if (count == 0) return 0;
    const auto after = std::ranges::lower_bound(places.first(count), distance);
    const auto i = static_cast<std::size_t>(after - places.begin());
    if (i == 0) return heights[0];
    if (i >= count) return heights[count - 1];
    const double width = places[i] - places[i - 1];
    const double part = width > 0 ? (distance - places[i - 1]) / width : 1.0;
    return heights[i - 1] + part * (heights[i] - heights[i - 1]);
}

}  // namespace anomalis::inversion
