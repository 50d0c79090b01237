#include "forward/polyhedron/polyhedron_evaluation.h"

#include <algorithm>
#include <functional>
#include <limits>

#include "core/failure.h"
#include "core/pacer.h"
#include "core/shared_pieces.h"
#include "forward/polyhedron/polyhedron_clearance.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

/// Of an edge or a face for a station: near enough to tell a short job from a long one.
constexpr double nanoseconds_each = 3;
/// Of a parallelepiped for a station.
constexpr double box_nanoseconds = 15;
/// Of the expansion for a station.
constexpr double exterior_nanoseconds = 40;
/// Of a facet, to cut a mesh into parts, and to fold what is wanted into it.
constexpr double split_units = 50, fold_units = 50;
/// Of a facet for a station that stands on an edge.
constexpr double clearance_units = 15;

void check_lengths(const StationSpans& stations, const Wanted& wanted) {
    const std::size_t n = stations.east.size();
    bool equal = stations.north.size() == n && stations.up.size() == n;
    for (int k = 0; k < sum_count(wanted.kind); ++k) equal = equal && wanted.result[k].size() == n;
    if (!equal) throw Fault(FaultKind::subscript);
}

}  // namespace

void PolyhedronEvaluation::assign(std::span<const Point3> points, std::span<const Facet> facets,
                                  Pacer& pacer) {
    exterior_ready_ = false;
    mesh_.build(points, facets, pacer);
    parts_.split(mesh_);
    box_ = Parallelepiped::of(mesh_);
    pacer.done(split_units * static_cast<double>(facets.size()));
}

/// From where on the expansion serves, in unit coordinates.
double PolyhedronEvaluation::far_limit() const {
    return mesh_.closed ? exterior_distance * mesh_.radius : std::numeric_limits<double>::infinity();
}

/// Prepares the expansion when a station will use it.
void PolyhedronEvaluation::fold_exterior(const StationSpans& stations, const Wanted& wanted, Pacer& pacer) {
    const std::size_t n = stations.east.size();
    StationGroup group;
    std::size_t far = 0;
    for (std::size_t i = 0; i < n && far == 0; i += StationBlock::capacity)
        far = group.take(stations, i, std::min(StationBlock::capacity, n - i), mesh_.centre, mesh_.scale,
                         far_limit());
    if (far == 0) return;
    if (!exterior_ready_) exterior_.take(mesh_, pacer);
    exterior_ready_ = true;
    exterior_terms_ = {};
    exterior_terms_.sum_count = sum_count(wanted.kind);
    const int tensors = tensor_sums(wanted.kind);
    for (int k = 0; k < tensors; ++k) exterior_.fold(wanted.first[k], &wanted.second[k], k, exterior_terms_);
    if (has_attraction(wanted.kind))
        exterior_.fold({0, 0, -wanted.attraction / mesh_.scale}, nullptr, tensors, exterior_terms_);
}

bool PolyhedronEvaluation::run_block(const Job& job, std::size_t block, double* scratch,
                                     PieceWorker& worker) const {
    const std::size_t first = block * StationBlock::capacity;
    const std::size_t count = std::min(StationBlock::capacity, job.stations.east.size() - first);
    StationGroup all;
    const double limit = far_limit();
    const std::size_t far_count = all.take(job.stations, first, count, mesh_.centre, mesh_.scale, limit);
    if (far_count == 0) return run_plain(job, all, scratch, worker);
    if (far_count == count) return run_far(job, all, worker);
    StationGroup plain, far;
    for (std::size_t i = 0; i < count; ++i) {
        const Point3 at = all.place(i);
        (dot(at, at) > limit * limit ? far : plain).add(at, all.index[i]);
    }
    return run_far(job, far, worker) && run_plain(job, plain, scratch, worker);
}

bool PolyhedronEvaluation::run_far(const Job& job, StationGroup& far, PieceWorker& worker) const {
    const std::size_t real = far.pad();
    exterior_sums_at(job.level)(exterior_terms_, far.block);
    far.write(real, job.wanted.result, 0, sum_count(job.wanted.kind));
    return worker.goes_on(exterior_nanoseconds * static_cast<double>(far.block.count));
}

