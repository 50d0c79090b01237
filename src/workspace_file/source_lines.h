#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

namespace anomalis::workspace_file {

/// The entries that tell where the numbers of the line came from and how far apart the stations of a gap are:
/// each a line `name value`, only those that differ from their default.
std::vector<std::string> source_lines(const Workspace& workspace);

/// Takes one of those entries; another name is passed over. A value that is none is shown and leaves the
/// default.
void read_source_entry(std::string_view name, std::string_view value, Workspace& workspace, Prompts& prompts);

}  // namespace anomalis::workspace_file
