#include "forward/exact/exact_solid.h"

#include <cmath>
#include <utility>
#include <vector>

#include "forward/shape/prism.h"

namespace anomalis::forward {

namespace {

/// Rings of points about the axis of a pipe and the triangles between them.
class PipeSurface {
  public:
    PipeSurface(const BodyFrame& frame, const PipeShape& pipe) : frame_(frame), pipe_(pipe) {}

    /// A ring at a distance along the axis; returns its number.
    std::int32_t add_ring(double corner_distance, double at) {
        for (std::int32_t k = 0; k < pipe_.sectors; ++k) {
            const double angle = 2 * exact_pi * k / pipe_.sectors;
            const double x = corner_distance * std::cos(angle);
            const double up = corner_distance * std::sin(angle);
            mesh_.points.push_back(placed(frame_, {x, at * pipe_.cos_fall + up * pipe_.sin_fall,
                                                   up * pipe_.cos_fall - at * pipe_.sin_fall}));
        }
        return rings_++;
    }

    /// The band between two rings; seen from the first ring the second lies along the axis for an outer
    /// wall, against it for an inner one.
    void add_band(std::int32_t from, std::int32_t to) {
        for (std::int32_t k = 0; k < pipe_.sectors; ++k) {
            const std::int32_t next = (k + 1) % pipe_.sectors;
            mesh_.facets.push_back({at(from, k), at(to, next), at(from, next)});
            mesh_.facets.push_back({at(from, k), at(to, k), at(to, next)});
        }
    }

    /// The disc within a ring; `forward` when its outside is the way along the axis.
    void add_disc(std::int32_t ring, bool forward) {
        for (std::int32_t k = 1; k + 1 < pipe_.sectors; ++k) {
            if (forward) {
                mesh_.facets.push_back({at(ring, 0), at(ring, k + 1), at(ring, k)});
            } else {
                mesh_.facets.push_back({at(ring, 0), at(ring, k), at(ring, k + 1)});
            }
        }
    }

    PipeMesh take() { return std::move(mesh_); }

  private:
    std::int32_t at(std::int32_t ring, std::int32_t k) const { return ring * pipe_.sectors + k; }

    const BodyFrame& frame_;
    const PipeShape& pipe_;
    PipeMesh mesh_;
    std::int32_t rings_ = 0;
};

void add_hole(PipeSurface& surface, const PipeShape& pipe, std::int32_t near_end, std::int32_t far_end) {
    const std::int32_t near_hole = surface.add_ring(pipe.inner, pipe.near_end + pipe.cap);
    const std::int32_t far_hole = surface.add_ring(pipe.inner, pipe.far_end - pipe.cap);
    surface.add_band(far_hole, near_hole);
    if (pipe.cap > 0) {
        surface.add_disc(near_hole, true);
        surface.add_disc(far_hole, false);
    } else {
        surface.add_band(near_hole, near_end);
        surface.add_band(far_end, far_hole);
    }
}

StationSpans spans_of(const StationView& view) {
    return {{view.east, view.count}, {view.north, view.count}, {view.sensor, view.count}};
}

}  // namespace

void assign_prism(const BodyFrame& frame, const SheetShape& sheet, Polyhedron& polyhedron, Pacer& pacer) {
    PrismCorners corners = sheet_corners(sheet);
    for (Point3& corner : corners) corner = placed(frame, corner);
    polyhedron.assign(corners, prism_triangles, &pacer);
}

PipeMesh pipe_mesh(const BodyFrame& frame, const PipeShape& pipe) {
    PipeSurface surface(frame, pipe);
    const std::int32_t near_end = surface.add_ring(pipe.outer, pipe.near_end);
    const std::int32_t far_end = surface.add_ring(pipe.outer, pipe.far_end);
    surface.add_band(near_end, far_end);
    if (pipe.inner == 0 || pipe.cap > 0) {
        surface.add_disc(near_end, false);
        surface.add_disc(far_end, true);
    }
    if (pipe.inner > 0) add_hole(surface, pipe, near_end, far_end);
    return surface.take();
}

void assign_pipe(const BodyFrame& frame, const PipeShape& pipe, Polyhedron& polyhedron, Pacer& pacer) {
    const PipeMesh mesh = pipe_mesh(frame, pipe);
    polyhedron.assign(mesh.points, mesh.facets, &pacer);
}

void fill_solid_anomaly(const ExactPlace& place, const ExactField& field, Polyhedron& polyhedron,
                        std::span<double> values, Pacer& pacer) {
    polyhedron.total_field(spans_of(place.stations), turned_out(place.frame, field.magnetisation),
                           turned_out(place.frame, field.direction), values, {.pacer = &pacer});
}

void fill_solid_responses(const ExactPlace& place, const ExactField& field, double density,
                          Polyhedron& polyhedron, std::span<double> anomaly, std::span<double> attraction,
                          Pacer& pacer) {
    polyhedron.total_field_and_gravity(spans_of(place.stations), turned_out(place.frame, field.magnetisation),
                                       turned_out(place.frame, field.direction), density, anomaly, attraction,
                                       {.pacer = &pacer});
}

void fill_solid_gravity(const ExactPlace& place, double density, Polyhedron& polyhedron,
                        std::span<double> values, Pacer& pacer) {
    polyhedron.gravity(spans_of(place.stations), density, values, {.pacer = &pacer});
}

}  // namespace anomalis::forward