bool PolyhedronEvaluation::run_plain(const Job& job, StationGroup& plain, double* scratch,
                                     PieceWorker& worker) const {
    const std::size_t real = plain.pad();
    if (!add_sums(job, scratch, plain.block, worker)) return false;
    plain.write(real, job.wanted.result, 0, sum_count(job.wanted.kind));
    StationGroup close;
    for (std::size_t i = 0; i < real; ++i)
        if (plain.block.margin[i] < 0) close.add(plain.place(i), plain.index[i]);
    return close.empty() || run_close(job, close, scratch, worker);
}

bool PolyhedronEvaluation::add_sums(const Job& job, double* scratch, StationBlock& block,
                                    PieceWorker& worker) const {
    if (!box_) return add_parts(polyhedron_sums_at(job.level), scratch, block, worker);
    parallelepiped_sums_at(job.level)(box_terms_, block);
    return worker.goes_on(box_nanoseconds * static_cast<double>(block.count));
}

bool PolyhedronEvaluation::add_parts(SumsKernel sums, double* scratch, StationBlock& block,
                                     PieceWorker& worker) const {
    for (auto& sum : block.sum) std::fill_n(sum, block.count, 0.0);
    std::fill_n(block.margin, block.count, 1.0);
    for (const PolyhedronParts::Part& part : parts_.parts()) {
        sums(terms_.of_part(parts_, part), scratch, block);
        const auto terms = static_cast<double>(part.edge_count + part.face_count);
        if (!worker.goes_on(nanoseconds_each * terms * static_cast<double>(block.count))) return false;
    }
    return true;
}

/// Derivatives are taken where a station was moved off an edge. The attraction needs no such move, for what
/// grows without limit in it is multiplied by a distance that vanishes.
bool PolyhedronEvaluation::run_close(const Job& job, StationGroup& close, double* scratch,
                                     PieceWorker& worker) const {
    const auto sums = polyhedron_sums_near_edges_at(job.level);
    const std::size_t real = close.pad();
    const double clearance = clearance_units * static_cast<double>(mesh_.faces.size());
    StationGroup moved;
    for (std::size_t i = 0; i < close.block.count; ++i) {
        moved.add(clear_of_edges(mesh_, close.place(i), scratch), close.index[i]);
        if (!worker.goes_on(clearance)) return false;
    }
    const int tensors = tensor_sums(job.wanted.kind);
    if (tensors > 0) {
        if (!add_parts(sums, scratch, moved.block, worker)) return false;
        moved.write(real, job.wanted.result, 0, tensors);
    }
    if (!has_attraction(job.wanted.kind)) return true;
    if (!add_parts(sums, scratch, close.block, worker)) return false;
    close.write(real, job.wanted.result, tensors, tensors + 1);
    return true;
}

void PolyhedronEvaluation::evaluate(const StationSpans& stations, const Wanted& wanted,
                                    const Execution& how) {
    check_lengths(stations, wanted);
    if (mesh_.faces.empty() || !mesh_.finite) {
        const double value = mesh_.finite ? 0 : std::numeric_limits<double>::quiet_NaN();
        for (int k = 0; k < sum_count(wanted.kind); ++k)
            std::fill(wanted.result[k].begin(), wanted.result[k].end(), value);
        return;
    }
    Pacer& pacer = how.pacer ? *how.pacer : no_pace();
    terms_.fold(mesh_, parts_, wanted);
    if (box_) box_terms_ = box_->fold(mesh_, wanted);
    pacer.done(fold_units * static_cast<double>(mesh_.faces.size()));
    fold_exterior(stations, wanted, pacer);
    const std::size_t n = stations.east.size();
    const std::size_t blocks = (n + StationBlock::capacity - 1) / StationBlock::capacity;
    const auto facets = static_cast<double>(mesh_.edges.size() + mesh_.faces.size());
    const int workers = worker_count(
        (box_ ? box_nanoseconds : nanoseconds_each * facets) * static_cast<double>(n), blocks, how.threads);
    const std::size_t part = std::max(parts_.most_vertices() * StationBlock::padding, mesh_.vertices.size());
    distances_.resize(std::max(distances_.size(), part * static_cast<std::size_t>(workers)));
    const Job job{stations, wanted, std::min(how.level, vector::widest_vector_level())};
    const auto work = [&](PieceWorker& worker, std::size_t block) {
        run_block(job, block, distances_.data() + part * static_cast<std::size_t>(worker.number()), worker);
    };
    for_each_piece(blocks, workers, pacer, std::ref(work));  // by reference: no memory is taken
}

}  // namespace anomalis::forward
