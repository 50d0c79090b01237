#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/body_parameters.h"
#include "core/body_types.h"
#include "core/workspace.h"
#include "inversion/line_place.h"
#include "model/burial_depth.h"
#include "report/fit_json.h"

// A body of a model that was found or carried, as reports tell it: the names of what an interpreter asks for,
// with depths below what they are measured from. As in fit_json.h the type of a JSON value is a parameter.
namespace anomalis::report {

/// What reports call a parameter: lengths in m, angles in degrees, susceptibility in micro SI, density
/// contrast in g/cc.
inline std::string reported_name(std::int32_t param_code) {
    switch (param_code) {
        case param_susc:
            return "susceptibility";
        case param_density:
            return "density_contrast";
        case param_strike:
            return "strike_deg";
        case param_depth_extent:
            return "depth_extent_m";
        case param_length:
            return "length_m";
        default:
            return std::string(param_name(param_code));
    }
}

/// A length of 0 goes on without end: null.
template <class Json>
Json extent_json(float extent) {
    return extent > 0 ? Json(extent) : Json(nullptr);
}

/// [lower, upper] of a depth below `elevation` from those of the top.
template <class Json>
Json depth_interval_json(double elevation, const FittedParameter& top) {
    FittedParameter depth = top;
    depth.lower = elevation - top.upper;
    depth.upper = elevation - top.lower;
    return interval_json<Json>(depth);
}

/// The 90 % intervals of the parameters of a body that were fitted, by their names.
template <class Json>
Json body_intervals_json(const FitRecord& record, int number, double sensor, std::optional<double> ground) {
    Json json = Json::object();
    for (const FittedParameter& parameter : record.parameters) {
        if (parameter.body != number) continue;
        json[reported_name(parameter.param_code)] = interval_json<Json>(parameter);
        if (parameter.param_code != param_top) continue;
        json["depth_below_sensor"] = depth_interval_json<Json>(sensor, parameter);
        if (ground) json["depth_below_ground"] = depth_interval_json<Json>(*ground, parameter);
    }
    return json;
}

/// Body `number` of a model that was fitted on the line of `workspace`, to `channel` (a `ChannelCode`).
template <class Json>
Json found_body_json(const ModelBody& body, int number, const FitRecord& record, std::int32_t channel,
                     const Workspace& workspace) {
    const auto distance = static_cast<double>(body.distance.value), top = static_cast<double>(body.top.value);
    const double sensor = inversion::elevation_at(workspace, distance, column_sensor);
    std::optional<double> ground;
    if (model::ground_is_known(workspace)) ground = model::ground_elevation(workspace, distance);
    Json json = {{"body", number},
                 {"type", body_type_name(body.type)},
                 {"distance", body.distance.value},
                 {"top", body.top.value},
                 {"depth_below_sensor", sensor - top},
                 {"depth_below_ground", ground ? Json(*ground - top) : Json(nullptr)},
                 {"dip", body.dip.value},
                 {"width", body.width.value}};
    json["susceptibility"] = channel == channel_grav ? Json(nullptr) : Json(body.susc.value);
    if (channel != channel_mag) json["density_contrast"] = body.density.value;
    json["strike_deg"] = body.strike.value;
    json["depth_extent_m"] = extent_json<Json>(body.depth_extent.value);
    json["length_m"] = extent_json<Json>(body.length.value);
    json["intervals"] = body_intervals_json<Json>(record, number, sensor, ground);
    return json;
}

}  // namespace anomalis::report
