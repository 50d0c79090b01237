#pragma once

#include "forward/columns/weighted_columns.h"
#include "forward/station_lanes.h"

// The end of kernels of columns. To be included by files only that are compiled once a vector level.
namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL {

/// Some stations that fill a vector, or the last ones, which fill a part of it. All is done in whole vectors:
/// what a compiler makes of single numbers may round otherwise.
struct Stretch {
    std::size_t at;
    int used;
};

ANOMALIS_INLINE Lanes load_part(const double* from, const Stretch& part) {
    if (part.used == lane_count) return load_lanes(from + part.at);
    Lanes value;
    for (int lane = 0; lane < lane_count; ++lane)
        value[lane] = from[part.at + static_cast<std::size_t>(lane < part.used ? lane : part.used - 1)];
    return value;
}

ANOMALIS_INLINE void store_part(double* to, const Stretch& part, Lanes value) {
    if (part.used == lane_count) return store_lanes(to + part.at, value);
    for (int lane = 0; lane < part.used; ++lane) to[part.at + static_cast<std::size_t>(lane)] = value[lane];
}

ANOMALIS_INLINE void store_columns(const WeightedColumns& columns, const Stretch& part, const Lanes* terms) {
    for (int column = 0; column < columns.columns; ++column) {
        Lanes sum{};
        for (int k = columns.first[column]; k < columns.first[column + 1]; ++k)
            sum += columns.weight[k] * terms[columns.term[k]];
        store_part(columns.out + static_cast<std::size_t>(column) * columns.stride, part, sum);
    }
}

/// Stations as a body sees them, from its reference point: across its strike, along it, up.
struct BodyStation {
    Lanes x, y, z;
};

/// Calls `step` with a stretch and its stations, one stretch after the other.
template <class Step>
ANOMALIS_INLINE void over_stretches(const StationView& stations, const BodyFrame& frame, const Step& step) {
    constexpr std::size_t lanes = lane_count;
    for (std::size_t at = 0; at < stations.count; at += lanes) {
        const std::size_t left = stations.count - at;
        const Stretch part{at, static_cast<int>(left < lanes ? left : lanes)};
        const Lanes east = load_part(stations.east, part) - frame.east;
        const Lanes north = load_part(stations.north, part) - frame.north;
        step(part, BodyStation{(frame.cos_strike * east - frame.sin_strike * north) * frame.sense,
                               frame.sin_strike * east + frame.cos_strike * north,
                               load_part(stations.sensor, part) - frame.top});
    }
}

}  // namespace anomalis::forward::ANOMALIS_VECTOR_LEVEL
