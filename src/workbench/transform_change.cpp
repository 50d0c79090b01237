#include "workbench/transform_change.h"

#include "transform/transform.h"
#include "workbench/change.h"
#include "workbench/workbench.h"

namespace anomalis {

bool change_transform(Workbench& workbench, PointTransform transform) {
    Workspace& workspace = workbench.session.workspace;
    PointTransform present = workspace.transform;
    update_transform(present);
    update_transform(transform);
    if (transform == present) return false;
    workspace.transform = transform;
    drop_stations(workspace);
    note_change(workbench, {"coordinate transform", "", false});
    return true;
}

}  // namespace anomalis
