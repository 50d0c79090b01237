#pragma once

#include "intake/formats/column_values.h"
#include "intake/formats/survey_layout.h"

namespace anomalis::intake {

/// Gives the columns their roles, by their names first and then by what their values can be: degrees under
/// the name of eastings, a "line" that differs in every row, coordinates in a file without names. Whatever
/// was not plain is a remark.
void choose_roles(SurveyLayout& layout, const ValueSample& sample);

}  // namespace anomalis::intake
