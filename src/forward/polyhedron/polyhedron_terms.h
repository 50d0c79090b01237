#pragma once

#include <span>
#include <vector>

#include "forward/polyhedron/polyhedron_kernel.h"
#include "forward/polyhedron/polyhedron_mesh.h"
#include "forward/polyhedron/polyhedron_parts.h"

namespace anomalis::forward {

/// What is wanted of a body: second derivatives of its potential along pairs of directions, then the
/// attraction. As many results as the kind has sums, each a number for every station.
struct Wanted {
    FieldKind kind;
    Point3 first[most_sums];
    Point3 second[most_sums];
    double attraction = 0;  ///< factor of the downward attraction per unit of density and metre
    std::span<double> result[most_sums];
};

/// The coefficients of one calculation: what is wanted, folded into every edge and face before the first
/// station.
class FoldedTerms {
  public:
    void fold(const PolyhedronMesh& mesh, const PolyhedronParts& parts, const Wanted& wanted);
    PolyhedronTerms of_part(const PolyhedronParts& parts, const PolyhedronParts::Part& part) const;

  private:
    void fold_edges(const PolyhedronMesh& mesh, const PolyhedronParts& parts, const Wanted& wanted);
    void fold_faces(const PolyhedronMesh& mesh, const Wanted& wanted);

    FieldKind kind_ = FieldKind::total_field;
    std::vector<double> edges_, faces_;
};

}  // namespace anomalis::forward
