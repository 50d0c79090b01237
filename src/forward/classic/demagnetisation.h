#pragma once

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/classic/field_coefficients.h"
#include "forward/polyhedron/polyhedron.h"

namespace anomalis::forward {

/// The uniform magnetisation of a pipe under its own field, M = (I + chi N)^-1 (J induced + J remanent), with
/// N the demagnetising tensor of its solid and chi in SI: at the centroid of a full one, averaged over the
/// points in the middle of the wall of every sector and segment of a hollow one. A segment costs one point,
/// whose tensor is that of the solid without segments, as the walls are plane. The solid must be placed; its
/// two factors are kept until its shape changes. `polyhedron` is used as working memory. Raises Fault
/// division_by_zero where 1 + chi N is 0.
Magnetisation demagnetised_pipe(ModelBody& body, const Magnetisation& plain, Polyhedron& polyhedron,
                                Pacer& pacer = no_pace());

}  // namespace anomalis::forward
