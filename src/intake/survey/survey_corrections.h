#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "intake/formats/survey_layout.h"

// What a person corrects of a recognised layout.
namespace anomalis::intake {

/// A role is that of one column: whichever had it before has none then. The column gets a unit that such a
/// role can have.
void give_role(SurveyLayout& layout, std::size_t column, Role role);

/// The column of that name, letters of either case, or of that number from 1. Raises Fault with the names
/// that there are.
std::size_t find_column(const SurveyLayout& layout, const std::string& name);

/// All that is said of the columns of a file, each by its name or number.
struct ColumnChoices {
    std::vector<std::pair<Role, std::string>> roles;
    std::vector<std::pair<std::string, Unit>> units;
    std::vector<std::pair<std::string, double>> nulls;  ///< values that stand for none
};
/// Raises Fault: a column that is not there, a unit that its role cannot have.
void take_choices(const ColumnChoices& choices, SurveyLayout& layout);

}  // namespace anomalis::intake
