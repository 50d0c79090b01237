#include "survey/results/survey_results.h"

#include "core/failure.h"
#include "core/paths.h"
#include "core/safe_file.h"

namespace anomalis::survey {

SurveyResults read_survey_results(const std::string& folder) {
    const std::optional<SurveyIdentity> identity = read_survey_identity(folder);
    if (!identity) throw Fault(no_survey_text(folder));
    SurveyResults results{.folder = folder, .identity = *identity, .lines = {}, .missing = {}};
    for (const std::string& line : identity->lines) {
        const std::string path = line_result_file(folder, line);
        if (file_exists(path).empty()) {
            results.missing.push_back(line);
        } else {
            results.lines.push_back(read_line_result(read_whole_file(path), path));
        }
    }
    return results;
}

}  // namespace anomalis::survey
