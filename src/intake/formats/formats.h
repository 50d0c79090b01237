#pragma once

#include "intake/formats/survey_format.h"

// The one object of each format. A further format is a line here and in `survey_formats`.
namespace anomalis::intake {

const SurveyFormat& gdf2_format();
const SurveyFormat& xyz_lines_format();
const SurveyFormat& text_table_format();

}  // namespace anomalis::intake
