#include "intake/survey/survey_corrections.h"

#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"

namespace anomalis::intake {

namespace {

void set_unit(SurveyLayout& layout, const std::string& name, Unit unit) {
    SurveyColumn& column = layout.columns[find_column(layout, name)];
    const std::vector<Unit> units = units_of_role(column.role);
    if (std::ranges::find(units, unit) == units.end())
        throw Fault("Column \"" + column.name + "\" of " + file_name(layout.path) + " cannot be in " +
                    std::string(unit_name(unit)) +
                    (units.empty() ? ": it has no role with a unit. --role gives it one"
                                   : ": it is " + std::string(role_name(column.role))));
    column.unit = unit;
}

}  // namespace

void give_role(SurveyLayout& layout, std::size_t column, Role role) {
    for (SurveyColumn& other : layout.columns)
        if (role != Role::none && other.role == role) other.role = Role::none;
    SurveyColumn& own = layout.columns.at(column);
    own.role = role;
    const std::vector<Unit> units = units_of_role(role);
    if (units.empty()) {
        own.unit = Unit::as_is;
    } else if (std::ranges::find(units, own.unit) == units.end()) {
        own.unit = units.front();
    }
}

std::size_t find_column(const SurveyLayout& layout, const std::string& name) {
    const auto& columns = layout.columns;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].name == name) return i;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (equal_ignoring_case(columns[i].name, name)) return i;
    double number = 0;
    if (parse_number(name, number) && number >= 1 && number <= static_cast<double>(columns.size()) &&
        number == std::floor(number))
        return static_cast<std::size_t>(number) - 1;
    std::string names;
    for (const SurveyColumn& column : columns) names += (names.empty() ? "" : ", ") + column.name;
    throw Fault(file_name(layout.path) + " has no column \"" + name + "\"; its columns are " + names);
}

void take_choices(const ColumnChoices& choices, SurveyLayout& layout) {
    for (const auto& [role, name] : choices.roles) give_role(layout, find_column(layout, name), role);
    for (const auto& [name, unit] : choices.units) set_unit(layout, name, unit);
    for (const auto& [name, value] : choices.nulls)
        layout.columns[find_column(layout, name)].nulls.push_back(value);
}

}  // namespace anomalis::intake
