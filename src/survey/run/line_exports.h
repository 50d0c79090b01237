#pragma once

#include <span>
#include <string>
#include <vector>

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// The tables and drawings of a line that a plan asks for by name.
namespace anomalis::survey {

struct LineExport {
    const char* name;    ///< as a plan says it: "clean-profile"
    const char* ending;  ///< of its file: "-profile.csv"
    int (*write)(const std::string& path, const Workspace& workspace, Prompts& prompts,
                 const std::vector<std::string>& failures);
};

/// All that there are. Each writes a file and returns 0, or -1 after a failure, which was told.
std::span<const LineExport> line_exports();
/// The one of that name; null for another word.
const LineExport* find_line_export(const std::string& name);

}  // namespace anomalis::survey
