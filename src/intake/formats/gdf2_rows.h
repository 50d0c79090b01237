#pragma once

#include <string_view>

#include "intake/formats/gdf2_definition.h"
#include "intake/formats/survey_format.h"
#include "intake/formats/table_reader.h"

// How the rows of a .dat file keep to their definition, which many do in part.
namespace anomalis::intake {

/// What a line of the file is. `typed`: rows begin with the type of their record.
RowUse gdf2_row_use(const Gdf2Definition& definition, bool typed, std::string_view line);

/// Finds how the rows hold the fields that are defined: at the declared widths, at those less blanks or a
/// type that are missing in front, or separated. Fills the layout's columns, and remarks where the rows are
/// not as declared. False where they hold something else. Raises Fault where no row is of the defined type.
bool fit_gdf2_rows(const Gdf2Definition& definition, const SurveySample& sample, SurveyLayout& layout);

}  // namespace anomalis::intake
