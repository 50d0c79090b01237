#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace anomalis {

struct Workspace;

/// Stations `first` to `last`, numbered from 1. A reading stands at both ends; where the gap to the next one
/// is no wider than counts, some stations between may lack theirs.
struct Stretch {
    int first = 1, last = 0;
    bool operator==(const Stretch&) const = default;
};

/// True for a reading that is there: above `missing_limit`, and a number.
bool is_reading(double value);

/// What bounds a stretch of readings.
struct GapRule {
    double distance = 0;      ///< m; stations farther apart do; 0: no distance does
    bool every_null = false;  ///< each missing reading does: a line that was resampled has none but in gaps
};
/// Of the stations as the file has them, and of those that are there now. A person who merges stations to a
/// coarser spacing widens what counts as a gap to three of it.
GapRule gap_rule_as_read(const Workspace& workspace);
GapRule gap_rule(const Workspace& workspace);

/// The stretches of readings at rising distances (m); `readings` empty: one is at every station. Readings
/// beyond the rule's distance bound a gap. A channel that is read at fewer stations than there are (gravity
/// among magnetics) has a wider one by as much as its typical spacing is wider. Readings on both sides of
/// missing ones, without any distance in the rule, may be three typical spacings of the channel apart.
std::vector<Stretch> find_stretches(std::span<const double> distances, std::span<const float> readings,
                                    const GapRule& rule);

/// Where a channel has readings.
struct ChannelGaps {
    bool none = true;  ///< a reading at every station and no gap between them
    std::vector<Stretch> stretches = {};
};

/// Of a row of observed readings of the line as it stands.
ChannelGaps gaps_of_row(const Workspace& workspace, std::span<const float> readings);
/// Of the observed readings of a channel (0 magnetics, 1 gravity).
ChannelGaps channel_gaps(const Workspace& workspace, int channel);

/// The stretches that filters, interpolation and curves of a channel (0 magnetics, 1 gravity) stay within.
/// One stretch of all stations for a line without gaps (`Workspace::gap_distance`, m; 0 for none); none when
/// nothing was read.
std::vector<Stretch> channel_stretches(const Workspace& workspace, int channel);
/// The same of the stations themselves, whatever was read there.
std::vector<Stretch> station_stretches(const Workspace& workspace);

/// Stations from `first` to `last` at which a channel has a reading, rising.
std::vector<int> reading_stations(const Workspace& workspace, int channel, int first, int last);

/// Stations at which a channel has no reading; 0 without a column or a line.
int count_missing(const Workspace& workspace, int channel);

}  // namespace anomalis
