#include "survey/plan/plan_source.h"

#include <cmath>
#include <glob.h>

#include "core/failure.h"
#include "core/near_names.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "field/main_field.h"

namespace anomalis::survey {

namespace {

/// As it is found from the current folder.
std::string found_from(const std::string& folder, const std::string& path) {
    return path.starts_with('/') ? path : folder + path;
}

std::string existing_file(const PlanNode& node, const std::string& folder) {
    const std::string path = found_from(folder, text_of(node));
    if (file_exists(path).empty())
        refuse_plan(node, folder_exists(path) ? path + " is a folder" : "there is no file " + path);
    return path;
}

void take_roles(const PlanNode& roles, SurveySource& source) {
    std::vector<std::string> known;
    for (const intake::Role role : intake::all_roles) known.emplace_back(intake::role_name(role));
    refuse_unknown_keys(roles, known);
    for (const auto& [name, column] : roles.entries) {
        // A column by its name, or by its number.
        const bool number = column.kind == PlanKind::number;
        source.roles.emplace_back(
            *intake::role_of_name(key_word(name)),
            number ? std::to_string(whole_number_of(column, 1, 100000)) : text_of(column));
    }
}

void take_units(const PlanNode& units, SurveySource& source) {
    if (units.kind != PlanKind::table) refuse_plan(units, "must be a table: column = \"unit\"");
    for (const auto& [column, node] : units.entries) {
        const auto unit = intake::unit_of_name(text_of(node));
        if (!unit)
            refuse_plan(node, "must be m, ft, nT, mGal, um/s2, gu, deg or \"deg min\", not " + node.text);
        source.units.emplace_back(column, *unit);
    }
}

void take_nulls(const PlanNode& nulls, SurveySource& source) {
    if (nulls.kind != PlanKind::table) refuse_plan(nulls, "must be a table: column = value");
    for (const auto& [column, node] : nulls.entries) {
        if (node.kind == PlanKind::list) {
            for (const PlanNode& item : node.items) source.nulls.emplace_back(column, number_of_node(item));
        } else {
            source.nulls.emplace_back(column, number_of_node(node));
        }
    }
}

/// "none", or [F, I, D] in nT and degrees.
void take_field(const PlanNode& node, flow::ImportChoices& choices) {
    if (node.kind == PlanKind::text && node.text == "none") {
        choices.field_choice = flow::FieldChoice::none;
        return;
    }
    constexpr const char* wanted = "must be \"none\", or [F, I, D] in nT and degrees";
    if (node.kind != PlanKind::list || node.items.size() != 3) refuse_plan(node, wanted);
    const double total = number_of_node(node.items[0]), inclination = number_of_node(node.items[1]),
                 declination = number_of_node(node.items[2]);
    if (!(total > 0) || std::abs(inclination) > 90 || std::abs(declination) > 360) refuse_plan(node, wanted);
    choices.field_choice = flow::FieldChoice::keyed;
    choices.field = {static_cast<float>(total), static_cast<float>(inclination),
                     static_cast<float>(declination)};
}

void take_date(const PlanNode& node, flow::ImportChoices& choices) {
    choices.date = node.kind == PlanKind::number ? round_trip_text(node.number) : text_of(node);
    try {
        field::year_of_date(choices.date);
    } catch (const Fault& fault) {
        refuse_plan(node, fault.what());
    }
}

void take_choices(const PlanNode& source, flow::ImportChoices& choices) {
    if (const PlanNode* node = source.entry("name")) choices.name = text_of(*node);
    if (const PlanNode* node = source.entry("date")) take_date(*node, choices);
    if (const PlanNode* node = source.entry("field")) take_field(*node, choices);
    if (const PlanNode* node = source.entry("igrf"))
        choices.main_field = choice_of(*node, {"remove", "add"}) == "add" ? flow::MainFieldChange::added
                                                                          : flow::MainFieldChange::removed;
    if (const PlanNode* node = source.entry("sensor-height"))
        choices.sensor_offset = static_cast<float>(number_of_node(*node, "a number of m"));
}

bool is_pattern(const std::string& path) {
    return path.find_first_of("*?[") != std::string::npos;
}

/// In the order of their names. What is special in the name of the folder is meant as it stands.
std::vector<std::string> matching(const std::string& folder, const std::string& path) {
    std::string pattern;
    if (!path.starts_with('/'))
        for (const char letter : folder)
            pattern += std::string(is_pattern({letter}) || letter == '\\' ? "\\" : "") + letter;
    pattern += path;
    ::glob_t found{};
    const int state = ::glob(pattern.c_str(), 0, nullptr, &found);
    std::vector<std::string> paths;
    for (std::size_t i = 0; state == 0 && i < found.gl_pathc; ++i) paths.emplace_back(found.gl_pathv[i]);
    ::globfree(&found);
    return paths;
}

}  // namespace

SurveySource survey_source(const PlanNode& table, const std::string& folder) {
    SurveySource source;
    source.file = existing_file(*table.entry("file"), folder);
    if (const PlanNode* node = table.entry("crs")) source.system = text_of(*node);
    if (const PlanNode* node = table.entry("file-crs")) source.file_system = text_of(*node);
    if (const PlanNode* node = table.entry("roles")) take_roles(*node, source);
    if (const PlanNode* node = table.entry("units")) take_units(*node, source);
    if (const PlanNode* node = table.entry("nulls")) take_nulls(*node, source);
    take_choices(table, source.choices);
    return source;
}

std::vector<std::string> workspace_paths(const PlanNode& list, const std::string& folder) {
    std::vector<PlanNode> wanted = list.items;
    if (list.kind != PlanKind::list) wanted.assign(1, list);
    std::vector<std::string> paths;
    for (const PlanNode& node : wanted) {
        const std::string path = found_from(folder, text_of(node));
        // A file of that very name is meant, whatever letters are in it.
        if (!is_pattern(text_of(node)) || !file_exists(path).empty()) {
            paths.push_back(workspace_path(node, folder));
            continue;
        }
        const std::vector<std::string> found = matching(folder, text_of(node));
        if (found.empty()) refuse_plan(node, "no file matches " + path);
        paths.insert(paths.end(), found.begin(), found.end());
    }
    return paths;
}

std::string workspace_path(const PlanNode& path, const std::string& folder) {
    return existing_file(path, folder);
}

}  // namespace anomalis::survey
