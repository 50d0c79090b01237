#include <algorithm>
#include <array>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/told_write.h"
#include "core/workspace.h"
#include "output/tables.h"

namespace anomalis::output {

namespace {

constexpr std::int32_t smallest_cell = 10;
constexpr std::int32_t fewest_cells = 10;

std::int32_t cells_across(double extent, std::int32_t cell) {
    return std::max(round_to_even(extent / cell), fewest_cells);
}

}  // namespace

std::string mesh_header_text(const Workspace& workspace) {
    if (workspace.station_count <= 0) throw Fault(FaultKind::division_by_zero);
    const double spacing = workspace.distances[workspace.station_count] / workspace.station_count;
    const std::int32_t cell = std::max(round_to_even(spacing), smallest_cell);
    const std::array counts{cells_across(workspace.x_max - workspace.x_min, cell),
                            cells_across(workspace.y_max - workspace.y_min, cell),
                            cells_across(double{workspace.z_max} - workspace.z_min, cell)};
    std::string text;
    for (const std::int32_t count : counts) text += number_to_text(count) + " ";
    text += "\r\n" + number_to_text(workspace.x_min) + " " + number_to_text(workspace.y_min) + " " +
            number_to_text(workspace.z_max) + " \r\n";
    for (const std::int32_t count : counts)
        text += format_number(count, "0") + "*" + format_number(cell, "0.00") + "\r\n";
    return text;
}

int write_mesh_header(const std::string& path, const Workspace& workspace, Prompts& prompts) {
    return write_mesh_header_by(telling_writer(prompts), path, workspace, prompts);
}

int write_mesh_header_by(const FileWriter& write, const std::string& path, const Workspace& workspace,
                         Prompts& prompts) {
    return report_failure(prompts, write_failure_prefix, [&] { write(path, mesh_header_text(workspace)); });
}

}  // namespace anomalis::output
