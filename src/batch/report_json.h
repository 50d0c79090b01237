#pragma once

#include <string>

#include "flow/inversion_report.h"

namespace anomalis::batch {

class BatchPrompts;

/// The report of a run as one JSON object; a refused run has null misfits.
std::string report_json_text(const flow::InversionReport& report, const BatchPrompts& told);

}  // namespace anomalis::batch
