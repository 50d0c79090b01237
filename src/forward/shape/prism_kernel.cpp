#include "forward/shape/prism_kernel.h"

#include "forward/station_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

template <class Real>
struct Vector {
    Real x, y, z;
};

template <class Real>
ANOMALIS_INLINE Real dot(const Vector<Real>& a, const Vector<Real>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

template <class Real>
ANOMALIS_INLINE Real squared_cross(const Vector<Real>& a, const Vector<Real>& b) {
    const Vector<Real> c{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
    return dot(c, c);
}

/// Corners and edges as one station sees them.
template <class Real>
struct Sight {
    Vector<Real> to[8];
    Real distance[8];
    Real integral[12];  ///< of 1 / r along the edge
    Real close[12];     ///< 1 where the line of the edge is close, else 0
};

template <class Real>
ANOMALIS_INLINE void see_edges(const PrismFaces& prism, double near_edge, Sight<Real>& sight) {
    const double near_squared = near_edge * near_edge;
    for (int k = 0; k < 12; ++k) {
        const PrismFaces::Edge& edge = prism.edge[k];
        if (edge.length == 0) {
            sight.integral[k] = sight.close[k] = Real{};
            continue;
        }
        const Real r1 = sight.distance[edge.from];
        const Real r2 = sight.distance[edge.to];
        const Real product = squared_cross(sight.to[edge.from], sight.to[edge.to]);
        sight.close[k] = product <= near_squared * (r1 * r2) ? Real{} + 1.0 : Real{};
        const Real sum = r1 + r2;
        sight.integral[k] =
            vector_log_quotient(sum + edge.length, sum - edge.length, Real{} + 2 * edge.length) / edge.length;
    }
}

/// Half the solid angle of the face, without its sign. Both triangles of the parallelogram have the same
/// area, so the triple product is the same; the two angles are added as arguments of complex numbers.
template <class Real>
ANOMALIS_INLINE Real half_solid_angle(const PrismFaces::Face& face, const Sight<Real>& sight, Real plane) {
    const Vector<Real>& a = sight.to[face.corner[0]];
    const Vector<Real>& b = sight.to[face.corner[1]];
    const Vector<Real>& c = sight.to[face.corner[2]];
    const Vector<Real>& d = sight.to[face.corner[3]];
    const Real ra = sight.distance[face.corner[0]];
    const Real rb = sight.distance[face.corner[1]];
    const Real rc = sight.distance[face.corner[2]];
    const Real rd = sight.distance[face.corner[3]];
    const Real ac = dot(a, c);
    const Real first = ra * rb * rc + dot(a, b) * rc + dot(b, c) * ra + ac * rb;
    const Real second = ra * rc * rd + ac * rd + dot(c, d) * ra + dot(d, a) * rc;
    const Real triple = vector_abs(plane) * face.area;
    return vector_abs(vector_atan2(triple * (first + second), first * second - triple * triple));
}

template <class Real>
struct Sums {
    Real north, east, down, gravity, close;
};

template <class Real>
ANOMALIS_INLINE void add_face(const PrismFaces::Face& face, double bit, const Sight<Real>& sight,
                              Sums<Real>& sums) {
    const Vector<Real>& a = sight.to[face.corner[0]];
    const double* n = face.normal;
    const Real plane = a.x * n[0] + a.y * n[1] + a.z * n[2];
    const Real angle = 2.0 * half_solid_angle(face, sight, plane);
    const Real w = plane < 0.0 ? angle : (plane > 0.0 ? -angle : plane);
    Vector<Real> p{Real{}, Real{}, Real{}};
    Real close{};
    for (int i = 0; i < 4; ++i) {
        const Real integral = sight.integral[face.edge[i]];
        p.x += face.along[i][0] * integral;
        p.y += face.along[i][1] * integral;
        p.z += face.along[i][2] * integral;
        close += sight.close[face.edge[i]];
    }
    const Real take = close > 0.0 ? Real{} : Real{} + 1.0;
    const Real north = close > 0.0 ? Real{} : n[0] * w + n[2] * p.y - n[1] * p.z;
    const Real east = close > 0.0 ? Real{} : n[1] * w + n[0] * p.z - n[2] * p.x;
    const Real down = close > 0.0 ? Real{} : n[2] * w + n[1] * p.x - n[0] * p.y;
    sums.north += north * face.pole;
    sums.east += east * face.pole;
    sums.down += down * face.pole;
    sums.gravity -= down * plane;
    sums.close += bit * (1.0 - take);
}

template <class Real>
ANOMALIS_INLINE void store(double* to, Real value) {
    __builtin_memcpy(to, &value, sizeof value);
}

}  // namespace

void prism_stations(const StationView& stations, const double* first_station, const PrismFaces& prism,
                    double near_edge, const PrismSums& out) {
    for_stations(
        stations.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
            using Real = decltype(kind);
            const Vector<Real> observer{load<Real>(stations.north + i) - first_station[0],
                                        load<Real>(stations.east + i) - first_station[1],
                                        -(load<Real>(stations.sensor + i) - first_station[2])};
            Sight<Real> sight;
            for (int c = 0; c < 8; ++c) {
                sight.to[c] = {prism.corner[c][0] - observer.x, prism.corner[c][1] - observer.y,
                               prism.corner[c][2] - observer.z};
                sight.distance[c] = vector_sqrt(dot(sight.to[c], sight.to[c]));
            }
            see_edges(prism, near_edge, sight);
            Sums<Real> sums{Real{}, Real{}, Real{}, Real{}, Real{}};
            double bit = 1;
            for (int f = 0; f < 6; ++f, bit *= 2)
                if (prism.face[f].used) add_face(prism.face[f], bit, sight, sums);
            store(out.north + i, sums.north);
            store(out.east + i, sums.east);
            store(out.down + i, sums.down);
            store(out.gravity + i, sums.gravity);
            store(out.close + i, sums.close);
        });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
