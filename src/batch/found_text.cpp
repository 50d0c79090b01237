#include "batch/found_text.h"

#include <algorithm>
#include <cmath>

#include "core/body_parameters.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "core/worth_text.h"
#include "edit/body_rows.h"
#include "edit/interval_text.h"
#include "inversion/line_place.h"
#include "model/burial_depth.h"

namespace anomalis::batch {

namespace {

const FittedParameter* fitted(const FitRecord& record, int number, int code) {
    const auto found = std::ranges::find_if(record.parameters, [&](const FittedParameter& p) {
        return p.body == number && p.param_code == code;
    });
    return found == record.parameters.end() ? nullptr : &*found;
}

/// "42 m (below 60)".
std::string value_text(const ModelBody& body, int number, const FitRecord& record, ParamCode code) {
    const FittedParameter* parameter = fitted(record, number, code);
    const float value = body_param(body, code).value;
    const bool closed = parameter && std::isfinite(parameter->lower) && std::isfinite(parameter->upper);
    const std::string number_text =
        closed ? text_of_worth(static_cast<double>(value), (parameter->upper - parameter->lower) / 2)
               : edit::parameter_text(body.type, code, value);
    const std::string unit(edit::body_row(body.type, code).unit);
    const bool degrees = unit == "°";
    return number_text + (unit.empty() || degrees ? unit : " " + unit) +
           (parameter ? " (" + edit::interval_words(*parameter) + ")" : "");
}

std::string metres(double value) {
    return format_number(value, "0") + " m";
}

}  // namespace

std::string found_body_text(const ModelBody& body, int number, const FitRecord& record, std::int32_t channel,
                            const Workspace& workspace) {
    const auto distance = static_cast<double>(body.distance.value), top = static_cast<double>(body.top.value);
    const auto of = [&](ParamCode code) { return value_text(body, number, record, code); };
    std::string text = std::string(body_type_name(body.type)) + " at " + of(param_distance) + ": " +
                       metres(inversion::elevation_at(workspace, distance, column_sensor) - top) +
                       " below the sensor";
    if (model::ground_is_known(workspace))
        text += ", " + metres(model::ground_elevation(workspace, distance) - top) + " below ground";
    text += ", top " + of(param_top) + ", dip " + of(param_dip) + ", width " + of(param_width);
    if (channel != channel_grav) text += ", susceptibility " + of(param_susc);
    if (channel != channel_mag) text += ", density contrast " + of(param_density);
    return text;
}

}  // namespace anomalis::batch
