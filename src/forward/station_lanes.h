#pragma once

#include "forward/station_view.h"
#include "vector/vector_math.h"

// Loops over stations for kernels that are compiled once a vector level. To be included by such files only.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

using namespace vector::ANOMALIS_VECTOR_LEVEL;

using FloatLanes = float __attribute__((vector_size(ANOMALIS_VECTOR_BYTES / 2)));

template <class Real>
ANOMALIS_INLINE Real load(const double* from);
template <>
ANOMALIS_INLINE double load<double>(const double* from) {
    return *from;
}
template <>
ANOMALIS_INLINE Lanes load<Lanes>(const double* from) {
    return load_lanes(from);
}

/// Adds to single-precision values, rounded once as they are stored.
ANOMALIS_INLINE void add_to(float* to, double value) {
    *to = static_cast<float>(static_cast<double>(*to) + value);
}
ANOMALIS_INLINE void add_to(float* to, Lanes value) {
    FloatLanes held;
    __builtin_memcpy(&held, to, sizeof held);
    held = __builtin_convertvector(__builtin_convertvector(held, Lanes) + value, FloatLanes);
    __builtin_memcpy(to, &held, sizeof held);
}

template <class Real>
ANOMALIS_INLINE Real across_strike(const StationView& stations, const BodyFrame& frame, std::size_t i) {
    const Real x = frame.cos_strike * (load<Real>(stations.east + i) - frame.east) -
                   frame.sin_strike * (load<Real>(stations.north + i) - frame.north);
    return x * frame.sense;
}

template <class Real>
ANOMALIS_INLINE Real lifted(Real height) {
    return height <= 0.0 ? Real{} + lifted_height : height;
}

/// Calls `step` with an index and a value that tells the type to calculate with: whole vectors first, the
/// rest one by one.
template <class Step>
ANOMALIS_INLINE void for_stations(std::size_t count, const Step& step) {
    constexpr std::size_t lanes = lane_count;
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes) step(i, Lanes{});
    for (; i < count; ++i) step(i, 0.0);
}

/// Adds formula(x, h) to the response at every station: x across strike, h the lifted height over the top.
template <class Formula>
ANOMALIS_INLINE void add_over_stations(const StationView& stations, const BodyFrame& frame, float* response,
                                       const Formula& formula) {
    for_stations(
        stations.count, [&](std::size_t i, auto kind) __attribute__((always_inline)) {
            using Real = decltype(kind);
            const Real x = across_strike<Real>(stations, frame, i);
            const Real h = lifted(load<Real>(stations.sensor + i) - frame.top);
            add_to(response + i, formula(x, h));
        });
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
