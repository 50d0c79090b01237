#include "edit/transform_change.h"

#include "edit/change.h"
#include "edit/workbench.h"
#include "transform/transform.h"

namespace anomalis::edit {

bool change_transform(Workbench& workbench, PointTransform transform) {
    Workspace& workspace = workbench.session.workspace;
    PointTransform present = workspace.transform;
    transform::update_transform(present);
    transform::update_transform(transform);
    if (transform == present) return false;
    workspace.transform = transform;
    drop_stations(workspace);
    note_change(workbench, {"coordinate transform", "", false});
    return true;
}

}  // namespace anomalis::edit
