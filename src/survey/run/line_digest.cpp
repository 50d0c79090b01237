#include "survey/run/line_digest.h"

#include <array>
#include <cstdio>
#include <map>

#include "core/digest.h"
#include "core/paths.h"
#include "core/version.h"
#include "survey/results/json_fields.h"

namespace anomalis::survey {

namespace {

template <class Value>
Json optional_json(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json window_json(const std::optional<flow::DistanceWindow>& window) {
    return window ? Json{window->first, window->last} : Json(nullptr);
}

Json find_json(const std::optional<FindStep>& step) {
    if (!step) return nullptr;
    return {
        optional_json(step->most), optional_json(step->bodies), step->thin, step->thick, step->free_present,
        step->alternatives,        window_json(step->window)};
}

Json invert_json(const std::optional<InvertStep>& step) {
    if (!step) return nullptr;
    return {step->target, step->method, step->iterations, step->starts};
}

Json uncertainty_json(const std::optional<UncertaintyStep>& step) {
    if (!step) return nullptr;
    return {step->target,        step->samples,     step->seed,         window_json(step->window),
            step->strike_within, step->vary_bodies, step->same_regional};
}

Json render_json(const std::optional<RenderStep>& step) {
    if (!step) return nullptr;
    return {step->format, step->view, step->width, step->height};
}

}  // namespace

std::string options_text(const LineOptions& options) {
    const Json json = {
        {"formulas", options.formulas ? Json(formulas_name(*options.formulas)) : Json(nullptr)},
        {"channel", options.channel},
        {"regional", optional_json(options.fit.regional_degree)},
        {"noise", {optional_json(options.fit.mag_noise), optional_json(options.fit.grav_noise)}},
        {"find", find_json(options.find)},
        {"invert", invert_json(options.invert)},
        {"uncertainty", uncertainty_json(options.uncertainty)},
        {"render", render_json(options.render)},
        {"exports", options.exports}};
    return json.dump();
}

std::string choices_text(const SurveySource& source) {
    const flow::ImportChoices& choices = source.choices;
    Json json = {{"system", {source.system, source.file_system}},
                 {"name", choices.name},
                 {"date", choices.date},
                 {"field",
                  {static_cast<int>(choices.field_choice), choices.field.intensity, choices.field.inclination,
                   choices.field.declination}},
                 {"main_field", static_cast<int>(choices.main_field)},
                 {"sensor_offset", optional_json(choices.sensor_offset)},
                 {"formulas", formulas_name(choices.formulas)}};
    for (const auto& [role, column] : source.roles) json["roles"].push_back({role_name(role), column});
    for (const auto& [column, unit] : source.units) json["units"].push_back({column, unit_name(unit)});
    for (const auto& [column, value] : source.nulls) json["nulls"].push_back({column, value});
    return json.dump();
}

std::string digest_of_texts(const std::vector<std::string_view>& texts) {
    std::string all;
    for (const std::string_view text : texts) (all += std::to_string(text.size()) + ":") += text;
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(digest_of(all)));
    return digits.data();
}

std::string plan_digest(const SurveyPlan& plan, const std::vector<LineToDo>& lines) {
    std::map<const LineOptions*, std::string> known;  // most lines share theirs
    std::string all = plan.source ? choices_text(*plan.source) : "";
    for (const LineToDo& line : lines) {
        std::string& options = known[line.planned.options.get()];
        if (options.empty()) options = digest_of_texts({options_text(*line.planned.options)});
        all += digest_of_texts(
            {line.planned.name, line.planned.line, file_name(line.planned.workspace), options});
    }
    return digest_of_texts({plan.name, all, application_version()});
}

}  // namespace anomalis::survey
