#pragma once

#include "intake/formats/column_values.h"
#include "intake/formats/survey_layout.h"

namespace anomalis::intake {

/// Corrects roles of coordinates that their values contradict.
void check_coordinates(SurveyLayout& layout, const ValueSample& sample);

/// Finds coordinates by their values where no name tells them.
void find_coordinates(SurveyLayout& layout, const ValueSample& sample);

/// Where eastings, longitudes and a system with a zone of 6 degrees are there: the zone in which they agree
/// takes the place of one in which they do not, with a remark.
void check_zone(SurveyLayout& layout, const ValueSample& sample);

}  // namespace anomalis::intake
