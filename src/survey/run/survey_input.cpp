#include "survey/run/survey_input.h"

#include <filesystem>
#include <system_error>

#include "core/failure.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "core/version.h"
#include "intake/survey/survey_corrections.h"
#include "survey/run/line_digest.h"
#include "survey/run/machine_failure.h"
#include "workspace_file/data_file_place.h"

namespace anomalis::survey {

namespace {

/// What a file holds; "" where there is none: that is for the line to tell.
std::string contents_of(const std::string& path) {
    if (path.empty() || file_exists(path).empty()) return {};
    return on_machine([&] { return read_whole_file(path); });
}

}  // namespace

SurveyInput open_survey(const SurveyPlan& plan) {
    SurveyInput input;
    if (!plan.source) {
        input.lines = lines_to_do(plan);
        return input;
    }
    const SurveySource& source = *plan.source;
    intake::SurveyLayout layout = intake::recognise_survey(source.file);
    intake::take_choices({source.roles, source.units, source.nulls}, layout);
    input.index = intake::index_survey(layout, {.from = source.file_system, .to = source.system});
    input.lines = lines_to_do(plan, *input.index);
    return input;
}

std::vector<std::string> survey_remarks(const intake::SurveyIndex& index) {
    std::vector<std::string> remarks = index.layout.remarks;
    for (const intake::RowLoss& loss : index.losses) {
        const std::string column = loss.column.empty() ? "" : ", column \"" + loss.column + "\"";
        remarks.push_back(file_name(index.layout.path) + ": " + std::to_string(loss.count) +
                          (loss.count == 1 ? " row was not used" : " rows were not used") + ", first line " +
                          std::to_string(loss.first_line) + column + ": " + loss.why);
    }
    return remarks;
}

double line_work(const SurveyInput& input, const LineToDo& line) {
    if (input.index) return static_cast<double>(input.index->lines[line.line].stations);
    std::error_code error;
    const auto bytes =
        std::filesystem::file_size(workspace_file::data_file_of(line.planned.workspace), error);
    return error ? 0 : static_cast<double>(bytes);
}

std::string line_digest(const SurveyPlan& plan, const SurveyInput& input, const LineToDo& line) {
    const std::string options = options_text(*line.planned.options);
    if (input.index)
        return digest_of_texts({line.planned.line, options, choices_text(*plan.source),
                                std::to_string(input.index->lines[line.line].digest), application_version()});
    const std::string& workspace = line.planned.workspace;
    return digest_of_texts({file_name(workspace), options, contents_of(workspace),
                            contents_of(workspace_file::data_file_of(workspace)), application_version()});
}

}  // namespace anomalis::survey
