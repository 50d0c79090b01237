#include <cmath>
#include <optional>

#include "core/failure.h"
#include "core/paths.h"
#include "core/same_file.h"
#include "core/unattended_prompts.h"
#include "flow/import_lines.h"
#include "intake/load.h"
#include "intake/row_notes.h"

namespace anomalis::flow {

namespace {

using intake::Role;

/// Nobody listens while it is tried whether a table can be read.
class SilentPrompts : public UnattendedPrompts {
  protected:
    void show_message(const std::string&) override {}
};

/// The definition that has the usual way read the survey file itself; nothing where it cannot: degrees, other
/// units, values that stand for none, a format of its own.
std::optional<DataDefinition> direct_definition(const intake::SurveyIndex& index,
                                                const DataDefinition& made) {
    const intake::SurveyLayout& layout = index.layout;
    const bool plain = layout.encoding == intake::Encoding::utf8 && !layout.packed && !layout.decimal_comma &&
                       !layout.fixed_width && !layout.line_headers && layout.definition_path.empty() &&
                       !index.in_degrees && index.from_system == index.coordinate_system;
    if (!plain) return std::nullopt;
    DataDefinition direct = made;
    direct.data_file = layout.path;
    direct.data_file_as_named.clear();
    direct.first_data_line = static_cast<std::int32_t>(layout.first_row);
    bool same_units = true;
    const auto place = [&](std::int32_t& column, std::initializer_list<Role> roles) {
        if (column == 0) return;
        column = 0;
        for (const Role role : roles) {
            const auto found = layout.column_of(role);
            if (!found || column > 0) continue;
            column = static_cast<std::int32_t>(*found) + 1;
            same_units = same_units && intake::unit_factor(layout.columns[*found].unit) == 1 &&
                         index.nulls[*found] == 0;
        }
        same_units = same_units && column > 0;
    };
    place(direct.x_column, {Role::easting});
    place(direct.y_column, {Role::northing});
    place(direct.z_column, {Role::sensor_height, Role::clearance});
    place(direct.dtm_column, {Role::terrain, Role::sensor_height});
    place(direct.mag_column, {Role::mag});
    place(direct.grav_column, {Role::grav});
    return same_units ? std::optional(direct) : std::nullopt;
}

/// Loads a copy of the workspace with its data file.
std::optional<Workspace> loaded(const Workspace& workspace, const DataDefinition& definition) {
    SilentPrompts silent;
    Workspace copy = workspace;
    copy.definition = definition;
    copy.source.igrf_change = igrf_kept;
    intake::RowNotes rows;
    if (intake::load_locations(copy, silent, &rows) != 0) return std::nullopt;
    return copy;
}

/// Whether the stations of a loaded line are those that were imported, in either direction.
bool same_line(const Workspace& loaded, const intake::SurveyLine& line) {
    constexpr double near = 0.01;  // m, nT, mGal
    const auto count = static_cast<std::size_t>(loaded.station_count);
    if (count > line.east.size() || loaded.has_mag() != !line.mag.empty()) return false;
    const auto close = [&](double a, double b) { return std::abs(a - b) <= near + 1e-6 * std::abs(b); };
    const auto at = [&](int station, std::size_t row) {
        return close(loaded.stations(station, column_east), line.east[row]) &&
               close(loaded.stations(station, column_north), line.north[row]) &&
               (line.mag.empty() ||
                close(static_cast<double>(loaded.mag.data(station, row_raw, stage_observed)),
                      line.mag[row])) &&
               (line.grav.empty() ||
                close(static_cast<double>(loaded.grav.data(station, row_raw, stage_observed)),
                      line.grav[row]));
    };
    const int last = loaded.station_count;
    const std::size_t end = line.east.size() - 1;
    return (at(1, 0) && at(last, end)) || (at(1, end) && at(last, 0));
}

}  // namespace

ImportedLine new_workspace(const intake::SurveyIndex& index, const ImportChoices& choices,
                           const std::string& workspace_path, Pacer& pacer) {
    if (index.lines.size() != 1)
        throw Fault(file_name(index.layout.path) + " has " + std::to_string(index.lines.size()) +
                    " lines, and a workspace is of one: import one of them, or all");
    if (const std::string why = import_refusal(index, 0); !why.empty()) throw Fault(why);
    const intake::SurveyLine line = intake::read_survey_line(index, 0, {}, pacer);
    ImportPlace place{folder_name(workspace_path), base_name(workspace_path)};
    if (same_file(place.folder + place.name + ".csv", index.layout.path)) place.name += "_line";
    ImportedLine made = make_import(index, 0, {}, intake::SurveyLine(line), choices, place);
    made.workspace_path = workspace_path;
    const auto direct = direct_definition(index, made.workspace.definition);
    if (!direct) return made;
    if (const auto read = loaded(made.workspace, *direct); read && same_line(*read, line)) {
        made.workspace.definition = *direct;
        made.table.clear();
        made.table_path = index.layout.path;
    }
    return made;
}

}  // namespace anomalis::flow
