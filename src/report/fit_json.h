#pragma once

#include <array>
#include <cmath>
#include <string>

#include "core/body_parameters.h"
#include "core/fit_record.h"

// The record of a fit as JSON, for dumps and reports. Null stands for what is open or none. The type of a
// JSON value is a parameter: this header shows nothing of the library that has it.
namespace anomalis::report {

template <class Json>
Json number_or_null(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

/// The polynomial: degree, axis (m along the profile) and coefficients, lowest power first, of the distance
/// less `centre` over `half_width`. Null for none.
template <class Json>
Json regional_json(const Regional& regional) {
    if (regional.degree == no_regional) return nullptr;
    Json json = {{"degree", regional.degree},
                 {"centre", regional.centre},
                 {"half_width", regional.half_width},
                 {"coefficients", Json::array()}};
    for (std::int32_t k = 0; k <= regional.degree; ++k)
        json["coefficients"].push_back(regional.coefficients[static_cast<std::size_t>(k)]);
    return json;
}

/// [lower, upper], a side that the data leave open null; null when both are.
template <class Json>
Json interval_json(const FittedParameter& parameter) {
    if (!std::isfinite(parameter.lower) && !std::isfinite(parameter.upper)) return nullptr;
    return Json::array({number_or_null<Json>(parameter.lower), number_or_null<Json>(parameter.upper)});
}

template <class Json>
Json fitted_channel_json(const std::optional<FittedChannel>& channel) {
    if (!channel) return nullptr;
    return {{"stations", channel->stations},
            {"rms", number_or_null<Json>(channel->rms)},
            {"noise", number_or_null<Json>(channel->noise)},
            {"noise_given", channel->noise_given},
            {"chi_square", number_or_null<Json>(channel->chi_square)},
            {"residual_correlation_m", number_or_null<Json>(channel->correlation)},
            {"independent_data", number_or_null<Json>(channel->independent)},
            {"regional", regional_json<Json>(channel->regional)}};
}

template <class Json>
Json fitted_parameter_json(const FittedParameter& parameter) {
    return {{"body", parameter.body},
            {"param_code", parameter.param_code},
            {"name", param_name(parameter.param_code)},
            {"value", parameter.value},
            {"error", number_or_null<Json>(parameter.error)},
            {"interval", interval_json<Json>(parameter)},
            {"undetermined", parameter.undetermined},
            {"at_limit", parameter.at_limit}};
}

/// The correlation matrix, one row a parameter; null where there is none.
template <class Json>
Json matrix_json(const std::vector<double>& values, std::size_t count) {
    Json rows = Json::array();
    if (values.size() != count * count) return rows;
    for (std::size_t row = 0; row < count; ++row) {
        Json one = Json::array();
        for (std::size_t column = 0; column < count; ++column)
            one.push_back(number_or_null<Json>(values[row * count + column]));
        rows.push_back(std::move(one));
    }
    return rows;
}

template <class Json>
Json fit_json(const FitRecord& fit) {
    constexpr std::array channels{"mag", "grav", "joint"};
    Json json = {{"date", fit.date},
                 {"formulas", formulas_name(fit.formulas)},
                 {"method", method_name(fit.method)},
                 {"channel", channels.at(static_cast<std::size_t>(fit.channel))},
                 {"target", fit.target == 1 ? "gradient" : "data"},
                 {"first_distance", fit.first_distance},
                 {"last_distance", fit.last_distance},
                 {"outcome", fit.outcome},
                 {"mag", fitted_channel_json<Json>(fit.mag)},
                 {"grav", fitted_channel_json<Json>(fit.grav)},
                 {"parameters", Json::array()},
                 {"correlation", matrix_json<Json>(fit.correlation, fit.parameters.size())},
                 {"remarks", fit.remarks}};
    for (const FittedParameter& parameter : fit.parameters)
        json["parameters"].push_back(fitted_parameter_json<Json>(parameter));
    return json;
}

}  // namespace anomalis::report
