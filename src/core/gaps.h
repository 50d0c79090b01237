#pragma once

#include <span>
#include <vector>

namespace anomalis {

struct Workspace;

/// Stations `first` to `last`, numbered from 1.
struct Stretch {
    int first = 1, last = 0;
    bool operator==(const Stretch&) const = default;
};

/// True for a reading that is there: above `missing_limit`, and a number.
bool is_reading(double value);

/// The stretches of a channel (0 magnetics, 1 gravity) that hold a reading at every station and no gap above
/// `Workspace::gap_distance` (m; 0 for none): filters, interpolation and curves stay within one. One stretch
/// of all stations for a line without gaps; none when nothing was read.
std::vector<Stretch> channel_stretches(const Workspace& workspace, int channel);

}  // namespace anomalis
