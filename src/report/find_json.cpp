#include "report/find_json.h"

#include <nlohmann/json.hpp>

#include "flow/channel_choice.h"
#include "flow/find_report.h"
#include "report/fit_json.h"
#include "report/found_body_json.h"
#include "report/json_text.h"
#include "report/json_units.h"
#include "show/fit_quality.h"

namespace anomalis::report {

namespace {

using Json = nlohmann::ordered_json;

/// Coefficients and axis of a regional, each name with `before` in front.
void add_regional(const Regional& regional, const std::string& before, Json& json) {
    const Json polynomial = regional_json<Json>(regional);
    const bool none = polynomial.is_null();
    json[before + "regional"] = none ? Json::array() : polynomial["coefficients"];
    json[before + "regional_axis"] =
        none ? Json(nullptr)
             : Json{{"centre", polynomial["centre"]}, {"half_width", polynomial["half_width"]}};
}

Json bodies_json(const inversion::FoundModel& model, bool found, std::int32_t channel,
                 const Workspace& workspace) {
    const auto present = static_cast<int>(model.bodies.size()) - model.found;
    const int first = found ? present + 1 : 1;
    const int last = found ? static_cast<int>(model.bodies.size()) : present;
    Json bodies = Json::array();
    for (int number = first; number <= last; ++number)
        bodies.push_back(found_body_json<Json>(model.bodies[static_cast<std::size_t>(number - 1)], number,
                                               model.record, channel, workspace));
    return bodies;
}

Json model_json(const inversion::FoundModel& model, std::int32_t channel, const Workspace& workspace) {
    Json json = {{"rms", number_or_null<Json>(model.rms)},
                 {"criterion", number_or_null<Json>(model.criterion)},
                 {"kind", model.kind}};
    const FitRecord& record = model.record;
    const auto regional_of = [](const std::optional<FittedChannel>& fitted) {
        return fitted ? fitted->regional : Regional{};
    };
    if (channel != channel_grav) add_regional(regional_of(record.mag), "", json);
    if (channel != channel_mag)
        add_regional(regional_of(record.grav), channel == channel_joint ? "grav_" : "", json);
    json["bodies"] = bodies_json(model, true, channel, workspace);
    json["present_bodies"] = bodies_json(model, false, channel, workspace);
    json["fit_remarks"] = record.remarks;
    return json;
}

/// The line as it is, with the regional that it has.
Json no_body_json(const flow::FindReport& report, const Workspace& workspace) {
    Json json = {
        {"rms", number_or_null<Json>(report.rms_of_none)}, {"criterion", nullptr}, {"kind", "no new body"}};
    if (report.channel != channel_grav) add_regional(workspace.mag.regional, "", json);
    if (report.channel != channel_mag)
        add_regional(workspace.grav.regional, report.channel == channel_joint ? "grav_" : "", json);
    json["bodies"] = Json::array();
    return json;
}

}  // namespace

std::string find_json_text(const flow::FindReport& report, const Workspace& workspace,
                           const RecordingPrompts& told) {
    const inversion::FindResult& result = report.result;
    const bool joint = report.channel == channel_joint;
    Json json = {{"seconds", result.seconds},
                 {"label", report.refusal.empty() ? result.label : report.refusal},
                 {"stopped", result.stopped},
                 {"channel", flow::channel_name(report.channel)},
                 {"units", show::channel_unit(joint ? channel_mag : report.channel)},
                 {"alternatives", Json::array()}};
    for (const inversion::FoundModel& model : result.models)
        json["alternatives"].push_back(model_json(model, report.channel, workspace));
    if (result.models.empty() && report.refusal.empty())
        json["alternatives"].push_back(no_body_json(report, workspace));
    Json units = units_json<Json>({{"seconds", "s"}, {"rms", "as units"}, {"regional_axis", "m"}});
    units["bodies"] = found_body_units_json<Json>();
    json[units_name] = std::move(units);
    json["find_remarks"] = result.remarks;
    add_told(json, told);
    return json_text(json, 1);
}

}  // namespace anomalis::report
