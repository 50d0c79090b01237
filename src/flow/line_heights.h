#pragma once

#include "flow/import_survey.h"

namespace anomalis::flow {

/// Where the sensor of an imported line is, and the ground below it, as far as its file tells: columns that
/// are known, and for what is not the workspace's own flat ground or height of the sensor. What was taken for
/// what is noted. Heights that are missing here and there are interpolated between their neighbours. Private
/// to this room.
void settle_heights(intake::SurveyLine& line, const ImportChoices& choices, ImportedLine& imported);

}  // namespace anomalis::flow
