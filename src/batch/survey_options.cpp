#include "batch/survey_options.h"

#include <algorithm>

#include "batch/batch_session.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "survey/run/survey_input.h"

namespace anomalis::batch {

namespace {

using intake::Role;
using intake::Unit;

std::string names_of_roles() {
    std::string names;
    for (const Role role : intake::all_roles)
        names += (names.empty() ? "" : ", ") + std::string(role_name(role));
    return names;
}

manual::ValueForm role_form() {
    manual::ValueForm form = manual::word("ROLE=COLUMN");
    for (const Role role : intake::all_roles) form.choices.push_back(std::string(role_name(role)) + "=");
    return form;
}

OptionList::Take take_role(SurveyOptions& survey) {
    return {[&survey](const std::string& text) -> std::string {
                const std::size_t equal = text.find('=');
                if (equal == std::string::npos || equal + 1 == text.size())
                    return "must be ROLE=COLUMN, such as mag=tmi: " + text;
                const auto role = intake::role_of_name(text.substr(0, equal));
                if (!role) return "must begin with one of " + names_of_roles() + ": " + text;
                survey.columns.roles.emplace_back(*role, text.substr(equal + 1));
                return {};
            },
            role_form()};
}

OptionList::Take take_unit(SurveyOptions& survey) {
    return {[&survey](const std::string& text) -> std::string {
                const std::size_t equal = text.rfind('=');
                if (equal == std::string::npos || equal == 0)
                    return "must be COLUMN=UNIT, such as gravity=um/s2: " + text;
                const auto unit = intake::unit_of_name(text.substr(equal + 1));
                if (!unit) return "must end with m, ft, nT, mGal, um/s2, gu, deg or \"deg min\": " + text;
                survey.columns.units.emplace_back(text.substr(0, equal), *unit);
                return {};
            },
            manual::word("COLUMN=UNIT")};
}

OptionList::Take take_null(SurveyOptions& survey) {
    return {[&survey](const std::string& text) -> std::string {
                const std::size_t equal = text.rfind('=');
                double value = 0;
                if (equal == std::string::npos || equal == 0 || !parse_number(text.substr(equal + 1), value))
                    return "must be COLUMN=VALUE, such as mag=-99999: " + text;
                survey.columns.nulls.emplace_back(text.substr(0, equal), value);
                return {};
            },
            manual::word("COLUMN=VALUE")};
}

/// "51940,-53.1,6.7"
OptionList::Take take_field(flow::ImportChoices& choices) {
    return {[&choices](const std::string& text) -> std::string {
                if (text == "none") {
                    choices.field_choice = flow::FieldChoice::none;
                    return {};
                }
                const std::size_t first = text.find(','), second = text.find(',', first + 1);
                if (first == std::string::npos || second == std::string::npos)
                    return "must be none, or F,I,D in nT and degrees: " + text;
                const auto total = parse_single(text.substr(0, first));
                const auto inclination = parse_single(text.substr(first + 1, second - first - 1));
                const auto declination = parse_single(text.substr(second + 1));
                if (!total || !inclination || !declination || !(*total > 0) || std::abs(*inclination) > 90 ||
                    std::abs(*declination) > 360)
                    return "must be none, or F,I,D in nT and degrees: " + text;
                choices.field_choice = flow::FieldChoice::keyed;
                choices.field = {*total, *inclination, *declination};
                return {};
            },
            manual::word("F,I,D|none")};
}

OptionList::Take take_main_field(flow::ImportChoices& choices) {
    return {[&choices](const std::string& text) -> std::string {
                if (text != "remove" && text != "add") return "must be remove or add: " + text;
                choices.main_field =
                    text == "add" ? flow::MainFieldChange::added : flow::MainFieldChange::removed;
                return {};
            },
            manual::one_of({"remove", "add"}, "")};
}

}  // namespace

void add_survey_options(OptionList& options, SurveyOptions& survey) {
    options.file(manual::file("FILE"), survey.file,
                 "Survey file: a table, XYZ lines, ASEG-GDF2 (.dfn or .dat), also as .gz");
    options.text("--crs", survey.system, manual::word("SYSTEM"),
                 "Coordinate system of the stations, such as EPSG:32754 or its name; otherwise that of the "
                 "file, for degrees the UTM zone at the middle of the survey");
    options.text("--file-crs", survey.file_system, manual::word("SYSTEM"),
                 "The one that the coordinates of the file are in, where it does not say it");
    options.several(
        "--role", take_role(survey),
        "ROLE=COLUMN: what a column is, by its name or number, such as mag=tmi. Roles: " + names_of_roles());
    options.several("--unit", take_unit(survey),
                    "COLUMN=UNIT: m, ft, nT, mGal, um/s2, gu, deg or \"deg min\"");
    options.several("--null", take_null(survey), "COLUMN=VALUE: a value that stands for none");
}

intake::SurveyLayout survey_layout(const SurveyOptions& survey) {
    intake::SurveyLayout layout = intake::recognise_survey(survey.file);
    intake::take_choices(survey.columns, layout);
    return layout;
}

intake::SurveyIndex survey_index(const SurveyOptions& survey) {
    return intake::index_survey(survey_layout(survey), {.from = survey.file_system, .to = survey.system});
}

std::size_t line_of_name(const intake::SurveyIndex& index, const std::string& name) {
    if (const auto line = flow::find_line(index, name)) return *line;
    std::string near;
    for (const std::string& one : flow::near_line_names(index, name))
        near += (near.empty() ? "" : ", ") + one;
    throw Fault(file_name(index.layout.path) + " has no line " + name + "; nearest in name are " + near);
}

void tell_survey(const intake::SurveyIndex& index, BatchSession& batch) {
    for (const std::string& remark : survey::survey_remarks(index)) batch.prompts.remark(remark);
}

void add_import_choices(OptionList& options, flow::ImportChoices& choices) {
    options.text("--date", choices.date, manual::word("DATE"),
                 "Date of the survey, 1990-07-01 or a decimal year; otherwise that of the file");
    options.taken("--field", take_field(choices),
                  "The earth's field as F,I,D (nT, degrees), or none; otherwise IGRF-14 at the middle of the "
                  "line on the date");
    options.taken("--igrf", take_main_field(choices),
                  "remove the main field from the magnetics at each station, or add it");
    options.taken("--sensor-height",
                  {[&choices](const std::string& text) -> std::string {
                       choices.sensor_offset = parse_single(text);
                       return choices.sensor_offset ? "" : "must be a number of m: " + text;
                   },
                   manual::word("M")},
                  "Height of the sensor above ground, m, for a file that tells only one of the two");
}

}  // namespace anomalis::batch
