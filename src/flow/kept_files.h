#pragma once

#include <string>
#include <vector>

#include "core/file_use.h"

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// What a window has open must not be lost to one of its own outputs.
namespace anomalis::flow {

/// The data file, and the file of the workspace.
std::vector<FileUse> kept_files(const Workspace& workspace);

/// Tells, and returns true, when what `what` says would be written over a file that is open.
bool refused_over_open_file(const std::string& what, const std::string& path, const Workspace& workspace,
                            Prompts& prompts);
/// The same for the data file alone: a save writes the workspace.
bool refused_over_data_file(const std::string& what, const std::string& path, const Workspace& workspace,
                            Prompts& prompts);

}  // namespace anomalis::flow
