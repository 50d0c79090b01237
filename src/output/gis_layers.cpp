#include "output/gis_layers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <tuple>
#include <utility>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "core/faults.h"
#include "core/gaps.h"
#include "core/workspace.h"
#include "forward/shape/plan_outline.h"
#include "intake/coordinates/coordinate_system.h"
#include "output/body_place.h"
#include "output/dxf_text.h"
#include "output/gis_files.h"

namespace anomalis::output {

namespace {

GisValue reading(float value) {
    return is_reading(value) ? GisValue(static_cast<double>(value)) : GisValue();
}

GisLayer station_layer(const Workspace& w) {
    GisLayer layer{
        {.name = "stations", .fields = {{"station", GisKind::whole}, {"distance_m", GisKind::real}}}, {}};
    layer.fields.push_back({"sensor_elevation_m", GisKind::real});
    if (w.definition.dtm_column > 0) layer.fields.push_back({"ground_elevation_m", GisKind::real});
    for (const auto& [there, name, unit] :
         {std::tuple{w.has_mag(), "mag", "_nT"}, {w.has_grav(), "grav", "_mGal"}})
        for (const char* stage : {"_observed", "_model"})
            if (there) layer.fields.push_back({std::string(name) + stage + unit, GisKind::real});
    for (int i = 1; i <= w.station_count; ++i) {
        GisFeature station{{{w.stations(i, column_east), w.stations(i, column_north)}}, {}};
        station.values = {std::int64_t{i}, w.distances[i], w.stations(i, column_sensor)};
        if (w.definition.dtm_column > 0) station.values.emplace_back(w.stations(i, column_ground));
        for (const auto& [there, channel] : {std::pair{w.has_mag(), &w.mag}, {w.has_grav(), &w.grav}})
            for (const Stage stage : {stage_observed, stage_calculated})
                if (there) station.values.push_back(reading(channel->data(i, w.raw_row, stage)));
        layer.features.push_back(std::move(station));
    }
    return layer;
}

constexpr std::array body_columns{param_distance, param_top,    param_width, param_length, param_depth_extent,
                                  param_offset,   param_strike, param_dip,   param_plunge, param_slope};

std::vector<GisField> body_fields_of(const Workspace& w) {
    std::vector<GisField> fields{{"body", GisKind::whole},
                                 {"name", GisKind::words},
                                 {"type", GisKind::words},
                                 {"in_model", GisKind::whole}};
    for (const ParamCode code : body_columns)
        fields.push_back({std::string(body_parameter(code).column.sheet), GisKind::real});
    if (w.has_mag()) {
        fields.push_back({std::string(body_parameter(param_susc).column.sheet), GisKind::real});
        fields.push_back({std::string(body_parameter(param_susc).column.wire), GisKind::real});
    }
    if (w.has_grav())
        fields.push_back({std::string(body_parameter(param_density).column.sheet), GisKind::real});
    return fields;
}

std::vector<GisValue> body_values(const Workspace& w, int number) {
    const ModelBody& body = w.body(number);
    const std::string type(body_type_name(body.type));
    std::vector<GisValue> values{std::int64_t{number}, body.name,
                                 type.empty() ? "Type " + std::to_string(body.type) : type,
                                 std::int64_t{body.turned_off == 1 ? 0 : 1}};
    for (const ParamCode code : body_columns)
        values.emplace_back(static_cast<double>(body_param(body, code).value));
    if (w.has_mag()) {
        // A wire keeps its current where other bodies keep the susceptibility.
        const bool current = carries_current(body.type);
        for (const bool there : {!current, current}) {
            values.emplace_back();
            if (there) values.back() = static_cast<double>(body.susc.value);
        }
    }
    if (w.has_grav()) values.emplace_back(static_cast<double>(body.density.value));
    return values;
}

/// Bodies without an end are drawn as far as a survey to each side of this one.
forward::ClipBox map_box(const Workspace& w) {
    const SquareExtents square = square_extents(w);
    const double side = std::max<double>(square.east_high - square.east_low, 1);
    return {square.east_low - side, square.east_high + side, square.north_low - side,
            square.north_high + side};
}

/// Twice the area, above 0 for a ring that runs anticlockwise.
double signed_area(const std::vector<GisPoint>& ring) {
    double area = 0;
    for (std::size_t i = 1; i < ring.size(); ++i)
        area += (ring[i - 1].x - ring[0].x) * (ring[i].y - ring[0].y) -
                (ring[i].x - ring[0].x) * (ring[i - 1].y - ring[0].y);
    return area;
}

bool is_finite(const std::vector<GisPoint>& points) {
    return std::all_of(points.begin(), points.end(),
                       [](const GisPoint& p) { return std::isfinite(p.x) && std::isfinite(p.y); });
}

std::optional<std::vector<GisPoint>> outline_of(const Workspace& w, const ModelBody& body) {
    forward::PlanOutline outline;
    Faults faults;
    if (forward::calculate_plan_outline(w, map_box(w), body, outline, faults) <= 0) return {};
    std::vector<GisPoint> ring;
    for (std::size_t i = 0; i < outline.east.size(); ++i) ring.push_back({outline.east[i], outline.north[i]});
    if (!is_finite(ring)) return {};
    if (signed_area(ring) < 0) std::reverse(ring.begin(), ring.end());
    return ring;
}

/// Outlines and tops.
std::pair<GisLayer, GisLayer> body_layers(const Workspace& w) {
    GisLayer outlines{{.name = "bodies", .shape = GisShape::polygon, .fields = body_fields_of(w)}, {}};
    GisLayer tops{{.name = "tops", .fields = outlines.fields}, {}};
    for (int number = 1; number <= w.body_count; ++number) {
        const ModelBody& body = w.body(number);
        const std::vector<GisValue> values = body_values(w, number);
        if (auto ring = outline_of(w, body)) outlines.features.push_back({std::move(*ring), values});
        const BodyPlace place = top_place(body);
        const GisPoint top{place.east, place.north};
        if (is_finite({top})) tops.features.push_back({{top}, values});
    }
    return {std::move(outlines), std::move(tops)};
}

}  // namespace

void require_coordinate_system(const Workspace& workspace) {
    if (!workspace.source.coordinate_system.empty()) return;
    throw Fault(
        "The coordinate system of the line is not known. Give it in Field from place and date, or import the "
        "survey with it");
}

std::vector<GisLayer> gis_layers(const Workspace& w, const std::string& target) {
    require_coordinate_system(w);
    const std::string& system = w.source.coordinate_system;
    auto [outlines, tops] = body_layers(w);
    std::vector<GisLayer> layers;
    layers.push_back(station_layer(w));
    layers.push_back(std::move(outlines));
    layers.push_back(std::move(tops));
    // Degrees are looked at even where nothing changes: they may be none.
    if (target == system && !intake::find_coordinate_system(system).geographic) return layers;
    change_system(layers, system, target);
    return layers;
}

}  // namespace anomalis::output
