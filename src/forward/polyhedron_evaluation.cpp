#include "forward/polyhedron_evaluation.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "core/failure.h"
#include "forward/station_blocks.h"
#include "forward/vector3.h"

namespace anomalis {

namespace {

/// Closer to an edge than this part of the radius a station is moved off it, outward, by twice as much.
constexpr double edge_clearance = 1e-8;

Point3 operator*(const Tensor3& t, const Point3& v) {
    return {t.xx * v.x + t.xy * v.y + t.xz * v.z, t.xy * v.x + t.yy * v.y + t.yz * v.z,
            t.xz * v.x + t.yz * v.y + t.zz * v.z};
}

double square_distance_to_segment(const Point3& p, const Point3& a, const Point3& b) {
    const Point3 ab = b - a, ap = p - a;
    const double t = std::clamp(dot(ap, ab) / dot(ab, ab), 0.0, 1.0);
    const Point3 off = ap - ab * t;
    return dot(off, off);
}

void check_lengths(const StationSpans& stations, const Wanted& wanted) {
    const std::size_t n = stations.east.size();
    bool equal = stations.north.size() == n && stations.up.size() == n;
    for (int k = 0; k < sum_count(wanted.kind); ++k) equal = equal && wanted.result[k].size() == n;
    if (!equal) throw Fault(FaultKind::subscript);
}

}  // namespace

void PolyhedronEvaluation::assign(std::span<const Point3> points, std::span<const Facet> facets) {
    mesh_.build(points, facets);
    exterior_ready_ = false;
    edge_ends_.clear();
    face_corners_.clear();
    for (const PolyhedronMesh::Edge& edge : mesh_.edges)
        edge_ends_.insert(edge_ends_.end(), edge.end.begin(), edge.end.end());
    for (const PolyhedronMesh::Face& face : mesh_.faces)
        face_corners_.insert(face_corners_.end(), face.corner.begin(), face.corner.end());
}

void PolyhedronEvaluation::fold_edges(const Wanted& wanted) {
    edge_terms_.clear();
    edge_terms_.reserve(mesh_.edges.size() * edge_term_size(wanted.kind));
    for (const PolyhedronMesh::Edge& edge : mesh_.edges) {
        edge_terms_.push_back(edge.length);
        for (int k = 0; k < tensor_sums(wanted.kind); ++k)
            edge_terms_.push_back(dot(wanted.first[k], edge.dyad * wanted.second[k]));
        if (!has_attraction(wanted.kind)) continue;
        const Point3 g = edge.dyad * Point3{0, 0, wanted.attraction / mesh_.scale};
        const double at_edge = dot(g, mesh_.vertices[static_cast<std::size_t>(edge.end[0])]);
        edge_terms_.insert(edge_terms_.end(), {g.x, g.y, g.z, at_edge});
    }
}

void PolyhedronEvaluation::fold_faces(const Wanted& wanted) {
    face_terms_.clear();
    face_terms_.reserve(mesh_.faces.size() * face_term_size(wanted.kind));
    for (const PolyhedronMesh::Face& face : mesh_.faces) {
        const Point3 twice = face.area * 2;
        const Point3& corner = mesh_.vertices[static_cast<std::size_t>(face.corner[0])];
        const double size = length(face.area);
        face_terms_.insert(face_terms_.end(), {twice.x, twice.y, twice.z,
                                               dot(twice, corner) - 2 * size * plane_shift * mesh_.radius});
        face_terms_.insert(face_terms_.end(), face.opposite_side.begin(), face.opposite_side.end());
        for (int k = 0; k < tensor_sums(wanted.kind); ++k)
            face_terms_.push_back(-2 * dot(wanted.first[k], face.normal) *
                                  dot(face.normal, wanted.second[k]));
        if (has_attraction(wanted.kind))
            face_terms_.push_back(-wanted.attraction / mesh_.scale * face.normal.z / size);
    }
}

bool PolyhedronEvaluation::is_far(const Point3& unit) const {
    const double limit = exterior_distance * mesh_.radius;
    return mesh_.closed && dot(unit, unit) > limit * limit;
}

/// Prepares the expansion when a station will use it.
void PolyhedronEvaluation::fold_exterior(const StationSpans& stations, const Wanted& wanted) {
    bool used = false;
    for (std::size_t i = 0; i < stations.east.size() && !used; ++i)
        used = is_far(mesh_.to_unit({stations.east[i], stations.north[i], stations.up[i]}));
    if (!used) return;
    if (!exterior_ready_) exterior_.take(mesh_);
    exterior_ready_ = true;
    exterior_terms_ = {};
    exterior_terms_.sum_count = sum_count(wanted.kind);
    const int tensors = tensor_sums(wanted.kind);
    for (int k = 0; k < tensors; ++k) exterior_.fold(wanted.first[k], &wanted.second[k], k, exterior_terms_);
    if (has_attraction(wanted.kind))
        exterior_.fold({0, 0, -wanted.attraction / mesh_.scale}, nullptr, tensors, exterior_terms_);
}

PolyhedronTerms PolyhedronEvaluation::terms(FieldKind kind) const {
    return {kind,
            &mesh_.vertices.front().x,
            mesh_.vertices.size(),
            edge_ends_.data(),
            edge_terms_.data(),
            mesh_.edges.size(),
            face_corners_.data(),
            face_terms_.data(),
            mesh_.faces.size()};
}

/// A station on an edge or at a corner is moved along the mean normal of the faces there, flat edges
/// included.
Point3 PolyhedronEvaluation::clear_of_edges(const Point3& unit, double* scratch) const {
    for (std::size_t v = 0; v < mesh_.vertices.size(); ++v) scratch[v] = length(mesh_.vertices[v] - unit);
    const double near = edge_clearance * mesh_.radius;
    Point3 outward;
    for (const PolyhedronMesh::Face& face : mesh_.faces) {
        bool touches = false;
        for (std::size_t i = 0; i < 3 && !touches; ++i) {
            const auto a = static_cast<std::size_t>(face.corner[(i + 1) % 3]);
            const auto b = static_cast<std::size_t>(face.corner[(i + 2) % 3]);
            const double detour = scratch[a] + scratch[b] - std::sqrt(face.opposite_side[i]);
            touches = detour < 2.1 * near &&
                      square_distance_to_segment(unit, mesh_.vertices[a], mesh_.vertices[b]) < near * near;
        }
        if (touches) outward = outward + face.normal;
    }
    const double size = length(outward);
    return size > 0 ? unit + outward * (2 * near / size) : unit;
}

void PolyhedronEvaluation::run_block(const Job& job, std::size_t block, double* scratch) const {
    const std::size_t first = block * StationBlock::capacity;
    const std::size_t last = std::min(first + StationBlock::capacity, job.stations.east.size());
    StationGroup plain, far, close;
    for (std::size_t i = first; i < last; ++i) {
        const Point3 unit = mesh_.to_unit({job.stations.east[i], job.stations.north[i], job.stations.up[i]});
        (is_far(unit) ? far : plain).add(unit, i);
    }
    if (!far.empty()) {
        const std::size_t real = far.pad();
        exterior_sums_at(job.level)(exterior_terms_, far.block);
        far.write(real, job.wanted.result, 0, sum_count(job.wanted.kind));
    }
    if (plain.empty()) return;
    const std::size_t real = plain.pad();
    polyhedron_sums_at(job.level)(terms(job.wanted.kind), scratch, plain.block);
    plain.write(real, job.wanted.result, 0, sum_count(job.wanted.kind));
    for (std::size_t i = 0; i < real; ++i)
        if (plain.block.margin[i] < 0)
            close.add({plain.block.x[i], plain.block.y[i], plain.block.z[i]}, plain.index[i]);
    if (!close.empty()) run_close(job, close, scratch);
}

/// Derivatives are taken where a station was moved off an edge. The attraction needs no such move, for what
/// grows without limit in it is multiplied by a distance that vanishes.
void PolyhedronEvaluation::run_close(const Job& job, StationGroup& close, double* scratch) const {
    const auto sums = polyhedron_sums_near_edges_at(job.level);
    const PolyhedronTerms terms = this->terms(job.wanted.kind);
    const std::size_t real = close.pad();
    StationGroup moved;
    for (std::size_t i = 0; i < close.block.count; ++i)
        moved.add(clear_of_edges({close.block.x[i], close.block.y[i], close.block.z[i]}, scratch),
                  close.index[i]);
    const int tensors = tensor_sums(job.wanted.kind);
    if (tensors > 0) {
        sums(terms, scratch, moved.block);
        moved.write(real, job.wanted.result, 0, tensors);
    }
    if (!has_attraction(job.wanted.kind)) return;
    sums(terms, scratch, close.block);
    close.write(real, job.wanted.result, tensors, tensors + 1);
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
    fold_edges(wanted);
    fold_faces(wanted);
    fold_exterior(stations, wanted);
    const std::size_t n = stations.east.size();
    const std::size_t blocks = (n + StationBlock::capacity - 1) / StationBlock::capacity;
    constexpr double nanoseconds_each =
        3;  // of an edge or a face for a station, near enough to tell short from long
    const int workers = worker_count(nanoseconds_each * static_cast<double>(n) *
                                         static_cast<double>(mesh_.edges.size() + mesh_.faces.size()),
                                     blocks, how.threads);
    const std::size_t part = mesh_.vertices.size() * StationBlock::padding;
    distances_.resize(std::max(distances_.size(), part * static_cast<std::size_t>(workers)));
    const Job job{stations, wanted, std::min(how.level, widest_vector_level())};
    const auto work = [&](int worker, std::size_t block) {
        run_block(job, block, distances_.data() + part * static_cast<std::size_t>(worker));
    };
    for_each_block(blocks, workers, std::ref(work));  // by reference: no memory is taken
}

}  // namespace anomalis
