#pragma once

#include "flow/export_flow.h"

namespace anomalis::flow {

/// The two commands of the menu: ask for a name, bring the model up to date, write. Without bodies there are
/// no bodies to draw.
Exported export_body_dxf(edit::Workbench& workbench);
Exported export_plan_dxf(edit::Workbench& workbench);

}  // namespace anomalis::flow
