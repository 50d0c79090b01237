#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "output/gis_tables.h"

// Private to this room.
namespace anomalis::output {

/// Where points lie.
struct GisEnvelope {
    double x_low = 0, x_high = 0, y_low = 0, y_high = 0;
};
GisEnvelope envelope_of(const std::vector<GisPoint>& points);

/// A geometry as GeoPackage keeps it (OGC 12-128r18, 2.1.3): its header, with the envelope of a line or
/// polygon, then well-known binary (a z makes its kind 1000 higher), all with the low byte first.
std::string geopackage_geometry(const std::vector<GisPoint>& points, GisShape shape, bool heights,
                                std::int32_t system);

}  // namespace anomalis::output
