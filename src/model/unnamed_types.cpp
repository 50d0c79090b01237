#include "model/unnamed_types.h"

#include "core/faults.h"
#include "core/workspace.h"

namespace anomalis::model {

void note_unnamed_types(const Workspace& workspace, Faults& faults) {
    for (int number = 1; number <= workspace.body_count; ++number) {
        const ModelBody& body = workspace.body(number);
        if (is_named(body.type) || body.turned_off == 1) continue;
        faults.add(
            "Body " + std::to_string(number) + " (" + body.name + ") has type " + std::to_string(body.type) +
                ", which no formula knows: it counts as zero in every curve. Give it one of the types 1 to "
                "6, 16 and 17 in the workspace file; the window opens it as a thin sheet",
            1, Severity::doubt);
    }
}

}  // namespace anomalis::model
