#pragma once

#include "core/workspace.h"
#include "forward/station_view.h"

// The axes of a body: x across its strike, y along it, z up, from its reference point at `top`. A station
// enters by its own place alone, so the direction of the profile has no part in a response.
namespace anomalis::forward {

inline constexpr double exact_pi = 3.14159265358979323846;

/// Degrees to radians as exactly as a double can, so that a strike of 350 is one of -10.
inline double exact_radians(double degrees) {
    return degrees * (exact_pi / 180);
}

/// The frame of a body whose reference point is current.
BodyFrame exact_frame(const ModelBody& body);

/// A point or a vector of the body's axes in east, north, up.
Point3 placed(const BodyFrame& frame, const Point3& in_body);
Point3 turned_out(const BodyFrame& frame, const Point3& in_body);

/// The ambient field and the body's magnetisation in its axes.
struct ExactField {
    Point3 direction;      ///< unit vector of the ambient field
    double intensity = 0;  ///< nT
    Point3 magnetisation;  ///< induced and remanent, not demagnetised; nT with 4 pi divided out
};
ExactField exact_field(const Workspace& workspace, const ModelBody& body, const BodyFrame& frame);

}  // namespace anomalis::forward
