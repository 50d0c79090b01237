#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

// What a map for other programs is made of: layers of points, lines or areas, each with its values.
namespace anomalis::output {

struct GisPoint {
    double x = 0, y = 0;  ///< east before north, longitude before latitude
    double z = 0;         ///< elevation in m, in a table with heights
};

enum class GisKind { whole, real, words };
struct GisField {
    std::string name;
    GisKind kind;
};
/// Nothing where there is no value.
using GisValue = std::variant<std::monostate, std::int64_t, double, std::string>;
/// A number, or nothing for one that is not finite.
GisValue gis_number(double value);

enum class GisShape { point, line, polygon };
struct GisTable {
    std::string name;
    GisShape shape = GisShape::point;
    std::vector<GisField> fields = {};
    bool heights = false;  ///< its points have a z
};

struct GisFeature {
    /// One; of a line two or more; of a polygon the closed ring, anticlockwise. None where the place is not
    /// known: the values stay.
    std::vector<GisPoint> points;
    std::vector<GisValue> values;  ///< in the order of the fields
};

struct GisLayer : GisTable {
    std::vector<GisFeature> features;
};

/// Carries all points from one coordinate system to another. Raises Fault when either is not known, or a
/// place has no image there.
void change_system(std::vector<GisLayer>& layers, const std::string& from, const std::string& to);

/// GeoJSON (RFC 7946) of layers that lie in WGS 84: one collection, each feature with its layer among its
/// properties. Heights are left out: a z there counts from the ellipsoid, and nobody says what the line's do.
/// `failures` stand beside the features.
std::string geojson_of_layers(const std::vector<GisLayer>& layers,
                              const std::vector<std::string>& failures = {});

}  // namespace anomalis::output
