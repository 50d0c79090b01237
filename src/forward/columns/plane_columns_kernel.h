#pragma once

#include "forward/columns/weighted_columns.h"
#include "forward/exact/plane_kernel.h"

// Columns of bodies in the plane across strike: at each station a few functions share their logarithms,
// angles and quotients, and every column is a weighted sum of them. w = corner - station as complex numbers,
// corners as in `PlaneStrip`; E = R - P; y is the station's place along strike; real and imaginary parts
// stand side by side.
namespace anomalis::forward {

namespace anomaly_term {
/// ln |w1 w3 / (w2 w4)|^2 and the angle of that quotient; 1 inside the body.
enum : int {
    log,
    angle,
    inside,
    shift,
    shift_along = shift + 2,
    far_top = shift_along + 2,
    lower = far_top + 2
};
/// Parallelogram: shift (w1 + w3) / (w1 w2 w3 w4), far_top 1 / (w2 w3), lower 1 / (w3 w4).
inline constexpr int count = lower + 2;
/// Endless walls: shift 1 / (w1 w2), far_top 1 / w2.
inline constexpr int endless_count = lower;
}  // namespace anomaly_term

namespace mass_term {
/// With the logarithms l1 to l4 of w2 / w1, w3 / w2, w4 / w3 and w1 / w4: l1 + l3, l2 + l4; both times y; l2,
/// l3, w1 (l1 + l3) + G l3, w1 (l2 + l4) + E l2; the attraction before its factor.
enum : int {
    level = 0,
    steep = 2,
    level_along = 4,
    steep_along = 6,
    far_side = 8,
    lower = 10,
    top_turn = 12,
    side_turn = 14,
    sum = 16,
    count
};
}  // namespace mass_term

namespace wall_term {
/// With l = ln(w2 / w1) and m1, m2 the logarithms of w1 / D and w2 / D for walls along the unit vector D: l,
/// m2 - m1; both times y; w1 l, m2, w2 m2 - w1 m1; 1; the attraction before its factor.
enum : int {
    top = 0,
    walls = 2,
    top_along = 4,
    walls_along = 6,
    top_turn = 8,
    far_wall = 10,
    wall_turn = 12,
    one = 14,
    sum = 15,
    count
};
}  // namespace wall_term

ANOMALIS_VECTOR_KERNEL(void, strip_anomaly_columns,
                       (const StationView& stations, const BodyFrame& frame, const PlaneStrip& strip,
                        const WeightedColumns& columns, double* anomaly))
ANOMALIS_VECTOR_KERNEL(void, strip_gravity_columns,
                       (const StationView& stations, const BodyFrame& frame, const PlaneMass& mass,
                        const WeightedColumns& columns, double* attraction))

}  // namespace anomalis::forward
