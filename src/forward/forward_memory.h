#pragma once

#include <memory>
#include <span>
#include <vector>

#include "core/faults.h"
#include "core/workspace.h"
#include "forward/exact/exact_notes.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/shape/body_solid.h"

namespace anomalis::forward {

/// What one thread of the forward room keeps between calculations, so that a moved body costs no new memory.
struct BodyMemory {
    Polyhedron polyhedron;
    PlainSolid plain_solid;
    std::vector<double> anomaly, attraction;  ///< one a station, where a body needs them in double precision
    Faults mag_faults, grav_faults;           ///< of the body at hand
    ExactNotes notes;
};

/// A body whose responses are out of date.
struct BodyOrder {
    int number;
    bool mag, grav;  ///< the channels that are wanted
    double work;     ///< units of core/pacer.h
    bool done;
};

struct ForwardMemory {
    std::vector<std::unique_ptr<BodyMemory>> threads;
    std::vector<BodyOrder> orders;
};

inline ForwardMemory& forward_memory(Workspace& workspace) {
    return workspace.forward_memory.get<ForwardMemory>();
}

/// That of one thread, numbered from 0.
inline BodyMemory& body_memory(ForwardMemory& memory, std::size_t thread = 0) {
    while (memory.threads.size() <= thread) memory.threads.push_back(std::make_unique<BodyMemory>());
    return *memory.threads[thread];
}

/// One value a station.
inline std::span<double> station_values(std::vector<double>& values, const Workspace& workspace) {
    values.resize(static_cast<std::size_t>(workspace.station_count));
    return values;
}

/// The stations for the polyhedron.
StationSpans station_spans(const Workspace& workspace);

/// Rounds values to single precision into a column of the body's response.
void store_values(const Workspace& workspace, ModelBody& body, int column, std::span<const double> values);

}  // namespace anomalis::forward
