#include "model/settle.h"

#include "core/workspace.h"
#include "filter/filters.h"
#include "intake/profile.h"
#include "model/stale.h"
#include "transform/transform.h"

namespace anomalis::model {

namespace {

/// A load may change how it was asked to read: with a spacing too fine for the line it takes a coarser one.
void take_inputs_of_load(Workspace& workspace) {
    transform::update_transform(workspace.transform);
    if (workspace.read_from && workspace.read_as && line_inputs(workspace) == *workspace.read_from)
        set_line_inputs(workspace, *workspace.read_as);
}

}  // namespace

void settle_on_line(Workspace& workspace) {
    if (workspace.station_count > 0) take_inputs_of_load(workspace);
    drop_line_read_otherwise(workspace);
    if (workspace.station_count <= 0) return;
    intake::settle_base_levels(workspace);
    intake::find_station_window(workspace);
    filter::clear_rows_left_out(workspace);
}

}  // namespace anomalis::model
