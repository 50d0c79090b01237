#include <algorithm>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "core/failure.h"
#include "core/near_names.h"
#include "core/paths.h"
#include "survey/map/results_map.h"

namespace anomalis::batch {

namespace {

/// A folder, or the file that says what is in it.
bool holds_results(const std::string& path) {
    return folder_exists(path) || file_name(path) == "survey.json";
}

std::string results_folder(const std::string& path) {
    if (folder_exists(path)) return path;
    const std::string folder = folder_name(path);
    return folder.empty() ? "." : folder;
}

void refuse_survey_options(const MapOptions& options) {
    const SurveyOptions& survey = options.survey;
    if (survey.system.empty() && survey.file_system.empty() && survey.columns.roles.empty() &&
        survey.columns.units.empty() && survey.columns.nulls.empty())
        return;
    throw Fault("--crs, --file-crs, --role, --unit and --null speak of survey files; " + survey.file +
                " holds the results of a survey, and its map is in the system of its lines");
}

std::size_t result_of_name(const survey::SurveyResults& results, const std::string& name) {
    const auto found = std::ranges::find(results.lines, name, &survey::LineResult::line);
    if (found != results.lines.end()) return static_cast<std::size_t>(found - results.lines.begin());
    if (std::ranges::find(results.missing, name) != results.missing.end())
        throw Fault("line " + name + " is not done yet");
    std::string near;
    for (const std::string& one : nearest_names(name, results.identity.lines, 5))
        near += (near.empty() ? "" : ", ") + one;
    throw Fault(results.folder + " has no line " + name +
                (near.empty() ? "" : "; nearest in name are " + near));
}

survey::ResultsMapMarks marks_of(const survey::SurveyResults& results) {
    survey::ResultsMapMarks marks;
    survey::LineFlags flags(results.folder);
    flags.refresh();
    for (const survey::LineResult& line : results.lines) marks.flags.push_back(flags.of(line.line).flag);
    marks.strikes = survey::strike_traces(survey::join_bodies(results));
    return marks;
}

int draw_results(const MapOptions& options, BatchSession& batch, PictureWriter& pictures) {
    refuse_survey_options(options);
    const survey::SurveyResults results = survey::read_survey_results(results_folder(options.survey.file));
    MapRequest picture = options.picture;
    if (!options.line.empty()) picture.line = result_of_name(results, options.line);
    survey::ResultsMapMarks marks = marks_of(results);
    marks.area = options.area;
    return pictures.write_results_map(batch.prompts, results, marks, picture);
}

int draw_survey(const MapOptions& options, BatchSession& batch, PictureWriter& pictures) {
    if (options.area) throw Fault("--area is for the results of a survey");
    const intake::SurveyIndex index = survey_index(options.survey);
    tell_survey(index, batch);
    MapRequest picture = options.picture;
    if (!options.line.empty()) picture.line = line_of_name(index, options.line);
    return pictures.write_map(batch.prompts, index, picture);
}

}  // namespace

bool run_map(const MapOptions& options, BatchSession& batch, PictureWriter* pictures) {
    if (!pictures) {
        batch.prompts.message("This build of the batch tool draws no pictures");
        return false;
    }
    int drawn = -1;
    const int read = report_failure(batch.prompts, "The map cannot be drawn: ", [&] {
        drawn = holds_results(options.survey.file) ? draw_results(options, batch, *pictures)
                                                   : draw_survey(options, batch, *pictures);
    });
    return read == 0 && drawn == 0;
}

}  // namespace anomalis::batch
