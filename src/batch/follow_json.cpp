#include "batch/follow_json.h"

#include <nlohmann/json.hpp>

#include "batch/batch_prompts.h"
#include "report/fit_json.h"
#include "report/found_body_json.h"
#include "report/json_text.h"
#include "report/json_units.h"
#include "show/fit_quality.h"

namespace anomalis::batch {

namespace {

using Json = nlohmann::ordered_json;

constexpr double to_90_percent = 1.645;  // standard errors, of a normal distribution

const FittedParameter* fitted(const FitRecord& record, int body, int code) {
    for (const FittedParameter& p : record.parameters)
        if (p.body == body && p.param_code == code) return &p;
    return nullptr;
}

/// What was fitted, or became something else on the way.
Json changes_json(const flow::CarriedBody& carried, int number, const ModelBody& body,
                  const FitRecord& record) {
    Json changes = Json::array();
    for (const BodyParameter& row : body_parameters()) {
        const float before = (carried.before.*row.slot).value, start = (carried.body.*row.slot).value;
        const float end = (body.*row.slot).value;
        const FittedParameter* parameter = fitted(record, number, row.code);
        if (!parameter && before == start && start == end) continue;
        changes.push_back(
            {{"name", report::reported_name(row.code)},
             {"before", before},
             {"carried", start},
             {"fitted", end},
             {"interval", parameter ? report::interval_json<Json>(*parameter) : Json(nullptr)}});
    }
    return changes;
}

Json body_json(const FollowedFile& file, std::size_t index, const FitRecord& record, std::int32_t channel) {
    const int number = static_cast<int>(index) + 1;
    const flow::CarriedBody& carried = file.line.carried[index];
    const ModelBody& body = file.workspace.body(number);
    Json json = report::found_body_json<Json>(body, number, record, channel, file.workspace);
    json["first_body"] = carried.first_number;
    json["carried_along_strike_m"] = carried.along_strike;
    json["changes"] = changes_json(carried, number, body, record);
    return json;
}

Json line_json(const FollowedFile& file, std::int32_t channel) {
    const flow::InversionReport& inversion = file.line.inversion;
    Json json = {{"model", file.model},
                 {"output", file.output.empty() ? Json(nullptr) : Json(file.output)},
                 {"label", file.line.refusal.empty() ? inversion.label : file.line.refusal}};
    for (const flow::ReportedChannel& reported : inversion.channels) {
        const std::string before = &reported == &inversion.channels.front() ? "" : "grav_";
        json[before + "rms"] =
            reported.fitted ? report::number_or_null<Json>(reported.fitted->rms) : Json(nullptr);
        json[before + "units"] = show::channel_unit(reported.channel);
        json[before + "regional"] = report::regional_json<Json>(reported.regional);
    }
    json["bodies"] = Json::array();
    const FitRecord record = inversion.result.record.value_or(FitRecord{});
    if (file.line.refusal.empty())
        for (std::size_t i = 0; i < file.line.carried.size(); ++i)
            json["bodies"].push_back(body_json(file, i, record, channel));
    json["fit_remarks"] = record.remarks;
    return json;
}

Json strike_json(const flow::FollowedStrike& strike) {
    Json json = {{"body", strike.first_number}, {"before_deg", strike.before}};
    json["strike_deg"] = strike.fit ? Json(strike.fit->strike) : Json(nullptr);
    json["error_deg"] = strike.fit ? Json(strike.fit->error) : Json(nullptr);
    json["interval_deg"] = strike.taken() ? Json{strike.fit->strike - to_90_percent * strike.fit->error,
                                                 strike.fit->strike + to_90_percent * strike.fit->error}
                                          : Json(nullptr);
    json["lines"] = strike.fit ? strike.fit->lines : 0;
    json["birge_ratio"] = strike.fit ? Json(strike.fit->birge_ratio) : Json(nullptr);
    json["taken"] = strike.taken();
    return json;
}

}  // namespace

std::string follow_json_text(const std::string& first, std::int32_t channel,
                             std::span<const FollowedFile> files,
                             std::span<const flow::FollowedStrike> strikes, double seconds,
                             const BatchPrompts& told) {
    Json json = {
        {"seconds", seconds}, {"first", first}, {"lines", Json::array()}, {"strikes", Json::array()}};
    for (const FollowedFile& file : files) json["lines"].push_back(line_json(file, channel));
    for (const flow::FollowedStrike& strike : strikes) json["strikes"].push_back(strike_json(strike));
    Json units = report::units_json<Json>({{"seconds", "s"}, {"rms", "as units of the line"}});
    units["bodies"] = report::found_body_units_json<Json>();
    units["changes"] = report::parameter_units_json<Json>();
    json[report::units_name] = std::move(units);
    report::add_told(json, told);
    return report::json_text(json, 1);
}

}  // namespace anomalis::batch
