#pragma once

#include <span>

#include "forward/exact/exact_plane.h"
#include "forward/polyhedron/polyhedron.h"

// Bodies with an end on every side, by the kernel of polyhedra.
namespace anomalis::forward {

/// Takes the body's surface into the kernel.
void assign_prism(const BodyFrame& frame, const SheetShape& sheet, Polyhedron& polyhedron);
void assign_pipe(const BodyFrame& frame, const PipeShape& pipe, Polyhedron& polyhedron);

void fill_solid_anomaly(const ExactPlace& place, const ExactField& field, Polyhedron& polyhedron,
                        std::span<double> values);
void fill_solid_gravity(const ExactPlace& place, double density, Polyhedron& polyhedron,
                        std::span<double> values);

}  // namespace anomalis::forward
