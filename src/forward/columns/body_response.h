#pragma once

#include <span>

#include "forward/body_columns.h"

// One body's response by the formulas in force; private to the columns of a body.
namespace anomalis::forward {

/// As `body_values`. False for a body that failed, which was noted and gave zeros.
bool respond(const Workspace& workspace, ModelBody& body, int channel, const StationRange& range,
             BodyBench& memory, std::span<double> values, BodyNotes& notes);

}  // namespace anomalis::forward
