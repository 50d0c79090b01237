#pragma once

#include <string>

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
};

/// Takes the last change back, or makes it again. The body that it touched becomes the current one.
HistoryStep undo_change(Workbench& workbench);
HistoryStep redo_change(Workbench& workbench);

}  // namespace anomalis::edit
