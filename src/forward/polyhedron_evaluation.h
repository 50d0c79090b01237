#pragma once

#include <span>
#include <vector>

#include "forward/polyhedron.h"
#include "forward/polyhedron_exterior.h"
#include "forward/polyhedron_kernel.h"
#include "forward/polyhedron_mesh.h"
#include "forward/station_group.h"

namespace anomalis {

/// What is wanted of a body: second derivatives of its potential along pairs of directions, then the
/// attraction. As many results as the kind has sums, each a number for every station.
struct Wanted {
    FieldKind kind;
    Point3 first[most_sums];
    Point3 second[most_sums];
    double attraction = 0;  ///< factor of the downward attraction per unit of density and metre
    std::span<double> result[most_sums];
};

/// Folds what is wanted into the terms of a shape and runs the kernels over blocks of stations.
class PolyhedronEvaluation {
  public:
    const PolyhedronMesh& mesh() const { return mesh_; }
    void assign(std::span<const Point3> points, std::span<const Facet> facets);
    /// Raises Fault subscript where the lengths of stations and results differ.
    void evaluate(const StationSpans& stations, const Wanted& wanted, const Execution& how);

  private:
    struct Job {
        const StationSpans& stations;
        const Wanted& wanted;
        VectorLevel level;
    };

    void fold_edges(const Wanted& wanted);
    void fold_faces(const Wanted& wanted);
    void fold_exterior(const StationSpans& stations, const Wanted& wanted);
    bool is_far(const Point3& unit) const;
    Point3 clear_of_edges(const Point3& unit, double* scratch) const;
    PolyhedronTerms terms(FieldKind kind) const;
    void run_block(const Job& job, std::size_t block, double* scratch) const;
    void run_close(const Job& job, StationGroup& close, double* scratch) const;

    PolyhedronMesh mesh_;
    PolyhedronExterior exterior_;
    bool exterior_ready_ = false;
    ExteriorTerms exterior_terms_;
    std::vector<std::int32_t> edge_ends_, face_corners_;
    std::vector<double> edge_terms_, face_terms_;
    std::vector<double> distances_;  ///< scratch, a part for each thread
};

}  // namespace anomalis
