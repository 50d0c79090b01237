#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

// The folder that holds the results of a survey:
//   survey.json          what survey it is of, and its lines in the order of the plan
//   lines/NAME/          one line, whole or not there: result.json and the files that the plan asks for
//   bodies.csv lines.csv survey.gpkg   the tables, in the order of the plan; seconds.csv what each line took
//   flags.csv            what a person thinks of the lines
namespace anomalis::survey {

/// What the folder is of.
struct SurveyIdentity {
    std::string name;                ///< of the survey: another one's results are never mixed in
    std::string source;              ///< the survey file, or "workspaces"
    std::string plan_digest;         ///< of all that the plan says, with the version of the program
    std::vector<std::string> lines;  ///< in the order of the plan
};

std::string survey_file(const std::string& folder);  ///< FOLDER/survey.json
std::string line_folder(const std::string& folder, const std::string& line);
std::string line_result_file(const std::string& folder, const std::string& line);
inline constexpr const char* bodies_table_name = "bodies.csv";
inline constexpr const char* lines_table_name = "lines.csv";
inline constexpr const char* seconds_table_name = "seconds.csv";
inline constexpr const char* geopackage_name = "survey.gpkg";
inline constexpr const char* flags_name = "flags.csv";

std::string survey_identity_json(const SurveyIdentity& identity);
/// What the folder holds; no value where it holds no survey. Raises Fault, FileFault.
std::optional<SurveyIdentity> read_survey_identity(const std::string& folder);
/// What to say of a folder that holds none.
std::string no_survey_text(const std::string& folder);

}  // namespace anomalis::survey
