#include "batch/report_json.h"

#include <nlohmann/json.hpp>

#include "batch/json_text.h"

namespace anomalis::batch {

namespace {

using Json = nlohmann::ordered_json;

Json pair_json(const std::optional<MisfitPair>& pair) {
    return pair ? Json(*pair) : Json(nullptr);
}

Json parameters_json(const flow::InversionReport& report) {
    Json parameters = Json::array();
    for (const flow::ReportedParameter& p : report.parameters) {
        parameters.push_back({{"body", p.body},
                              {"param_code", p.param_code},
                              {"name", p.name},
                              {"start", p.start},
                              {"final", p.final},
                              {"lower", p.lower},
                              {"upper", p.upper},
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

/// The correlation matrix, one row a parameter.
Json correlation_json(const std::vector<double>& values, std::size_t count) {
    Json rows = Json::array();
    for (std::size_t row = 0; row < count; ++row) {
        Json one = Json::array();
        for (std::size_t column = 0; column < count; ++column) one.push_back(values.at(row * count + column));
        rows.push_back(std::move(one));
    }
    return rows;
}

}  // namespace

std::string report_json_text(const flow::InversionReport& report, const BatchPrompts& told) {
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
    if (result.statistics) {
        json["errors"] = result.statistics->errors;
        json["correlation"] = correlation_json(result.statistics->correlation, report.parameters.size());
        json["undetermined"] = names_json(report, result.statistics->undetermined);
        json["at_limit"] = names_json(report, result.statistics->at_limit);
    }
    add_told(json, told);
    return json_text(json, 1);
}

}  // namespace anomalis::batch
