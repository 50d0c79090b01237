#pragma once

#include <optional>
#include <string_view>

#include "intake/formats/column_values.h"
#include "intake/formats/survey_layout.h"

// In which unit a column stands.
namespace anomalis::intake {

/// The unit that a text of a file means, in its many spellings: "metres", "nanoTesla", "gu", "um/s^2",
/// "decimal degrees".
std::optional<Unit> unit_of_text(std::string_view text);

/// The unit that the end of a name means: "height_m", "total_field_anomaly_nt", "GBA267MGAL".
std::optional<Unit> unit_of_name_end(std::string_view name);

/// Gives the columns with a role their units: as the file says, as the name ends, else by magnitude, with a
/// remark.
void choose_units(SurveyLayout& layout, const ValueSample& sample);

}  // namespace anomalis::intake
