#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "core/file_stamp.h"
#include "core/session.h"
#include "edit/history.h"
#include "edit/line_reports.h"
#include "edit/view_state.h"
#include "intake/definition.h"

namespace anomalis::edit {

/// A session as someone works on it: what the window knows beside the records. The window itself holds none
/// of this, so all of it can be tried without one.
struct Workbench {
    explicit Workbench(Session& the_session) : session(the_session) {}

    Session& session;
    ViewState view;
    intake::FileHead head;  ///< the first lines of the data file
    LineReports reports;
    /// Which base levels (magnetics, gravity) came from the mean of the data and not from a person or a file.
    std::array<bool, 2> base_from_mean{};
    /// Whether the model is as the last fit left it, once somebody has looked; every change forgets it.
    mutable std::optional<bool> fit_stands;
    /// The same of the ensemble.
    mutable std::optional<bool> ensemble_stands;
    /// Model or fit are other ones: whether one is of the other is looked at anew.
    void forget_marks() const {
        fit_stands.reset();
        ensemble_stands.reset();
    }
    /// Of the next run; which limits hold a parameter hangs on it.
    InversionMethod method = InversionMethod::least_squares;
    std::vector<std::string> recent_files;  ///< full paths, the newest first
    KnownFiles known_files;                 ///< workspaces and data as they were last read or written
    bool unsaved = false;                   ///< the model differs from the file last written or read
    History history;
    int list_revision = 0;  ///< grows when number, order or types of the bodies change
};

/// Which base levels are unset: magnetics, gravity.
std::array<bool, 2> unset_base_levels(const Workspace& workspace);
/// After the stations settled base levels: those that were unset and have a value now took the mean.
void note_base_levels(Workbench& workbench, const std::array<bool, 2>& were_unset);

/// True when a profile is loaded that can be modelled: stations, and a line of some length.
bool line_loaded(const Workspace& workspace);

}  // namespace anomalis::edit
