#pragma once

#include "forward/station_view.h"
#include "vector/vector_levels.h"

// Bodies without end along strike, in the plane across it: x across, z up from the top, m. With w = corner -
// station as complex numbers, an edge from corner 1 to corner 2 of a body on its left gives
//   magnetics  Re[c ln(w1 / w2)],  c = 2 sigma f / tau,  sigma = -Im(J conj tau)
//   gravity    2 G rho Im[(Im(conj(w1) D) / D) ln(w2 / w1)],  D = corner 2 - corner 1
// (tau unit vector of the edge, J magnetisation, f direction of the field). The principal branch is the angle
// that the edge subtends.
namespace anomalis::forward {

/// Logarithms keep their value at this distance from a corner, m.
inline constexpr double least_corner_distance = 0.001;
/// A station this near to a face stands outside it, m.
inline constexpr double face_tolerance = 1e-9;

/// A parallelogram with the corners P, R, R + G, P + G; or, when endless, the half strip between two walls
/// that run off from P and R along the unit vector G. The body is to the left of P to R.
struct PlaneStrip {
    double px, pz, rx, rz, gx, gz;
    bool endless;
    double log_factor;    ///< Re(c1 - c2) / 2, c1 of the edge from P to R, c2 of the one from R along G
    double angle_factor;  ///< Im(c1 - c2)
    double inside_term;   ///< what is added inside: 2 pi Im(c2)
};

/// A closed polygon, its first corner repeated at the end.
struct PlanePolygon {
    const double* x;
    const double* z;
    const double* log_factor;    ///< Re(c) / 2 of each edge
    const double* angle_factor;  ///< Im(c)
    int edges;
};

/// A regular polygon about the reference point, one corner on the + side. From twice the corner distance on
/// its field is a short series, z the station: the moments of the polygon vanish but for every `edges`th.
///   magnetics  Re[moment / z^2 (1 + a1 u + a2 u^2 ...)],  u = (corner distance / z)^edges,  ak = 2 / (k
///   edges + 2) gravity    -Im[mass / z (1 + a1 u ...)],  ak = 2 / ((k edges + 1) (k edges + 2))
struct PlaneRing {
    PlanePolygon polygon;  ///< what the magnetics of a near station is made of
    double corner_distance;
    double moment_re, moment_im;  ///< 2 f J area
    double mass;                  ///< 2 G rho area
    double factor;                ///< 2 G rho
};

/// An open row of edges for gravity; when `walls` is set, two endless walls join its ends: one arrives at the
/// first corner, one leaves from the last, along the unit vector (dx, dz).
struct PlaneMass {
    const double* x;
    const double* z;
    int edges;
    bool walls;
    double dx, dz;
    double level;   ///< added to the sum
    double factor;  ///< 2 G rho
};

ANOMALIS_VECTOR_KERNEL(void, strip_magnetics,
                       (const StationView& stations, const BodyFrame& frame, const PlaneStrip& strip,
                        double* anomaly))
ANOMALIS_VECTOR_KERNEL(void, add_ring_magnetics,
                       (const StationView& stations, const BodyFrame& frame, const PlaneRing& ring,
                        double* anomaly))
ANOMALIS_VECTOR_KERNEL(void, add_ring_gravity,
                       (const StationView& stations, const BodyFrame& frame, const PlaneRing& ring,
                        double* attraction))
/// Adds to `anomaly`.
ANOMALIS_VECTOR_KERNEL(void, add_polygon_magnetics,
                       (const StationView& stations, const BodyFrame& frame, const PlanePolygon& polygon,
                        double* anomaly))
/// Adds to `attraction`.
ANOMALIS_VECTOR_KERNEL(void, add_plane_gravity,
                       (const StationView& stations, const BodyFrame& frame, const PlaneMass& mass,
                        double* attraction))

}  // namespace anomalis::forward
