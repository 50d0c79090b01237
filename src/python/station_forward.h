#pragma once

#include <optional>
#include <span>
#include <vector>

#include "core/faults.h"
#include "core/formulas.h"
#include "core/pacer.h"
#include "core/workspace.h"

// What bodies give at stations that no workspace holds. Knows nothing of Python.
namespace anomalis::python {

/// Stations as they stand in somebody's memory, m; all of one length.
struct StationArrays {
    std::span<const double> east, north, elevation;
};

/// Along what the distances of bodies are counted.
struct PlacedLine {
    double east = 0, north = 0;  ///< of distance 0, m
    double bearing = 0;          ///< towards rising distances, degrees clockwise from north
};

struct ForwardRequest {
    std::vector<ModelBody> bodies;
    EarthField field;
    Formulas formulas = Formulas::exact;
    bool mag = true, grav = false;
    /// None: the stations are a profile in their order, as a workspace lays it out: from the first to the
    /// last, turned so that it runs to the east or the north.
    std::optional<PlacedLine> line;
};

/// Sums over all bodies, one a station, in double precision; empty for a channel that is not wanted.
struct ForwardResult {
    std::vector<double> mag;   ///< nT
    std::vector<double> grav;  ///< mGal
    Faults faults;
};

/// The exact formulas read the stations where they are; the classic ones, which calculate in single
/// precision, a copy. Each body has the bits that it has in a workspace, before these are rounded to singles;
/// bodies are added in their order, however many cores work at them. What goes wrong is noted, and the body
/// counts as zero. Raises Fault (no numbers, stations that do not advance along their line), Stopped.
ForwardResult forward_at(const ForwardRequest& request, const StationArrays& stations,
                         Pacer& pacer = no_pace());

}  // namespace anomalis::python
