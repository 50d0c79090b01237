#include "workbench/change.h"

#include "workbench/workbench.h"

namespace anomalis {

void note_change(Workbench& workbench, const ModelChange&) {
    workbench.session.model_changed = true;
    workbench.unsaved = true;
    workbench.fit_errors.clear();
}

void note_saved(Workbench& workbench) {
    workbench.unsaved = false;
}

}  // namespace anomalis
