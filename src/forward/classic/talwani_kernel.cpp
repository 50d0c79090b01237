#include "forward/classic/talwani_kernel.h"

#include "forward/station_lanes.h"

namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

namespace {

/// Arc tangent of two arguments, pi for a negative x on the axis.
template <class Real>
ANOMALIS_INLINE Real bearing(Real z, Real x) {
    return vector_atan2(z + 0.0, x);
}

template <class Real>
ANOMALIS_INLINE Real drawn_out(Real extent) {
    return vector_abs(extent) < least_edge_extent ? Real{} + least_edge_extent : extent;
}

/// One edge. The quotient in the logarithm of the line integral is the one of the two distances, since both
/// ends lie on one line; `out` is 1 where rounding decides about it, else 0.
template <class Real>
ANOMALIS_INLINE Real edge_term(Real x1, Real x2, Real z1, Real z2, Real& out) {
    const Real dx = drawn_out(x2 - x1);
    const Real dz = drawn_out(z2 - z1);
    const Real xb = dx + x1;
    const Real zb = dz + z1;
    const Real off_line = z1 * dx - dz * x1;
    const Real size = vector_abs(z1 * dx) + vector_abs(dz * x1);
    const Real poor = vector_abs(off_line) <= 1e-9 * size ? Real{} + 1.0 : Real{};
    const Real on_axis = x1 == 0.0 ? Real{} + 1.0 : (xb == 0.0 ? Real{} + 1.0 : Real{});
    out = poor + on_axis > 0.0 ? Real{} + 1.0 : Real{};
    const Real quotient = 0.5 * vector_log_quotient(xb * xb + zb * zb, x1 * x1 + z1 * z1);
    const Real turn = bearing(z1, x1) - bearing(zb, xb) + dz / dx * quotient;
    const Real term = (xb * dz - zb * dx) * dx / (dx * dx + dz * dz) * turn;
    return out > 0.0 ? Real{} : term;
}

}  // namespace

void talwani_stations(const StationView& stations, const BodyFrame& frame, const SheetPolygon& polygon,
                      double* sum, double* left_out) {
    for_stations(
        stations.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
            using Real = decltype(kind);
            const Real x = across_strike<Real>(stations, frame, i);
            const Real h = load<Real>(stations.sensor + i) - frame.top;
            Real total{};
            Real bits{};
            double bit = 1;
            for (int j = 0; j < 4; ++j, bit *= 2) {
                Real out{};
                total += edge_term<Real>(polygon.x[j] - x, polygon.x[j + 1] - x, polygon.z[j] - h,
                                         polygon.z[j + 1] - h, out);
                bits += bit * out;
            }
            __builtin_memcpy(sum + i, &total, sizeof total);
            __builtin_memcpy(left_out + i, &bits, sizeof bits);
        });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
