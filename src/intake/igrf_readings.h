#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// The main field in magnetic readings: taken out of them or put back.
namespace anomalis::intake {

/// Where and when readings were made. Coordinates of the system, east before north; heights in m, empty for
/// 0.
struct ReadingPlaces {
    std::string coordinate_system;
    std::span<const double> first, second, heights;
    double year = 0;
};

/// Adds `sign` (-1 takes out, +1 puts back) times the total intensity of IGRF (nT) to every reading; missing
/// ones stay missing. Raises Fault for a system or a year that is not known and for a place that has no image
/// on the globe.
void add_igrf(std::int32_t sign, const ReadingPlaces& places, std::span<float> readings);

/// Does to the readings of a workspace, as they were read, what its source says (`LineSource::igrf_change`),
/// at the height of the sensor, of the ground where only that was read, else at 0. The range of the channel
/// follows. Raises Fault as above, and without a coordinate system or a date.
void change_igrf(Workspace& workspace);

}  // namespace anomalis::intake
