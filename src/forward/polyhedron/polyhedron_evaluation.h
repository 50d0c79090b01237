#pragma once

#include <optional>
#include <span>
#include <vector>

#include "core/shared_pieces.h"
#include "forward/polyhedron/parallelepiped.h"
#include "forward/polyhedron/polyhedron.h"
#include "forward/polyhedron/polyhedron_exterior.h"
#include "forward/polyhedron/polyhedron_mesh.h"
#include "forward/polyhedron/polyhedron_parts.h"
#include "forward/polyhedron/polyhedron_terms.h"
#include "forward/polyhedron/station_group.h"

namespace anomalis::forward {

/// Folds what is wanted into the terms of a shape and runs the kernels over blocks of stations.
class PolyhedronEvaluation {
  public:
    const PolyhedronMesh& mesh() const { return mesh_; }
    void assign(std::span<const Point3> points, std::span<const Facet> facets, Pacer& pacer);
    /// Raises Fault subscript where the lengths of stations and results differ.
    void evaluate(const StationSpans& stations, const Wanted& wanted, const Execution& how);

  private:
    struct Job {
        const StationSpans& stations;
        const Wanted& wanted;
        vector::VectorLevel level;
    };

    using SumsKernel = void (*)(const PolyhedronTerms&, double*, StationBlock&);

    void fold_exterior(const StationSpans& stations, const Wanted& wanted, Pacer& pacer);
    double far_limit() const;
    // These return false when the work is to be left.
    bool add_sums(const Job& job, double* scratch, StationBlock& block, PieceWorker& worker) const;
    bool add_parts(SumsKernel sums, double* scratch, StationBlock& block, PieceWorker& worker) const;
    bool run_block(const Job& job, std::size_t block, double* scratch, PieceWorker& worker) const;
    bool run_far(const Job& job, StationGroup& far, PieceWorker& worker) const;
    bool run_plain(const Job& job, StationGroup& plain, double* scratch, PieceWorker& worker) const;
    bool run_close(const Job& job, StationGroup& close, double* scratch, PieceWorker& worker) const;

    PolyhedronMesh mesh_;
    std::optional<Parallelepiped> box_;  ///< what the mesh is if it is one
    ParallelepipedTerms box_terms_;
    PolyhedronParts parts_;
    FoldedTerms terms_;
    PolyhedronExterior exterior_;
    bool exterior_ready_ = false;
    ExteriorTerms exterior_terms_;
    std::vector<double> distances_;  ///< scratch, a part for each thread
};

}  // namespace anomalis::forward
