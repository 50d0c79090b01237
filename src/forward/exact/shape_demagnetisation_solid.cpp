#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

#include "forward/exact/crowded_nodes.h"
#include "forward/exact/exact_axes.h"
#include "forward/exact/face_potential_kernel.h"
#include "forward/exact/shape_demagnetisation.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

/// One of the three pairs of faces of a parallelepiped, as it stands at the origin.
struct FacePair {
    std::array<Point3, 4> corners;
    Point3 side1, side2;
    Point3 to_other;  ///< the edge that leads to the opposite face
    Point3 normal;    ///< outward of that one
    double area = 0;
};

FacePair face_pair(const std::array<Point3, 3>& edges, std::size_t k) {
    FacePair face;
    face.to_other = edges[k];
    face.side1 = edges[(k + 1) % 3];
    face.side2 = edges[(k + 2) % 3];
    const Point3 spanned = cross(face.side1, face.side2);
    face.area = length(spanned);
    face.normal = spanned * ((dot(spanned, face.to_other) < 0 ? -1 : 1) / face.area);
    face.corners = {Point3{}, face.side1, face.side1 + face.side2, face.side2};
    return face;
}

/// Places on a face, twenty by twenty, with their weights, as columns for the loop over them.
class FaceNodes {
  public:
    static constexpr std::size_t each = std::tuple_size_v<decltype(CrowdedNodes::place)>;

    /// `at(u, v)` is the place at u and v from 0 to 1, `share(u, v)` how much the face is stretched there.
    template <class At, class Share>
    FaceNodes(const At& at, const Share& share) {
        const CrowdedNodes& nodes = crowded_nodes();
        for (std::size_t i = 0; i < each; ++i)
            for (std::size_t j = 0; j < each; ++j) {
                const double u = nodes.place[i], v = nodes.place[j];
                const std::size_t k = i * each + j;
                const Point3 place = at(u, v);
                x_[k] = place.x;
                y_[k] = place.y;
                z_[k] = place.z;
                weight_[k] = nodes.weight[i] * nodes.weight[j] * share(u, v);
            }
    }

    /// Weighted sum of the potentials of a plane polygon with this unit normal, moved by `shift`.
    double potential(std::span<const Point3> corners, const Point3& normal, const Point3& shift = {}) const {
        std::vector<double> flat;
        flat.reserve(3 * corners.size());
        for (const Point3& corner : corners)
            for (const double part : {corner.x + shift.x, corner.y + shift.y, corner.z + shift.z})
                flat.push_back(part);
        std::array<double, each * each> values;
        const double n[3] = {normal.x, normal.y, normal.z};
        face_potentials_at(vector::widest_vector_level())({flat.data(), corners.size(), n},
                                                          {x_.data(), y_.data(), z_.data(), values.size()},
                                                          values.data());
        double sum = 0;
        for (std::size_t k = 0; k < values.size(); ++k) sum += weight_[k] * values[k];
        return sum;
    }

  private:
    std::array<double, each * each> x_, y_, z_, weight_;
};

/// Double integral of 1 / R over the far face of `a` and `b`'s far face, less that over `b`'s near face.
double difference_of_pairs(const FacePair& a, const FacePair& b) {
    const FaceNodes far([&](double u, double v) { return a.to_other + a.side1 * u + a.side2 * v; },
                        [](double, double) { return 1.0; });
    return (far.potential(b.corners, b.normal, b.to_other) - far.potential(b.corners, b.normal)) * a.area;
}

/// Corners of a regular polygon in the plane z = 0.
std::vector<Point3> ring(std::int32_t sectors, double corner_distance) {
    std::vector<Point3> corners;
    for (std::int32_t k = 0; k < sectors; ++k) {
        const double angle = 2 * exact_pi * k / sectors;
        corners.push_back({corner_distance * std::cos(angle), corner_distance * std::sin(angle), 0});
    }
    return corners;
}

/// The ends of a pipe: regular polygons about one axis, seen from each other.
class RingPairs {
  public:
    explicit RingPairs(const PipeShape& pipe)
        : sectors_(std::min(pipe.sectors, finest_)),
          inner_share_(pipe.inner / pipe.outer),
          outer_(ring(sectors_, corner_of(pipe.outer, pipe))),
          inner_(ring(sectors_, corner_of(pipe.inner, pipe))) {}

