#pragma once

#include "core/fit_record.h"

namespace anomalis::edit {

struct Workbench;

/// The last fit while the model, the line and its window are as they were fitted; null after a change of
/// them. Looked at once a change.
const FitRecord* fit_in_force(const Workbench& workbench);

/// What it says of a parameter; null where it says nothing.
const FittedParameter* fitted_parameter(const Workbench& workbench, int body, int param_code);

}  // namespace anomalis::edit
