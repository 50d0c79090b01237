#pragma once

#include <string>
#include <vector>

#include "survey/plan/plan.h"
#include "survey/plan/plan_node.h"

// What a plan says of where its lines are. Private to this room.
namespace anomalis::survey {

/// The table [source] of a survey file; `folder` is that of the plan. Raises Fault, FileFault.
SurveySource survey_source(const PlanNode& source, const std::string& folder);

/// The workspaces of a list of paths and patterns (*, ?, [...]), each as it is found from the current folder;
/// those of one pattern in the order of their names. Raises Fault for one that is not there.
std::vector<std::string> workspace_paths(const PlanNode& list, const std::string& folder);
/// One workspace, which is there.
std::string workspace_path(const PlanNode& path, const std::string& folder);

}  // namespace anomalis::survey
