#pragma once

#include <string>
#include <vector>

#include "flow/inversion_report.h"

namespace anomalis::batch {

/// The report of a run as one JSON object; a refused run has null misfits.
std::string report_json_text(const flow::InversionReport& report, const std::vector<std::string>& messages);

}  // namespace anomalis::batch
