#pragma once

#include <string>
#include <vector>

#include "survey/plan/plan.h"
#include "survey/plan/plan_node.h"

// What a plan says of the commands of a line. Private to this room.
namespace anomalis::survey {

/// The keys of a table with options: "formulas", "channel", "regional", ..., "find", "invert", ...
const std::vector<std::string>& option_keys();
/// The columns of a table of lines: "formulas", ..., "find", "find_most", "find_bodies", ...
const std::vector<std::string>& option_columns();

/// Takes those entries of a table that are options, as keys with tables ([find] most = 4) or as columns
/// (find_most), into `options`, in place of what was there. Other entries are passed over. A command is done
/// when something is said of it, or when it is true; false takes it out. Raises Fault.
void take_options(const PlanNode& table, LineOptions& options);

}  // namespace anomalis::survey