    /// Double integral of 1 / R over the ring of `target` from `from` to 1 of its size and over `source`, a
    /// height above.
    double integral(const std::vector<Point3>& target, double from, const std::vector<Point3>& source,
                    double height) const {
        const Point3 side = target[1] - target[0];
        const double twice_area = length(cross(target[0], side));
        const auto share = [&](double u) { return from + (1 - from) * u; };
        const FaceNodes nodes(
            [&](double u, double v) {
                const Point3 at = (target[0] + side * v) * share(u);
                return Point3{at.x, at.y, height};
            },
            [&](double u, double) { return share(u); });
        return nodes.potential(source, {0, 0, 1}) * (1 - from) * twice_area * sectors_;
    }

    double ring_to_ring(double height) const {
        return integral(outer_, inner_share_, outer_, height) - hole_of_ring(height);
    }
    double disc_to_disc(double height) const { return integral(outer_, 0, outer_, height); }
    double hole_to_hole(double height) const { return integral(inner_, 0, inner_, height); }
    double hole_to_disc(double height) const { return integral(inner_, 0, outer_, height); }

  private:
    double hole_of_ring(double height) const {
        return inner_share_ > 0 ? integral(outer_, inner_share_, inner_, height) : 0.0;
    }
    /// A ring of more corners than the finest is one of the same area.
    double corner_of(double corner, const PipeShape& pipe) const {
        return corner * std::sqrt(ring_area(pipe.sectors, 1) / ring_area(sectors_, 1));
    }

    static constexpr std::int32_t finest_ = 96;
    std::int32_t sectors_;
    double inner_share_;
    std::vector<Point3> outer_, inner_;
};

/// Sum over pairs of end faces of their integrals, each with the signs of its normals.
double end_faces(const PipeShape& pipe) {
    const RingPairs pairs(pipe);
    const double length = pipe.length();
    if (!(pipe.cap > 0)) return 2 * (pairs.ring_to_ring(0) - pairs.ring_to_ring(length));
    return 2 * (pairs.disc_to_disc(0) - pairs.disc_to_disc(length)) +
           2 * (pairs.hole_to_hole(0) - pairs.hole_to_hole(length - 2 * pipe.cap)) -
           4 * (pairs.hole_to_disc(pipe.cap) - pairs.hole_to_disc(length - pipe.cap));
}

}  // namespace

Tensor3 prism_demagnetisation(const std::array<Point3, 3>& edges) {
    const std::array<FacePair, 3> faces{face_pair(edges, 0), face_pair(edges, 1), face_pair(edges, 2)};
    const double volume = std::abs(dot(edges[0], cross(edges[1], edges[2])));
    Tensor3 n;
    for (std::size_t a = 0; a < 3; ++a)
        for (std::size_t b = a; b < 3; ++b) {
            // Over the smaller face of the two, where a narrow one lets the other's potential change little.
            const bool first = faces[a].area <= faces[b].area;
            const FacePair &over = faces[first ? a : b], &of = faces[first ? b : a];
            // Each pair counts with both its far and its near face, and in both orders.
            const double factor = difference_of_pairs(over, of) * 2 / (4 * exact_pi * volume);
            const Point3 p = faces[a].normal * (a == b ? factor : factor * 2);
            const Point3 q = faces[b].normal;
            n.xx += p.x * q.x;
            n.xy += (p.x * q.y + p.y * q.x) / 2;
            n.xz += (p.x * q.z + p.z * q.x) / 2;
            n.yy += p.y * q.y;
            n.yz += (p.y * q.z + p.z * q.y) / 2;
            n.zz += p.z * q.z;
        }
    return n;
}

Tensor3 pipe_demagnetisation(const PipeShape& pipe) {
    if (!pipe.limited) return {0.5, 0, 0, 0, 0, 0.5};
    const double hole = pipe.inner > 0 ? ring_area(pipe.sectors, pipe.inner) : 0.0;
    const double volume =
        ring_area(pipe.sectors, pipe.outer) * pipe.length() - hole * (pipe.length() - 2 * pipe.cap);
    const double axial = end_faces(pipe) / (4 * exact_pi * volume);
    const double across = (1 - axial) / 2;
    const double extra = axial - across;
    const double c = pipe.cos_fall, s = pipe.sin_fall;
    return {across, 0, 0, across + extra * c * c, -extra * c * s, across + extra * s * s};
}

}  // namespace anomalis::forward
