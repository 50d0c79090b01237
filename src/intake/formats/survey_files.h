#pragma once

#include <string>
#include <vector>

namespace anomalis::intake {

/// The files that belong to the one that was chosen, found by their names; the case of their endings does not
/// matter, and each may be packed.
struct SurveyFiles {
    std::string rows;                   ///< "" where a definition has no .dat beside it
    std::string definition;             ///< "" where there is none
    std::vector<std::string> metadata;  ///< .met, .prj
};
SurveyFiles survey_files(const std::string& path);

}  // namespace anomalis::intake
