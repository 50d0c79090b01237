#pragma once

#include <span>

#include "core/workspace.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// A vector or a place in the right-handed frame of north, east and down, places relative to station 1, m.
struct NedVector {
    double north = 0, east = 0, down = 0;
};

NedVector operator-(const NedVector& a, const NedVector& b);
double dot(const NedVector& a, const NedVector& b);
NedVector cross_product(const NedVector& a, const NedVector& b);
double length(const NedVector& v);

/// The interior spherical angle (radians) at corner b of a face with unit normal `normal`, seen from the
/// origin; a and c are the corners before and after it. `sign` is -1 for a re-entrant corner, else 1.
/// 0 for a face seen edge on and where a product has no length.
double solid_angle_corner(const NedVector& a, const NedVector& b, const NedVector& c, const NedVector& normal,
                          double& sign);

/// One plane polygonal face with its unit normal and pole density. The corners are the caller's.
struct PlaneFace {
    std::span<const NedVector> corners;
    NedVector normal;
    double pole = 0;          ///< magnetisation along the normal
    bool has_normal = false;  ///< false for a face without area
};
PlaneFace make_face(std::span<const NedVector> corners, const NedVector& magnetisation);

/// A face whose pole density is below this adds nothing, not even its gravity.
inline constexpr double least_pole = 0.000001;

/// An edge that the observer sees closer than this (m) makes it move.
inline constexpr double near_edge = 0.1;

/// What a face gives at one observer: the field of a unit pole density, and the plane's distance.
struct FacetTerms {
    NedVector field;
    double distance = 0;
};

/// Solid angle and line integrals of the face. An observer that is close to the line of an edge is moved up
/// and aside, at most ten times. Raises Fault invalid_call where a logarithm has no argument.
FacetTerms facet_terms(const PlaneFace& face, NedVector observer);

struct FacetWanted {
    bool magnetic = false;
    bool gravity = false;
};

/// Adds one face of a uniform polyhedron to the body's response: magnetic components (nT) to columns 3 to 5
/// for a magnetisation in nT over 4 pi, gravity before density and constant, subtracted, to column 2. The
/// sense of the corners gives the sign. A failure is noted; what was added before it stays.
void calculate_facet_response(const Workspace& workspace, ModelBody& body, const FacetWanted& wanted,
                              const NedVector& magnetisation, std::span<const NedVector> corners,
                              Faults& faults);

}  // namespace anomalis::forward
