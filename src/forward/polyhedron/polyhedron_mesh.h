#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "forward/polyhedron/polyhedron.h"

namespace anomalis {
class Pacer;
}  // namespace anomalis

namespace anomalis::forward {

/// A station this near to an edge or a corner stands on it, as a part of the body's radius.
inline constexpr double edge_clearance = 1e-8;

/// What the kernel of the polyhedron needs to know of a shape, in unit coordinates: moved to the middle of
/// the bounding box and scaled by a power of two so that the largest half side lies in 0.5 to 1. The scale is
/// exact and spares survey coordinates of seven digits their cancellation.
struct PolyhedronMesh {
    struct Face {
        std::array<std::int32_t, 3> corner;
        Point3 area;                          ///< outward normal times twice the area
        Point3 normal;                        ///< of length 1
        std::array<double, 3> opposite_side;  ///< squared length of the side that corner i does not touch
    };
    struct Edge {
        std::array<std::int32_t, 2> end;
        std::int32_t face;  ///< one of its faces
        double length;
        Tensor3 dyad;  ///< sum over its faces of normal times the in-plane normal of the edge
    };

    Point3 centre;     ///< of the bounding box, survey coordinates, m
    double scale = 1;  ///< unit coordinates = (survey coordinates - centre) * scale
    double radius = 0;
    /// A station that is no farther inside a face than this, in unit coordinates, stands outside it: 1e-9 m
    /// and what the rounding of the corners may have moved the face, but never as much as the clearance of
    /// edges.
    double face_tolerance = 0;
    double rounding = 0;  ///< how far that of the survey coordinates may have moved a corner
    double volume = 0;    ///< in unit coordinates; not negative when closed
    Point3 centroid;      ///< in unit coordinates
    bool finite = true;   ///< false when a corner is not a number or not finite
    bool closed = false;
    std::vector<Point3> vertices;  ///< each place once, in the order of first use
    std::vector<Face> faces;
    std::vector<Edge> edges;  ///< without those between coplanar faces, whose dyad is zero

    /// Takes a new shape; see Polyhedron::assign.
    void build(std::span<const Point3> points, std::span<const Facet> facets, Pacer& pacer);
    Point3 to_unit(const Point3& place) const;

  private:
    struct HalfEdge {
        std::int32_t other;  ///< the end with the larger number
        std::int32_t face;
        std::int32_t sense;  ///< +1 when the face runs from the smaller number to the larger
    };

    void clear();
    double place_unit_frame(std::span<const Point3> points, std::span<const Facet> facets);
    void weld(std::span<const Point3> points, std::span<const Facet> facets);
    std::int32_t vertex_at(const Point3& unit);
    void build_faces();
    void sort_half_edges();
    template <class Use>
    void each_edge(Use&& use) const;
    void check_closed();
    void orient();
    void build_edges();
    void add_edge(std::int32_t from, std::span<const HalfEdge> sides);

    std::vector<Facet> corners_;              ///< welded facets
    std::vector<std::int32_t> point_vertex_;  ///< vertex of each given point, -1 before its first use
    std::vector<std::int32_t> table_;         ///< open addressing over the vertices
    std::vector<HalfEdge> half_edges_;        ///< grouped by their smaller end, then by their larger
    std::vector<std::int32_t> first_half_edge_;
};

}  // namespace anomalis::forward
