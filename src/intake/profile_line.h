#pragma once

#include "core/workspace.h"

namespace anomalis::intake {

/// From the first of some stations to the last, m.
struct ProfileLine {
    double dx = 0;
    double dy = 0;
    double length = 0;

    bool long_enough() const { return length > 0; }
    /// A profile runs towards the east when it is more east-west than north-south, else towards the north.
    bool runs_backwards() const;
};

/// The line through rows 1 and `count`. Raises Fault overflow when its length does not fit.
ProfileLine profile_line(const StationTable& stations, int count);

/// Sets the origin, the unit normal, the constant and the azimuth of the line from row 1 of `stations`.
void set_line_geometry(const ProfileLine& line, const StationTable& stations, Workspace& workspace);

/// Distance of a point along the profile, m. Raises Fault overflow when it does not fit.
double distance_along(const Workspace& workspace, double east, double north);

}  // namespace anomalis::intake
