#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "core/body_parameters.h"
#include "core/workspace.h"
#include "filter/gradient_unit.h"

// The units of the numbers of a JSON document, by the names under which they stand in it; what names no unit
// here or in its own name has none. One object a document, `units_of`. As in fit_json.h the type of a JSON
// value is a parameter.
namespace anomalis::report {

inline constexpr const char* units_name = "units_of";

template <class Json>
Json units_json(std::initializer_list<std::pair<const char*, const char*>> units) {
    Json json = Json::object();
    for (const auto& [name, unit] : units) json[name] = unit;
    return json;
}

/// Of the fifteen parameters, by their names; of a wire `susc` is its current.
template <class Json>
Json parameter_units_json() {
    Json json = Json::object();
    for (const BodyParameter& row : body_parameters()) {
        const std::string_view unit = row.grid.unit.sheet;
        json[std::string(row.name)] = unit.empty() ? std::string("1") : std::string(unit);
    }
    json["susc of a wire"] = std::string(body_parameter(param_susc).grid.unit.wire);
    return json;
}

/// Of a body as `found_body_json` tells it.
template <class Json>
Json found_body_units_json() {
    return units_json<Json>({{"distance", "m"},
                             {"top", "m, elevation"},
                             {"depth_below_sensor", "m"},
                             {"depth_below_ground", "m"},
                             {"dip", "°"},
                             {"width", "m"},
                             {"susceptibility", "µSI"},
                             {"density_contrast", "g/cc"}});
}

/// Of a record as `fit_json` tells it.
template <class Json>
Json fit_units_json() {
    Json json = units_json<Json>({{"first_distance", "m"}, {"last_distance", "m"}});
    for (const auto& [channel, unit] : {std::pair{"mag", "nT"}, {"grav", "mGal"}})
        json[channel] = units_json<Json>(
            {{"rms", unit}, {"noise", unit}, {"coefficients", unit}, {"centre", "m"}, {"half_width", "m"}});
    json["value, error, interval"] = parameter_units_json<Json>();
    return json;
}

/// Of the rows of a channel, nT or mGal.
template <class Json>
Json row_units_json(const Workspace& workspace, const char* unit) {
    Json json = Json::object();
    for (const char* row : {"raw", "smoothed", "residual"}) json[row] = unit;
    for (const char* row : {"gradient", "horizontal", "total_gradient"})
        json[row] = filter::gradient_unit(unit, workspace.processing.vg_filter_step);
    return json;
}

template <class Json>
Json workspace_units_json() {
    Json json = Json::object();
    for (const char* name : {"station_spacing",
                             "min_station_spacing",
                             "gap_distance",
                             "surface_elevation",
                             "sensor_offset",
                             "profile_grid_spacing",
                             "depth_grid_spacing",
                             "infinite_body_length",
                             "finite_body_left_clip",
                             "finite_body_right_clip",
                             "line_constant",
                             "origin_east",
                             "origin_north",
                             "x_min",
                             "x_max",
                             "y_min",
                             "y_max",
                             "z_min",
                             "z_max",
                             "dtm_min",
                             "dtm_max",
                             "first_distance",
                             "last_distance"})
        json[name] = "m";
    for (const char* name :
         {"min", "max", "base", "mean", "range_min", "range_max", "calc_base", "calc_mean", "noise"}) {
        json[std::string("mag_") + name] = "nT";
        json[std::string("grav_") + name] = "mGal";
    }
    json["field_intensity"] = "nT";
    json["field_inclination"] = json["field_declination"] = "°";
    json["azimuth"] = "radians";
    for (const char* name :
         {"smooth_filter_width", "residual_filter_width", "vg_filter_width", "vg_filter_step"})
        json[name] = "stations";
    json["data_file_date"] = json["model_file_date"] = "days since 1899-12-30";
    json["form_height"] = json["form_width"] = "twips";
    return json;
}

template <class Json>
Json body_units_json() {
    Json json = Json::object();
    for (const char* name : {"east", "north", "top_elevation", "end_width_a", "end_width_b",
                             "shell_thickness", "end_thickness", "max_triangle_size"})
        json[name] = "m";
    json["params"] = parameter_units_json<Json>();
    json["response"] = {"nT", "mGal", "nT", "nT", "nT"};
    return json;
}

/// By the names of the dump.
template <class Json>
Json dump_units_json(const Workspace& workspace) {
    return {
        {"workspace", workspace_units_json<Json>()},
        {"stations", {"line", "m", "m", "m", "m"}},
        {"distances", "m"},
        {"mag_data", row_units_json<Json>(workspace, "nT")},
        {"grav_data", row_units_json<Json>(workspace, "mGal")},
        {"mag_regional", units_json<Json>({{"centre, half_width", "m"}, {"coefficients, values", "nT"}})},
        {"grav_regional", units_json<Json>({{"centre, half_width", "m"}, {"coefficients, values", "mGal"}})},
        {"bodies", body_units_json<Json>()},
        {"last_fit", fit_units_json<Json>()}};
}

}  // namespace anomalis::report
