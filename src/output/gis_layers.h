#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

// What a map of the model shows, whatever format it goes into. Private to this room.
namespace anomalis::output {

struct GisPoint {
    double x = 0, y = 0;  ///< east before north, longitude before latitude
};

enum class GisKind { whole, real, words };
struct GisField {
    std::string name;
    GisKind kind;
};
/// Nothing where there is no value.
using GisValue = std::variant<std::monostate, std::int64_t, double, std::string>;

struct GisFeature {
    std::vector<GisPoint> points;  ///< one; of a polygon the closed ring, anticlockwise
    std::vector<GisValue> values;  ///< in the order of the fields
};

struct GisLayer {
    std::string name;
    bool polygons = false;  ///< else points
    std::vector<GisField> fields;
    std::vector<GisFeature> features;
};

/// The stations; the outlines of the bodies on the ground, as the plan draws them; the middle of the top of
/// each body. In the system `target`, which is the line's own when it is the same text. Raises Fault when the
/// system of the line or the target is not known, or a place has no image there.
std::vector<GisLayer> gis_layers(const Workspace& workspace, const std::string& target);

}  // namespace anomalis::output
