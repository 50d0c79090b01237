#include "report/uncertainty_json.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <vector>

#include "core/body_parameters.h"
#include "flow/channel_choice.h"
#include "inversion/ensemble/ensemble_correlation.h"
#include "report/fit_json.h"
#include "report/json_text.h"
#include "report/json_units.h"
#include "show/fit_quality.h"

namespace anomalis::report {

namespace {

using Json = nlohmann::ordered_json;

Json pair_json(double lower, double upper) {
    return Json::array({number_or_null<Json>(lower), number_or_null<Json>(upper)});
}

Json parameters_json(const Workspace& workspace, const Ensemble& ensemble) {
    Json list = Json::array();
    for (const EnsembleParameter& parameter : ensemble.parameters) {
        const BodyParameter& row = body_parameter(parameter.param_code);
        list.push_back({{"body", parameter.body},
                        {"param_code", parameter.param_code},
                        {"name", row.name},
                        {"unit", row.grid.unit.of(workspace.body(parameter.body).type)},
                        {"value", parameter.value},
                        {"median", number_or_null<Json>(parameter.median)},
                        {"band", pair_json(parameter.lower, parameter.upper)},
                        {"profile", pair_json(parameter.profile_lower, parameter.profile_upper)}});
    }
    return list;
}

/// Of each body: depth, dip, width and what it is made of.
Json correlation_json(const Workspace& workspace, const Ensemble& ensemble) {
    Json bodies = Json::array();
    for (std::int32_t body = 1; body <= workspace.body_count; ++body) {
        std::vector<std::size_t> places;
        Json names = Json::array();
        for (const int code : {param_top, param_dip, param_width, param_susc, param_density})
            for (std::size_t i = 0; i < ensemble.parameters.size(); ++i)
                if (ensemble.parameters[i].body == body && ensemble.parameters[i].param_code == code) {
                    places.push_back(i);
                    names.push_back(param_name(code));
                }
        std::vector<double> values;
        for (const std::size_t row : places)
            for (const std::size_t column : places)
                values.push_back(inversion::sample_correlation(ensemble, row, column));
        if (places.size() > 1)
            bodies.push_back({{"body", body},
                              {"names", names},
                              {"correlation", matrix_json<Json>(values, places.size())}});
    }
    return bodies;
}

Json degree_json(std::int32_t degree) {
    return degree == no_regional ? Json(nullptr) : Json(degree);
}

Json samples_json(const Ensemble& ensemble) {
    Json samples = Json::array();
    for (const EnsembleSample& sample : ensemble.samples) {
        Json values = Json::array();
        for (const float value : sample.values)
            values.push_back(std::isnan(value) ? Json(nullptr) : Json(value));
        Json one = {{"values", std::move(values)}};
        if (sample.mag_rms > 0) {
            one["mag_degree"] = degree_json(sample.mag_degree);
            one["mag_rms"] = sample.mag_rms;
        }
        if (sample.grav_rms > 0) {
            one["grav_degree"] = degree_json(sample.grav_degree);
            one["grav_rms"] = sample.grav_rms;
        }
        samples.push_back(std::move(one));
    }
    return samples;
}

Json fan_json(const Workspace& workspace, const Ensemble& ensemble) {
    Json fans = Json::array();
    for (const EnsembleFan& fan : ensemble.fans) {
        Json distances = Json::array();
        for (std::size_t i = 0; i < fan.lower.size(); ++i)
            distances.push_back(workspace.distances[fan.first_station + static_cast<std::int32_t>(i)]);
        const auto values = [](const std::vector<float>& side) {
            Json all = side;
            for (Json& value : all)
                if (value.get<double>() <= missing_limit) value = nullptr;
            return all;
        };
        fans.push_back({{"channel", flow::channel_name(fan.channel)},
                        {"units", show::channel_unit(fan.channel)},
                        {"first_station", fan.first_station},
                        {"distance", std::move(distances)},
                        {"lower", values(fan.lower)},
                        {"upper", values(fan.upper)}});
    }
    return fans;
}

}  // namespace

std::string uncertainty_json_text(const Workspace& workspace, const inversion::EnsembleRequest& request,
                                  const inversion::EnsembleResult& result, const Ensemble* ensemble,
                                  const RecordingPrompts& told) {
    const Ensemble none;
    const Ensemble& found = ensemble ? *ensemble : none;
    Json json = {{"channel", flow::channel_name(request.channel)},
                 {"target", request.target == target_gradient ? "gradient" : "data"},
                 {"samples_asked", request.samples},
                 {"seed", request.seed},
                 {"strike_within", request.strike_within},
                 {"stopped", result.stopped},
                 {"seconds", result.seconds}};
    json["fit"] = result.record ? fit_json<Json>(*result.record) : Json(nullptr);
    json["parameters"] = parameters_json(workspace, found);
    json["words"] = found.words;
    json["correlation"] = correlation_json(workspace, found);
    json["samples"] = samples_json(found);
    json["fan"] = fan_json(workspace, found);
    json[units_name] = units_json<Json>({{"seconds", "s"},
                                         {"strike_within", "°"},
                                         {"value, median, band, profile", "as unit of the parameter"},
                                         {"values", "as units of the parameters, in their order"},
                                         {"mag_rms", "nT"},
                                         {"grav_rms", "mGal"},
                                         {"distance", "m"},
                                         {"lower, upper of a fan", "as its units"}});
    json[units_name]["fit"] = fit_units_json<Json>();
    add_told(json, told);
    return json_text(json, 1);
}

}  // namespace anomalis::report
