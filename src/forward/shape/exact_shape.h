#pragma once

#include <array>
#include <cstdint>

#include "core/model_body.h"

// The geometry of the bodies for the exact formulas and for the drawings that go with them. x across
// strike, y along it, z up, from the reference point at `top`; m.
namespace anomalis::forward {

/// An edge or a step without a depth extent ends this far down, m; the gravity of a sheet without lower end
/// and without limits along strike has the level of one that ends there.
inline constexpr double deepest = 100000.0;

/// The cotangent of a dip, held between -100 and 100: a flatter body counts as 0.573 degrees from the
/// horizontal on its own side. 0 and 360 lean to the + side, 180 to the - side.
double dip_cotangent(double dip);

/// A thin or thick sheet. Its top runs from (0, 0) to (width, rise); its walls go down by the cotangent.
struct SheetShape {
    double cotangent = 0;
    double width = 0;  ///< horizontal, of the top; of a thin sheet its thickness / sin dip
    double rise = 0;   ///< of the sloping top over `width`
    double depth = 0;  ///< vertical extent of the walls, negative upward; 0: without end
    bool limited = false;
    double near_end = 0, far_end = 0;  ///< along strike, when limited
    double plunge = 0;                 ///< metres down a metre along strike
    bool meets = true;                 ///< false: the sloping top does not meet the far wall

    bool empty() const { return width == 0; }
    /// The end of the wall that begins at (0, 0).
    double foot() const { return cotangent * depth; }
};
SheetShape sheet_shape(const ModelBody& body);

/// The eight corners of a limited sheet that has a lower end: 1 to 4 round the top, 5 to 8 below them.
std::array<Point3, 8> sheet_corners(const SheetShape& sheet);

/// The face of an edge or a step: from (0, 0) to (run, -depth); the body is all on its + side.
struct StepShape {
    double run = 0;
    double depth = 0;  ///< negative upward
};
StepShape step_shape(const ModelBody& body);

/// A pipe. Its ring has the area of its circle, one corner on the + side of the strike.
struct PipeShape {
    std::int32_t sectors = 12;
    double outer = 0;  ///< from the axis to a corner
    double inner = 0;  ///< the same of the hole; 0: solid
    double cap = 0;    ///< thickness of the closed ends of a hollow pipe; 0: open
    bool limited = false;
    double near_end = 0, far_end = 0;   ///< along the axis, when limited
    double cos_fall = 1, sin_fall = 0;  ///< of the angle of the axis below the horizontal

    double length() const { return far_end - near_end; }
};
/// Raises a Fault for a pipe that is not affordable (see forward/body_price.h).
PipeShape pipe_shape(const ModelBody& body);

/// Area of a regular polygon.
double ring_area(std::int32_t sectors, double corner_distance);

}  // namespace anomalis::forward
