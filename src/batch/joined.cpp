#include <vector>

#include "batch/batch_session.h"
#include "batch/commands.h"
#include "core/failure.h"
#include "core/safe_file.h"
#include "core/told_write.h"
#include "output/geopackage_file.h"
#include "survey/joined/joined_exports.h"

namespace anomalis::batch {

namespace {

constexpr const char* wgs84_system = "EPSG:4326";

std::string counts_text(const survey::SurveyResults& results, const std::vector<survey::JoinedBody>& joined) {
    std::size_t tops = 0, bodies = 0;
    for (const survey::JoinedBody& body : joined) tops += body.members.size();
    for (const survey::LineResult& line : results.lines) bodies += line.bodies.size();
    std::string text = std::to_string(joined.size()) + " bodies are joined from " + std::to_string(tops) +
                       " of the " + std::to_string(bodies) + " bodies of " +
                       std::to_string(results.lines.size()) + " lines\n";
    if (!results.missing.empty())
        text += std::to_string(results.missing.size()) + " lines of the plan are not done yet\n";
    return text;
}

}  // namespace

bool run_joined(const JoinedOptions& options, BatchSession& batch) {
    survey::SurveyResults results;
    std::vector<survey::JoinedBody> joined;
    const auto read = [&] {
        results = survey::read_survey_results(options.folder);
        joined = survey::join_bodies(results);
    };
    if (report_failure(batch.prompts, "", read) != 0) return false;
    bool done = true;
    const auto write = [&](const std::string& path, auto writer) {
        if (path.empty()) return;
        if (report_failure(batch.prompts, path + " was not written: ", [&] { writer(path); }) != 0)
            done = false;
    };
    const auto write_text = [&](const std::string& path, auto text_of) {
        write(path, [&](const std::string& file) { write_file_telling(batch.prompts, file, text_of()); });
    };
    const std::string system = survey::joined_system(joined);
    const survey::JoinedSheets space = survey::joined_sheets(results, joined);
    const std::string title = "Anomalis survey " + results.identity.name + ", joined bodies" +
                              (system.empty() ? "" : ", coordinates in " + system);
    write_text(options.table, [&] { return survey::joined_table(results, joined); });
    write_text(options.geojson, [&] {
        return output::geojson_of_layers(survey::joined_layers(results, joined, wgs84_system));
    });
    write(options.geopackage, [&](const std::string& path) {
        output::write_geopackage_layers(path, survey::joined_layers(results, joined, system), system, title);
    });
    write(options.dxf, [&](const std::string& path) {
        const int names = output::write_sheet_dxf(path, space.sheets, system);
        if (const std::string remark = hard_link_remark(path, names); !remark.empty())
            batch.prompts.remark(remark);
    });
    write_text(options.vtk, [&] { return output::vtk_of_sheets(space.sheets, space.names, title); });
    write_text(options.obj, [&] { return output::obj_of_sheets(space.sheets, title); });
    if (done) batch.write_result("", counts_text(results, joined));
    return done;
}

}  // namespace anomalis::batch
