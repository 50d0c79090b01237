#include "forward/exact/face_potential_kernel.h"

#include "forward/station_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

struct Direction {
    double x, y, z;
};

template <class Real>
struct From {
    Real x, y, z;
};

template <class Real>
ANOMALIS_INLINE Real along(const Direction& d, const From<Real>& v) {
    return vector_fma(d.x, v.x, vector_fma(d.y, v.y, d.z * v.z));
}

template <class Real>
ANOMALIS_INLINE Real length_of(const From<Real>& v) {
    return vector_sqrt(vector_fma(v.x, v.x, vector_fma(v.y, v.y, v.z * v.z)));
}

template <class Real>
ANOMALIS_INLINE From<Real> corner_from(const PotentialFace& face, std::size_t k, const From<Real>& place) {
    const double* corner = face.corners + 3 * k;
    return {corner[0] - place.x, corner[1] - place.y, corner[2] - place.z};
}

/// One edge from `from` at distance r1 to `to` at r2; `height` is the distance of the plane, not negative.
template <class Real>
ANOMALIS_INLINE Real edge_part(const Direction& edge, const Direction& normal, const From<Real>& from,
                               const From<Real>& to, Real r1, Real r2, Real height) {
    const Direction outward{edge.y * normal.z - edge.z * normal.y, edge.z * normal.x - edge.x * normal.z,
                            edge.x * normal.y - edge.y * normal.x};
    const Real aside = along(outward, from), s1 = along(edge, from), s2 = along(edge, to);
    const Real from_line = vector_fma(aside, aside, height * height);
    // Two arc tangents of positive denominators as one, and the logarithm on the side that loses no digits.
    const Real x1 = vector_fma(height, r1, from_line), x2 = vector_fma(height, r2, from_line);
    const Real y1 = aside * s1, y2 = aside * s2;
    const Real turn = vector_atan2(vector_fma(y2, x1, -(y1 * x2)), vector_fma(x1, x2, y1 * y2));
    const auto ahead = s1 + s2 >= 0.0;
    const Real n = ahead ? r2 + s2 : r1 - s1;
    const Real r = ahead ? r1 : r2, s = ahead ? s1 : -s2;
    const Real d = s < 0.0 ? from_line / (r - s) : r + s;
    const Real log = from_line > 0.0 ? vector_log_quotient(n, d) : Real{};
    return from_line > 0.0 ? vector_fma(aside, log, -(height * turn)) : Real{};
}

template <class Real>
ANOMALIS_INLINE Real potential_at(const PotentialFace& face, const From<Real>& place) {
    const Direction normal{face.normal[0], face.normal[1], face.normal[2]};
    const Real height = vector_abs(along(normal, corner_from(face, 0, place)));
    From<Real> from = corner_from(face, 0, place);
    Real r1 = length_of(from), sum{};
    for (std::size_t k = 0; k < face.count; ++k) {
        const std::size_t next = k + 1 == face.count ? 0 : k + 1;
        const double *a = face.corners + 3 * k, *b = face.corners + 3 * next;
        const Direction e{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        const double size = __builtin_sqrt(e.x * e.x + e.y * e.y + e.z * e.z);
        const From<Real> to = corner_from(face, next, place);
        const Real r2 = length_of(to);
        if (size > 0)
            sum += edge_part({e.x / size, e.y / size, e.z / size}, normal, from, to, r1, r2, height);
        from = to;
        r1 = r2;
    }
    return vector_abs(sum);
}

}  // namespace

void face_potentials(const PotentialFace& face, const PotentialPlaces& places, double* potential) {
    for_stations(
        places.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
            using Real = decltype(kind);
            const From<Real> place{load<Real>(places.x + i), load<Real>(places.y + i),
                                   load<Real>(places.z + i)};
            const Real value = potential_at(face, place);
            __builtin_memcpy(potential + i, &value, sizeof value);
        });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
