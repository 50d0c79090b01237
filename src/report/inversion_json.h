#pragma once

#include <string>

#include "flow/inversion_report.h"

namespace anomalis {
class RecordingPrompts;
}  // namespace anomalis

namespace anomalis::report {

/// The report of a run as one JSON object; a refused run has null misfits.
std::string inversion_json_text(const flow::InversionReport& report, const RecordingPrompts& told);

}  // namespace anomalis::report
