#include "show/broken_line.h"

#include <algorithm>
#include <numeric>

#include "core/workspace.h"

namespace anomalis::show {

void BrokenLine::add(const Workspace& workspace, const std::vector<int>& stations) {
    if (stations.empty()) return;
    if (!stations_.empty()) {
        stations_.push_back(0);
        distances_.push_back(distances_.back());
    }
    for (const int station : stations) {
        stations_.push_back(station);
        distances_.push_back(workspace.distances[station]);
    }
}

BrokenLine BrokenLine::of_channel(const Workspace& workspace, int channel, int first, int last) {
    BrokenLine line;
    const ChannelGaps gaps = channel_gaps(workspace, channel);
    line.whole_ = gaps.none;
    for (const Stretch& stretch : gaps.stretches)
        line.add(workspace, reading_stations(workspace, channel, std::max(stretch.first, first),
                                             std::min(stretch.last, last)));
    return line;
}

BrokenLine BrokenLine::gaps_of_channel(const Workspace& workspace, int channel) {
    if (channel_gaps(workspace, channel).none) return {};
    return of_channel(workspace, channel, 1, workspace.station_count);
}

BrokenLine BrokenLine::gaps_of_stations(const Workspace& workspace) {
    BrokenLine line;
    const std::vector<Stretch> stretches = station_stretches(workspace);
    line.whole_ = stretches.size() < 2;
    if (line.whole_) return line;
    for (const Stretch& stretch : stretches) {
        std::vector<int> stations(static_cast<std::size_t>(stretch.last - stretch.first) + 1);
        std::iota(stations.begin(), stations.end(), stretch.first);
        line.add(workspace, stations);
    }
    return line;
}

}  // namespace anomalis::show
