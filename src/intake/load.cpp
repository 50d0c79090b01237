#include "intake/load.h"

#include <functional>
#include <string>

#include "core/failure.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/workspace.h"
#include "intake/definition.h"
#include "intake/igrf_readings.h"
#include "intake/line_columns.h"
#include "intake/location_file.h"
#include "intake/profile.h"
#include "intake/read_rows.h"
#include "intake/row_notes.h"

namespace anomalis::intake {

namespace {

/// A quantity of which nothing was read.
struct MissingQuantity {
    const char* message = nullptr;  ///< null when all were read
    const char* name = "";
    std::int32_t column = 0;
};

/// The first whose range never left the mark of a value that was not read, or is empty since all readings are
/// missing. Only the low end is tested for the mark: a first record that lacks a column is enough.
MissingQuantity missing_quantity(const Workspace& w) {
    const DataDefinition& d = w.definition;
    const auto none = [](float low, float high) { return low < missing_limit || low > high; };
    // A place needs both coordinates, and one text tells of either.
    constexpr const char* of_place = "No valid x coordinate values were read";
    if (w.x_min < missing_limit) return {of_place, "X", d.x_column};
    if (w.y_min < missing_limit) return {of_place, "Y", d.y_column};
    if (d.z_column > 0 && none(w.z_min, w.z_max))
        return {"No valid z coordinate values were read", "sensor height", d.z_column};
    if (d.dtm_column > 0 && none(w.dtm_min, w.dtm_max))
        return {"No valid DTM values were read", "ground", d.dtm_column};
    if (d.mag_column > 0 && none(w.mag.min, w.mag.max))
        return {"No valid mag values were read", "magnetics", d.mag_column};
    if (d.grav_column > 0 && none(w.grav.min, w.grav.max))
        return {"No valid gravity values were read", "gravity", d.grav_column};
    return {};
}

/// Readings that lack what was asked for would be off by the whole field, so there are none then.
bool take_igrf(Workspace& w, Prompts& prompts) {
    const char* prefix = w.source.igrf_change == igrf_removed
                             ? "IGRF could not be removed from the magnetic readings: "
                             : "IGRF could not be added to the magnetic readings: ";
    return report_failure(prompts, prefix, [&] { change_igrf(w); }) == 0;
}

/// How the rows of a line come: 0, or -1 with a message.
using RowsTaker = std::function<int(DataRows&, RowNotes*)>;

/// Up to the filled stations in file order. False when there are none to go on with.
bool make_stations(const RowsTaker& take, Workspace& w, Prompts& prompts, RowNotes* notes) {
    w.read_from = line_inputs(w);
    DataRows rows;
    if (take(rows, notes) != 0 || w.station_count == 0) return false;
    if (const MissingQuantity missing = missing_quantity(w); missing.message) {
        if (notes)
            notes->nothing_of =
                std::string(missing.name) + " (column " + std::to_string(missing.column) + ")";
        prompts.message(missing.message);
        return false;
    }
    if (fill_stations(rows, w, prompts) != 0) return false;
    if (notes) notes->facts = facts_of_rows(w);
    return take_igrf(w, prompts);
}

/// From stations in file order to a line that can be modelled.
int lay_out(Workspace& workspace, Prompts& prompts, RowNotes* notes) {
    const auto asked = static_cast<double>(workspace.station_spacing);
    setup_profile_coordinates(workspace, prompts);
    if (const auto taken = static_cast<double>(workspace.station_spacing); notes && taken > asked)
        notes->widened = {asked, taken, workspace.distances.last()};
    setup_graphics_arrays(workspace, prompts);
    settle_station_window(workspace);
    workspace.read_as = line_inputs(workspace);
    workspace.known_settings.reset();  // nothing of this line was derived with those
    Faults faults;
    setup_sensor_elevations(workspace, faults);
    show_faults(faults, prompts);
    return workspace.distances.last() > 0 ? 0 : 1;
}

}  // namespace

int load_locations(Workspace& workspace, Prompts& prompts, RowNotes* notes) {
    const MessageScope scope(prompts);
    drop_stations(workspace);
    reset_calculated_data(workspace, prompts);
    const RowsTaker from_file = [&](DataRows& rows, RowNotes* met) {
        return read_location_file(workspace, rows, prompts, met);
    };
    if (check_data_definitions(workspace, prompts) != 0 ||
        !make_stations(from_file, workspace, prompts, notes)) {
        drop_stations(workspace);
        return -1;
    }
    workspace.definition.data_file_date = file_date(workspace.definition.data_file);
    return lay_out(workspace, prompts, notes);
}

int load_columns(const LineColumns& line, Workspace& workspace, Prompts& prompts, RowNotes* notes) {
    const MessageScope scope(prompts);
    drop_stations(workspace);
    reset_calculated_data(workspace, prompts);
    define_columns(line, workspace.definition);
    const RowsTaker from_memory = [&](DataRows& rows, RowNotes* met) {
        return report_failure(prompts, "The line cannot be taken: ", [&] {
            rows = rows_of_columns(line);
            if (met) *met = rows.notes;
            take_rows(rows, workspace);
        });
    };
    if (!make_stations(from_memory, workspace, prompts, notes)) {
        drop_stations(workspace);
        return -1;
    }
    return lay_out(workspace, prompts, notes);
}

}  // namespace anomalis::intake
