#pragma once

#include <cstddef>

// What the station loops of this room read: plain pointers and numbers, since loops that are compiled for
// wide vectors must not share inline code with the rest of the program.
namespace anomalis::forward {

/// The columns of the stations.
struct StationView {
    const double* east;    ///< m
    const double* north;   ///< m
    const double* sensor;  ///< elevation of the sensor, m
    std::size_t count;
};

/// Where the stations lie as a body sees them: x across its strike, and the height over its top.
struct BodyFrame {
    double cos_strike, sin_strike;
    double east, north;  ///< reference point, m
    double top;          ///< elevation, m
    double sense;        ///< 1, or -1 where x is to be counted the other way
};

/// A station at or below the top of a body is taken to be this far above it, m.
inline constexpr double lifted_height = 0.1;

}  // namespace anomalis::forward
