#include "python/line_arrays.h"

#include <array>
#include <cmath>
#include <utility>

#include "core/numbers.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/workspace.h"
#include "flow/import_survey.h"

namespace anomalis::python {

namespace {

constexpr const char* no_value = "-1e32";

/// How its table says that the workspace is read from it; the stations that are there came from the same
/// numbers.
void name_table(const std::string& path, Workspace& workspace) {
    workspace.definition.data_file = path;
    workspace.definition.data_file_as_named = file_name(path);
    const DataDefinition definition = line_inputs(workspace).definition;
    for (auto* inputs : {&workspace.read_from, &workspace.read_as})
        if (*inputs) (*inputs)->definition = definition;
}

}  // namespace

std::string line_table(const LineArrays& line) {
    const std::array<std::pair<const char*, const std::vector<double>*>, 6> all{{{"east_m", &line.east},
                                                                                 {"north_m", &line.north},
                                                                                 {"sensor_m", &line.sensor},
                                                                                 {"ground_m", &line.ground},
                                                                                 {"mag_nT", &line.mag},
                                                                                 {"grav_mGal", &line.grav}}};
    std::string text;
    for (const auto& [name, values] : all)
        if (!values->empty()) text += (text.empty() ? "" : ",") + std::string(name);
    text += '\n';
    for (std::size_t row = 0; row < line.east.size(); ++row) {
        const char* before = "";
        for (const auto& [name, values] : all) {
            if (values->empty()) continue;
            text += before;
            text += std::isnan((*values)[row]) ? no_value : round_trip_text((*values)[row]);
            before = ",";
        }
        text += '\n';
    }
    return text;
}

void take_arrays(const LineArrays& line, Workspace& workspace) {
    workspace.source = {};
    workspace.source.line = line.name;
    workspace.transform = {};
    workspace.definition = {};
    workspace.definition.data_file = workspace.definition.data_file_as_named = line.name + ".csv";
    for (Channel* channel : {&workspace.mag, &workspace.grav}) channel->base = unset;
    workspace.fit.reset();
    workspace.ensemble.reset();
}

bool write_with_table(const LineArrays& line, const std::string& path, Workspace& workspace,
                      Prompts& prompts) {
    flow::ImportedLine files;
    files.table_path = folder_name(path) + base_name(path) + ".csv";
    files.table = line_table(line);
    files.workspace_path = path;
    files.workspace = workspace;
    if (!flow::write_imported(files, flow::LeftBehind::table_and_workspace, flow::ReplaceExisting::agreed,
                              prompts))
        return false;
    name_table(files.table_path, workspace);
    return true;
}

}  // namespace anomalis::python
