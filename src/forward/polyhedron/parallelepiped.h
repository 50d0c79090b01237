#pragma once

#include <array>
#include <optional>

#include "forward/polyhedron/parallelepiped_kernel.h"
#include "forward/polyhedron/polyhedron_mesh.h"
#include "forward/polyhedron/polyhedron_terms.h"

namespace anomalis::forward {

/// A mesh whose opposite faces are equal up to the rounding of its coordinates: a strike-limited sheet. Its
/// fields cost a quarter of those of its triangles and keep more digits far away.
class Parallelepiped {
  public:
    /// Nothing for a mesh that is none, or so flat that a station could stand on two of its faces.
    static std::optional<Parallelepiped> of(const PolyhedronMesh& mesh);

    /// What is wanted, folded into its edges and faces.
    ParallelepipedTerms fold(const PolyhedronMesh& mesh, const Wanted& wanted) const;

  private:
    struct Frame {
        Point3 outward[3];  ///< unit normals of the + sides
        double tilt[3];     ///< their vertical parts, 0 for a face that is vertical up to rounding
        double uncertain;   ///< of directions, radians
    };

    bool number_corners(const PolyhedronMesh& mesh);
    void find_sides(const PolyhedronMesh& mesh);
    void order_axes();
    bool fits(const PolyhedronMesh& mesh) const;
    bool is_thick(const PolyhedronMesh& mesh) const;
    Point3 corner(int number) const;
    Frame frame(const PolyhedronMesh& mesh) const;
    void fold_shape(const PolyhedronMesh& mesh, ParallelepipedTerms& terms) const;
    void fold_attraction(const Frame& frame, double attraction, double rounding,
                         ParallelepipedTerms& terms) const;

    Point3 centre_;
    Point3 half_[3];               ///< half the sides, from the shortest, right-handed
    std::array<int, 8> number_{};  ///< of the mesh's vertices as corners
};

}  // namespace anomalis::forward
