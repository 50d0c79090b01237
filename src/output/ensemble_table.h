#pragma once

#include <string>

namespace anomalis {
class Prompts;
struct Ensemble;
struct Workspace;
}  // namespace anomalis

// The models of an ensemble for data-frame libraries, written as the clean tables are.
namespace anomalis::output {

/// One row a model: "sample" from 1, of each channel that the line has the degree of the regional and the rms
/// ("mag_regional_degree", "mag_rms_nT"), then each parameter as "body_2_top_elevation_m". A field is empty
/// where a model has no such body or no regional. `workspace` gives the bodies their types.
std::string ensemble_table_text(const Workspace& workspace, const Ensemble& ensemble);

/// The same as a file; the old one survives a failure. Returns 0, or -1 after a failure, which was shown.
int write_ensemble_table(const std::string& path, const Workspace& workspace, const Ensemble& ensemble,
                         Prompts& prompts);

}  // namespace anomalis::output
