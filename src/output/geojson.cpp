#include <cmath>
#include <nlohmann/json.hpp>
#include <variant>

#include "core/failure.h"
#include "core/told_write.h"
#include "intake/coordinates/coordinate_system.h"
#include "output/gis_files.h"
#include "output/gis_layers.h"
#include "output/tables.h"

namespace anomalis::output {

namespace {

using Json = nlohmann::ordered_json;

/// To a millimetre on the ground.
double rounded(double degrees) {
    constexpr double steps = 1e8;
    return std::round(degrees * steps) / steps;
}

Json position(const GisPoint& point) {
    return {rounded(point.x), rounded(point.y)};
}

Json geometry(const GisFeature& feature, GisShape shape) {
    if (feature.points.empty()) return nullptr;
    if (shape == GisShape::point)
        return {{"type", "Point"}, {"coordinates", position(feature.points.front())}};
    Json places = Json::array();
    for (const GisPoint& point : feature.points) places.push_back(position(point));
    if (shape == GisShape::line) return {{"type", "LineString"}, {"coordinates", std::move(places)}};
    return {{"type", "Polygon"}, {"coordinates", Json::array({std::move(places)})}};
}

Json value_json(const GisValue& value) {
    return std::visit(
        [](const auto& held) -> Json {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>) {
                return nullptr;
            } else {
                return held;
            }
        },
        value);
}

Json properties(const GisLayer& layer, const GisFeature& feature) {
    Json json{{"layer", layer.name}};
    for (std::size_t i = 0; i < layer.fields.size(); ++i)
        json[layer.fields[i].name] = value_json(feature.values[i]);
    return json;
}

}  // namespace

std::string geojson_of_layers(const std::vector<GisLayer>& layers, const std::vector<std::string>& failures) {
    Json features = Json::array();
    for (const GisLayer& layer : layers)
        for (const GisFeature& feature : layer.features)
            features.push_back({{"type", "Feature"},
                                {"geometry", geometry(feature, layer.shape)},
                                {"properties", properties(layer, feature)}});
    Json collection{{"type", "FeatureCollection"}};
    if (!failures.empty()) collection["failures"] = failures;
    collection["features"] = std::move(features);
    return collection.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string geojson_text(const Workspace& workspace, const std::vector<std::string>& failures) {
    return geojson_of_layers(gis_layers(workspace, intake::wgs84), failures);
}

int write_geojson(const std::string& path, const Workspace& workspace, Prompts& prompts,
                  const std::vector<std::string>& failures) {
    return report_failure(prompts, write_failure_prefix,
                          [&] { write_file_telling(prompts, path, geojson_text(workspace, failures)); });
}

}  // namespace anomalis::output
