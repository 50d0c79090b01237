#pragma once

#include <string>
#include <vector>

#include "core/text_pieces.h"

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// The profile and model tables for data-frame libraries: one header row with the units in the names, commas,
// points, UTF-8, no comment line, full precision, an empty field where there is no value.
namespace anomalis::output {

/// One row a station. The rows of the workspace must be up to date. A channel with a regional has a column of
/// it, "mag_regional_nT", "grav_regional_mGal"; it was taken off the observed residual. When something failed
/// on the way to them there is one more column, "failures", with the number of failures in every row.
void put_clean_profile_table(const Workspace& workspace, const TextSink& put,
                             const std::vector<std::string>& failures = {});
std::string clean_profile_table_text(const Workspace& workspace,
                                     const std::vector<std::string>& failures = {});

/// One row a body. The depth below ground of a pipe is empty while no line is loaded. While the model is as
/// fitted, each parameter that was fitted has two columns more with its 90 % interval, "..._lower_90" and
/// "..._upper_90". The same column of failures.
std::string clean_model_table_text(const Workspace& workspace, const std::vector<std::string>& failures = {});

/// The same as files; the old file survives a failure. Return 0, or -1 after a failure, which was shown.
int write_clean_profile_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                              const std::vector<std::string>& failures = {});
int write_clean_model_table(const std::string& path, const Workspace& workspace, Prompts& prompts,
                            const std::vector<std::string>& failures = {});

}  // namespace anomalis::output
