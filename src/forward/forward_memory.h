#pragma once

#include <memory>
#include <span>
#include <vector>

#include "core/workspace.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/shape/body_solid.h"

namespace anomalis::forward {

/// What one thread of the forward room keeps between calculations, so that a moved body costs no new memory.
struct BodyMemory {
    Polyhedron polyhedron;
    PlainSolid plain_solid;
    std::vector<double> anomaly, attraction;  ///< one a station
};

/// Of all threads of a calculation; each has been used by one body after the other.
struct ForwardMemory {
    std::vector<std::unique_ptr<BodyMemory>> threads;
};

/// The memory of one thread, numbered from 0, for the stations of the workspace.
inline BodyMemory& body_memory(Workspace& workspace, std::size_t thread = 0) {
    auto& threads = workspace.forward_memory.get<ForwardMemory>().threads;
    while (threads.size() <= thread) threads.push_back(std::make_unique<BodyMemory>());
    BodyMemory& memory = *threads[thread];
    memory.anomaly.resize(static_cast<std::size_t>(workspace.station_count));
    memory.attraction.resize(static_cast<std::size_t>(workspace.station_count));
    return memory;
}

/// The stations for the polyhedron.
StationSpans station_spans(const Workspace& workspace);

/// Rounds values to single precision into a column of the body's response.
void store_values(const Workspace& workspace, ModelBody& body, int column, std::span<const double> values);

}  // namespace anomalis::forward
