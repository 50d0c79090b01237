#pragma once

#include <span>

#include "forward/exact/exact_plane.h"

// The sphere, which is a point from outside, and straight wires.
namespace anomalis::forward {

/// Field in nT at 1 m from a current of 1 mA.
inline constexpr double field_of_unit_current = 0.2;

void fill_sphere_anomaly(const ExactPlace& place, double radius, const ExactField& field,
                         std::span<double> values);
void fill_sphere_gravity(const ExactPlace& place, double radius, double density, std::span<double> values);

/// The endless wire of a body, or the pair of opposite ones when it has a separation: what its field adds to
/// the strength of the ambient one.
void fill_wire_anomaly(const ExactPlace& place, const ModelBody& body, const ExactField& field,
                       std::span<double> values);

}  // namespace anomalis::forward
