#include "report/inversion_json.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "report/fit_json.h"
#include "report/json_text.h"
#include "report/json_units.h"
#include "show/fit_quality.h"

namespace anomalis::report {

namespace {

using Json = nlohmann::ordered_json;

constexpr double no_limit = 1e30;

Json pair_json(const std::optional<MisfitPair>& pair) {
    return pair ? Json(*pair) : Json(nullptr);
}

/// A least-squares fit has no limit where none was keyed and physics asks for none.
Json limit_json(const flow::InversionReport& report, float limit) {
    const bool none = report.method == InversionMethod::least_squares &&
                      (limit == unset || !(std::abs(static_cast<double>(limit)) < no_limit));
    return none ? Json(nullptr) : Json(limit);
}

Json parameters_json(const flow::InversionReport& report) {
    Json parameters = Json::array();
    for (const flow::ReportedParameter& p : report.parameters) {
        parameters.push_back({{"body", p.body},
                              {"param_code", p.param_code},
                              {"name", p.name},
                              {"unit", p.unit},
                              {"start", p.start},
                              {"final", p.final},
                              {"lower", limit_json(report, p.lower)},
                              {"upper", limit_json(report, p.upper)},
                              {"step", p.step}});
    }
    return parameters;
}

Json names_json(const flow::InversionReport& report, const std::vector<int>& indices) {
    Json names = Json::array();
    for (const int index : indices) {
        const flow::ReportedParameter& p = report.parameters.at(static_cast<std::size_t>(index - 1));
        names.push_back({{"body", p.body}, {"name", p.name}});
    }
    return names;
}

/// In the order of the parameters; null for a parameter that the fit tells nothing of.
Json intervals_json(const flow::InversionReport& report) {
    Json intervals = Json::array();
    const std::optional<FitRecord>& record = report.result.record;
    for (const flow::ReportedParameter& p : report.parameters) {
        Json interval = nullptr;
        if (record)
            for (const FittedParameter& fitted : record->parameters)
                if (fitted.body == p.body && fitted.param_code == p.param_code)
                    interval = interval_json<Json>(fitted);
        intervals.push_back(std::move(interval));
    }
    return intervals;
}

FittedChannel nothing_fitted() {
    FittedChannel channel;
    channel.rms = channel.noise = channel.chi_square = channel.correlation = FittedParameter::open;
    return channel;
}

/// What a channel that was fitted has to say, each name with `before` in front.
void add_channel(const flow::ReportedChannel& channel, const flow::InversionReport& report,
                 const std::string& before, Json& json) {
    const bool gradient = report.target == target_gradient;
    const FittedChannel fitted = channel.fitted.value_or(nothing_fitted());
    const bool measured = !channel.fitted && channel.quality;
    json[before + "rms"] = number_or_null<Json>(measured ? channel.quality->rms : fitted.rms);
    const double noise = measured ? channel.quality->noise.value : fitted.noise;
    json[before + "noise"] = noise > 0 ? number_or_null<Json>(noise) : Json(nullptr);
    json[before + "chi_square"] = number_or_null<Json>(fitted.chi_square);
    const Regional& regional = channel.fitted ? fitted.regional : channel.regional;
    const Json polynomial = regional_json<Json>(regional);
    const bool none = polynomial.is_null();
    json[before + "regional"] = none ? Json(nullptr) : polynomial["coefficients"];
    json[before + "regional_axis"] =
        none ? Json(nullptr)
             : Json{{"centre", polynomial["centre"]}, {"half_width", polynomial["half_width"]}};
    json[before + "residual_correlation_m"] = number_or_null<Json>(fitted.correlation);
    const std::string_view unit = show::channel_unit(channel.channel);
    json[before + "units"] = gradient ? filter::gradient_unit(unit, report.tap_step) : std::string(unit);
}

/// The first channel's names stand alone; those of a joint fit's gravity begin with "grav_".
void add_channels(const flow::InversionReport& report, Json& json) {
    for (const flow::ReportedChannel& channel : report.channels) {
        const bool second = &channel != &report.channels.front();
        add_channel(channel, report, second ? "grav_" : "", json);
    }
}

}  // namespace

std::string inversion_json_text(const flow::InversionReport& report, const RecordingPrompts& told) {
    const inversion::RunResult& result = report.result;
    Json json = {{"status", result.status}, {"label", report.label}, {"iterations", result.iterations}};
    json["initial_misfit"] = pair_json(result.initial_misfit);
    json["final_misfit"] = result.initial_misfit ? Json(result.misfit_pair) : Json(nullptr);
    if (result.initial_grav_misfit) {
        json["initial_grav_misfit"] = pair_json(result.initial_grav_misfit);
        json["final_grav_misfit"] = pair_json(result.grav_misfit);
    }
    json["evaluations"] = result.evaluations;
    json["seconds"] = report.seconds;
    json["parameters"] = parameters_json(report);
    json["method"] = method_name(report.method);
    json["intervals"] = intervals_json(report);
    add_channels(report, json);
    json[units_name] = units_json<Json>({{"seconds", "s"},
                                         {"rms", "as units"},
                                         {"noise", "as units"},
                                         {"regional", "as units"},
                                         {"regional_axis", "m"},
                                         {"start, final, lower, upper, step", "as unit of the parameter"},
                                         {"intervals, errors", "as unit of the parameter, in their order"}});
    json["fit_remarks"] = result.record ? Json(result.record->remarks) : Json::array();
    if (result.statistics) {
        json["errors"] = result.statistics->errors;
        json["correlation"] = matrix_json<Json>(result.statistics->correlation, report.parameters.size());
        json["undetermined"] = names_json(report, result.statistics->undetermined);
        json["at_limit"] = names_json(report, result.statistics->at_limit);
    }
    add_told(json, told);
    return json_text(json, 1);
}

}  // namespace anomalis::report
