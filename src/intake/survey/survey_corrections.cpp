#include "intake/survey/survey_corrections.h"

#include <algorithm>
#include <cmath>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"

namespace anomalis::intake {

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

}  // namespace anomalis::intake
