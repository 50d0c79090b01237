#pragma once

#include <vector>

#include "core/workspace.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/shape/body_solid.h"

namespace anomalis::forward {

/// What the forward room keeps between calculations, so that a moved body costs no new memory.
struct ForwardMemory {
    Polyhedron polyhedron;
    PlainSolid plain_solid;
    std::vector<double> values;  ///< one a station
};

inline ForwardMemory& forward_memory(Workspace& workspace) {
    ForwardMemory& memory = workspace.forward_memory.get<ForwardMemory>();
    memory.values.resize(static_cast<std::size_t>(workspace.station_count));
    return memory;
}

/// The stations for the polyhedron.
StationSpans station_spans(const Workspace& workspace);

/// Rounds values to single precision into a column of the body's response.
void store_values(const Workspace& workspace, ModelBody& body, int column, std::span<const double> values);

}  // namespace anomalis::forward
