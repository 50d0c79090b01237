#include "intake/definition.h"

#include <string_view>

#include "core/failure.h"
#include "core/line_reader.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/text.h"
#include "core/workspace.h"
#include "transform/transform.h"

namespace anomalis::intake {

namespace {

/// The message of the first test that fails, "" when all pass.
std::string_view first_objection(const DataDefinition& d) {
    if (trim_blanks(d.data_file).empty()) return "No data file has been specified";
    if (file_exists(d.data_file).empty()) return "The specified data file does not exist";
    if (d.first_data_line <= 0) return "The number of the first data line must be positive";
    if (d.read_increment < 1) return "The data read increment must be positive";
    if (d.last_data_line > 0 && d.last_data_line <= d.first_data_line)
        return "The final data line must be greater than the number of header lines";
    if (d.x_column <= 0) return "The x column location must be positive";
    if (d.y_column <= 0) return "The y column location must be positive";
    if (d.mag_column <= 0 && d.grav_column <= 0)
        return "You must specify either a mag column or gravity column";
    return {};
}

}  // namespace

std::string definition_objection(const Workspace& workspace) {
    return std::string(first_objection(workspace.definition));
}

int check_data_definitions(Workspace& workspace, Prompts& prompts) {
    int status = 1;
    const int failure =
        report_failure(prompts, "An error occurred while checking the data file definitions: ", [&] {
            const std::string_view objection = first_objection(workspace.definition);
            if (!objection.empty()) return prompts.message(std::string(objection));
            transform::update_transform(workspace.transform);
            status = 0;
        });
    return failure != 0 ? failure : status;
}

int show_data_file_head(const Workspace& workspace, FileHead& head, Prompts& prompts) {
    return report_failure(prompts, "An error occurred while reading the head of the data file: ", [&] {
        const std::string& path = workspace.definition.data_file;
        if (path.empty() || file_exists(path).empty()) return;
        FileHead found;
        LineReader reader(path);
        const int style = reader.detect_line_style();
        for (int i = 0; i < FileHead::longest && !reader.at_end(); ++i) {
            // A view is enough: a file without line ends would fill it with megabytes.
            found.lines.emplace_back(reader.next(style).substr(0, LineReader::longest_lf_line));
            found.text += (i == 0 ? "" : "\r\n") + found.lines.back();
        }
        head = std::move(found);
    });
}

}  // namespace anomalis::intake
