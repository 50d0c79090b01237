#pragma once

#include <string>

namespace anomalis {

struct Workbench;

/// What a person, a command or a run did to the model.
struct ModelChange {
    std::string what;  ///< names the step in the menu: "split", "dip of body 3"
    std::string
        gesture;  ///< steps of one name that follow each other are taken back together; "" stands alone
    bool body_list = false;  ///< number, order or types of the bodies changed
};

/// To be called after every change of what a workspace file holds: the model counts as changed and unsaved.
void note_change(Workbench& workbench, const ModelChange& change);

/// To be called when the model is what a workspace file holds: after every write of one and every full read.
void note_saved(Workbench& workbench);

}  // namespace anomalis
