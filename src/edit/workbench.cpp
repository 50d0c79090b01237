#include "edit/workbench.h"

namespace anomalis::edit {

bool line_loaded(const Workspace& workspace) {
    const int n = workspace.station_count;
    return n > 0 && workspace.distances.count() == n && workspace.distances[n] > 0;
}

}  // namespace anomalis::edit
