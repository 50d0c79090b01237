#pragma once

#include <functional>
#include <string>

#include "survey/plan/plan_node.h"

// The forms in which a plan is written. Private to this room.
namespace anomalis::survey {

/// `name` is the file's, for messages. Each raises Fault with the place of what cannot be read.
PlanNode read_toml(const std::string& text, const std::string& name);
PlanNode read_json(const std::string& text, const std::string& name);

/// The rows of a table with a row of names, one after the other: each a table of cells, those that are empty
/// left out. Commas or semicolons, whichever the first row has; quotes as in RFC 4180. `columns` sees the
/// names before, each as a node.
void read_csv_rows(const std::string& text, const std::string& name,
                   const std::function<void(const PlanNode& columns)>& columns,
                   const std::function<void(const PlanNode& row)>& take);

}  // namespace anomalis::survey
