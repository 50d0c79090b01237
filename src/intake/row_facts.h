#pragma once

#include <string_view>
#include <vector>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

/// A place in the plane of the survey, m.
struct Place {
    double east = 0, north = 0;
};

/// A value that is far from all others of its column and looks like a mark for none.
struct SuspectValue {
    std::string_view channel;  ///< "magnetics", "gravity", "sensor height", "ground"
    double value = 0;
    long rows = 0;
    double least = 0, greatest = 0;  ///< of the other rows
};

/// A channel that keeps one value over many rows.
struct StuckValue {
    std::string_view channel;
    double value = 0;
    long rows = 0;
    Place from, to;  ///< its first and last row
};

/// What the rows of a data file are like, before they become stations of a profile.
struct RowFacts {
    long rows = 0;
    double typical_step = 0;  ///< m, median of those above 0
    double largest_step = 0;  ///< m
    Place before_largest_step, after_largest_step;
    double off_line = 0;              ///< m, greatest distance from the line through first and last row
    long duplicates = 0;              ///< rows at the very place of the row before
    long stretches = 1;               ///< between jumps and turns back
    bool bends = false;               ///< one of them by more than 20 degrees
    double stretches_length = 0;      ///< m, of all of them
    bool looks_like_degrees = false;  ///< longitudes and latitudes, by range and step
    long mag_nulls = 0, grav_nulls = 0;
    std::vector<SuspectValue> suspects;
    std::vector<StuckValue> stuck;  ///< the longest of each channel
};

/// Looks at the rows of a workspace whose stations stand as they were read, in the order of the file.
RowFacts facts_of_rows(const Workspace& workspace);

/// "nT" of "magnetics", "mGal" of "gravity", else "m".
std::string_view unit_of_channel(std::string_view channel);

}  // namespace anomalis::intake
