#pragma once

#include <array>
#include <span>

#include "core/model_body.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/shape/exact_shape.h"

// Demagnetising tensors of shapes (SI, trace 1): the mean over the material of the field that uniform
// magnetisation raises against itself. In the axes of the body: x across strike, y along it, z up.
namespace anomalis::forward {

Tensor3 slab_demagnetisation();    ///< of an edge or a step: 1 up
Tensor3 sphere_demagnetisation();  ///< 1/3 each way

/// A sheet: along the normal of its walls when it is endless in depth and strike, in the plane across its
/// endless direction when it has one, of its parallelepiped otherwise.
Tensor3 sheet_demagnetisation(const SheetShape& sheet);

/// A pipe, solid or hollow: 1/2 across when it is endless; else by the poles of its end faces.
Tensor3 pipe_demagnetisation(const PipeShape& pipe);

/// The parallelogram of the plane that `side1` and `side2` span, endless at right angles to it: the tensor's
/// xx, xz, zz in the axes of the plane.
std::array<double, 3> plane_demagnetisation(std::array<double, 2> side1, std::array<double, 2> side2);

/// The parallelepiped of three edges.
Tensor3 prism_demagnetisation(const std::array<Point3, 3>& edges);

/// The magnetisation of a body of susceptibility `chi` (SI) that `plain` would have without its own field.
/// -1 and below have no such magnetisation: `plain` comes back.
Point3 demagnetised(const Tensor3& tensor, double chi, const Point3& plain);

}  // namespace anomalis::forward
