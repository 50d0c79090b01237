#pragma once

#include <memory>
#include <string>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::edit {

struct Workbench;

/// What a person, a command or a run did to the model.
struct ModelChange {
    std::string what;  ///< names the step in the menu: "split", "dip of body 3"
    std::string
        gesture;  ///< steps of one name that follow each other are taken back together; "" stands alone
    bool body_list = false;  ///< number, order or types of the bodies changed
};

/// To be called after every change of what a workspace file holds: the model counts as changed, and as
/// unsaved if anything differs; the change can be taken back. After a change of the list of bodies the
/// inversion forgets its parameters, which would mean other bodies now.
void note_change(Workbench& workbench, const ModelChange& change);

/// After another model took the place of the one that `settle_history` was told of last, with a file of its
/// own or with none, where it goes by `title`: one step, which brings the former one back with its name, its
/// line and whether it was saved. `former` is it; null lets its line be loaded again. The new one is unsaved.
void note_other_model(Workbench& workbench, const std::string& what, std::shared_ptr<Workspace> former,
                      const std::string& title);

/// After every successful write of everything, and every full read: the model is what its file holds.
void note_saved(Workbench& workbench);

/// The model as it stands is in no file: after it was brought back.
void note_unsaved(Workbench& workbench);

/// The first state of a session, which nothing can go back behind.
void start_history(Workbench& workbench);

/// After a load: the base levels and the station window that it found belong to the model as it stood.
void settle_history(Workbench& workbench);

/// What a step back or forward leaves to do.
struct HistoryStep {
    bool moved = false;
    std::string what;           ///< the name of the step
    bool another_file = false;  ///< the model of another file is back
    bool settings = false;      ///< the boxes must be filled anew
    bool line_lost = false;     ///< the data are to be read in another way: the stations are gone
    bool line_wanted = false;   ///< there was a line: it must be loaded again
    bool line_back = false;     ///< the other model came with its line: nothing is to be loaded
};

/// Takes the last change back, or makes it again. The body that it touched becomes the current one.
HistoryStep undo_change(Workbench& workbench);
HistoryStep redo_change(Workbench& workbench);

}  // namespace anomalis::edit
