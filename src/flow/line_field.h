#pragma once

#include <optional>
#include <string>

#include "flow/import_survey.h"

// The earth's field of an imported line. Private to this room.
namespace anomalis::flow {

/// When a line was measured.
struct SurveyDate {
    std::string text;  ///< as it was given, or the decimal year of the file; "" where nobody knows
    double year = 0;
};
/// Raises Fault for a text that is no date.
SurveyDate date_of_line(const intake::SurveyLine& line, const ImportChoices& choices);

/// Sets field, date and their origin of the workspace. A date that somebody gave and that the model does not
/// reach raises Fault; what else keeps the field from being known is noted.
void set_field(const intake::SurveyLine& line, const SurveyDate& date, const ImportChoices& choices,
               ImportedLine& imported);

/// Has the workspace take the main field out of its magnetic readings, or put it in, whenever they are
/// loaded. Returns what there is to say of it in the table; "" for nothing. Raises Fault where system or date
/// are not known.
std::string change_main_field(const ImportChoices& choices, ImportedLine& imported);

}  // namespace anomalis::flow
