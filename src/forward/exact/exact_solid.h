#pragma once

#include <span>
#include <vector>

#include "core/pacer.h"
#include "forward/exact/exact_plane.h"
#include "forward/polyhedron/polyhedron.h"

// Bodies with an end on every side, by the kernel of polyhedra.
namespace anomalis::forward {

/// The closed surface of a pipe that ends, in east, north and up, m.
struct PipeMesh {
    std::vector<Point3> points;
    std::vector<Facet> facets;
};
PipeMesh pipe_mesh(const BodyFrame& frame, const PipeShape& pipe);

/// Takes the body's surface into the kernel.
void assign_prism(const BodyFrame& frame, const SheetShape& sheet, Polyhedron& polyhedron,
                  Pacer& pacer = no_pace());
void assign_pipe(const BodyFrame& frame, const PipeShape& pipe, Polyhedron& polyhedron,
                 Pacer& pacer = no_pace());

void fill_solid_anomaly(const ExactPlace& place, const ExactField& field, Polyhedron& polyhedron,
                        std::span<double> values, Pacer& pacer = no_pace());
/// Both in one pass, each with the bits that it has alone.
void fill_solid_responses(const ExactPlace& place, const ExactField& field, double density,
                          Polyhedron& polyhedron, std::span<double> anomaly, std::span<double> attraction,
                          Pacer& pacer = no_pace());
void fill_solid_gravity(const ExactPlace& place, double density, Polyhedron& polyhedron,
                        std::span<double> values, Pacer& pacer = no_pace());

}  // namespace anomalis::forward
