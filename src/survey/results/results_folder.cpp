#include "survey/results/results_folder.h"

#include "core/paths.h"
#include "core/safe_file.h"
#include "report/json_text.h"
#include "survey/results/json_fields.h"

namespace anomalis::survey {

std::string survey_file(const std::string& folder) {
    return folder + "/survey.json";
}

std::string line_folder(const std::string& folder, const std::string& line) {
    return folder + "/lines/" + line;
}

std::string line_result_file(const std::string& folder, const std::string& line) {
    return line_folder(folder, line) + "/result.json";
}

std::string survey_identity_json(const SurveyIdentity& identity) {
    const Json json = {{"format", 1},
                       {"survey", identity.name},
                       {"source", identity.source},
                       {"plan_digest", identity.plan_digest},
                       {"lines", identity.lines}};
    return report::json_text(json, 1);
}

std::optional<SurveyIdentity> read_survey_identity(const std::string& folder) {
    const std::string path = survey_file(folder);
    if (file_exists(path).empty()) return {};
    return read_json_file(read_whole_file(path), path, [](const Json& json) {
        return SurveyIdentity{.name = json.at("survey").get<std::string>(),
                              .source = json.at("source").get<std::string>(),
                              .plan_digest = json.at("plan_digest").get<std::string>(),
                              .lines = json.at("lines").get<std::vector<std::string>>()};
    });
}

std::string no_survey_text(const std::string& folder) {
    return folder + " holds no results of a survey: there is no " + survey_file(folder) +
           ". Name the folder that the survey was told to write to";
}

}  // namespace anomalis::survey
