#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/told_write.h"

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// Tables and headers for other programs. Lines end with CR LF; numbers have a point whatever the locale.
namespace anomalis::output {

/// What stands before the system's text when a file of this room cannot be written.
inline constexpr std::string_view write_failure_prefix = "An error occurred while writing the file: ";

/// One line a station: place, distance and, for each channel present, the observed and the calculated rows
/// raw, smoothed, residual and gradient (nT, mGal). The rows must be up to date. What failed on the way to
/// them stands at the end of the first line.
void put_profile_table(const Workspace& workspace, const TextSink& put,
                       const std::vector<std::string>& failures = {});
std::string profile_table_text(const Workspace& workspace, const std::vector<std::string>& failures = {});

/// One line a body. The commas are part of the format, since readers count them: three lead the line,
/// and the susceptibility follows the dip without one. What failed stands at the end of the first line.
std::string model_table_text(const Workspace& workspace, const std::vector<std::string>& failures = {});

/// Counts, corner and cell widths of a rectilinear mesh that spans the data, at least 10 by 10 by 10 cells
/// of at least 10 m. Raises Fault division_by_zero without stations.
std::string mesh_header_text(const Workspace& workspace);

/// The same as files; the old file survives a failure. Return 0, or -1 after a failure, which was shown.
int write_profile_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                        const std::vector<std::string>& failures = {});
int write_model_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                      const std::vector<std::string>& failures = {});
int write_mesh_header(const std::string& path, const Workspace& workspace, Prompts& prompts);

/// Those that go with a saved workspace, in the way in which that is written.
int write_model_table_by(const FileWriter& write, const std::string& path, const Workspace& workspace,
                         Prompts& prompts, const std::vector<std::string>& failures = {});
int write_mesh_header_by(const FileWriter& write, const std::string& path, const Workspace& workspace,
                         Prompts& prompts);

}  // namespace anomalis::output
