#include "batch/info_json.h"

#include <nlohmann/json.hpp>

#include "batch/batch_session.h"
#include "batch/load_report_json.h"
#include "core/body_types.h"
#include "core/model_mark.h"
#include "report/json_text.h"
#include "show/fit_quality.h"

namespace anomalis::batch {

namespace {

using Json = nlohmann::ordered_json;

Json channel_json(const Workspace& w, int channel, bool misfits) {
    const bool there = channel == channel_mag ? w.has_mag() : w.has_grav();
    if (!there || w.station_count == 0) return nullptr;
    const std::string unit = channel == channel_mag ? "_nT" : "_mGal";
    const Channel& c = w.channel(channel);
    const auto number = [](float value) { return report::number_or_null<Json>(static_cast<double>(value)); };
    Json json;
    json["least" + unit] = number(c.min);
    json["greatest" + unit] = number(c.max);
    json["base" + unit] = number(c.base);
    json["rms" + unit] = nullptr;
    if (!misfits) return json;
    if (const auto quality = show::fit_quality(w, channel))
        json["rms" + unit] = report::number_or_null<Json>(quality->rms);
    return json;
}

Json bodies_json(const Workspace& w) {
    Json bodies = Json::array();
    for (int number = 1; number <= w.body_count; ++number) {
        const ModelBody& body = w.body(number);
        bodies.push_back(
            {{"number", number},
             {"name", body.name},
             {"type", std::string(body_type_name(body.type))},
             {"used", !body.turned_off},
             {"distance_m", report::number_or_null<Json>(static_cast<double>(body.distance.value))},
             {"top_m", report::number_or_null<Json>(static_cast<double>(body.top.value))}});
    }
    return bodies;
}

}  // namespace

std::string info_json_text(const BatchSession& batch, bool misfits) {
    const Workspace& w = batch.session.workspace;
    const auto number = [](float value) { return report::number_or_null<Json>(static_cast<double>(value)); };
    Json json = {{"workspace", w.model_file},
                 {"data_file", w.definition.data_file},
                 {"field", w.source.field_missing ? Json(nullptr)
                                                  : Json{{"intensity_nT", number(w.field.intensity)},
                                                         {"inclination_deg", number(w.field.inclination)},
                                                         {"declination_deg", number(w.field.declination)},
                                                         {"origin", w.source.field_origin}}},
                 {"load", load_report_json<Json>(batch.report)},
                 {"magnetics", channel_json(w, channel_mag, misfits)},
                 {"gravity", channel_json(w, channel_grav, misfits)},
                 {"formulas", std::string(formulas_name(w.formulas))},
                 {"last_fit", as_fitted(w) ? Json(w.fit->outcome) : Json(nullptr)},
                 {"bodies", bodies_json(w)}};
    report::add_told(json, batch.prompts);
    return report::json_text(json, 1);
}

}  // namespace anomalis::batch
