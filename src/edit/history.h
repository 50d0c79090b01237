#pragma once

#include <array>
#include <chrono>
#include <deque>
#include <memory>
#include <string>

#include "edit/line_reports.h"
#include "edit/model_state.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::edit {

struct ModelChange;
struct Workbench;

/// The steps that can be taken back and made again. It is told after each change and compares with what it
/// knew before, so nobody has to announce a change beforehand.
class History {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::size_t kept_steps = 200;
    /// Steps of one gesture merge while no more than this lies between them.
    static constexpr std::chrono::milliseconds gesture_pause{2500};

    /// The time that gestures are measured by; the steady clock unless another is set.
    using Now = Clock::time_point (*)();
    void set_clock(Now now) { now_ = now; }

    /// Begins anew with the model as it stands, which counts as saved.
    void start(const Workbench& workbench);
    /// The model was changed: a step, unless nothing differs or the gesture of the last step goes on.
    void note(const Workbench& workbench, const ModelChange& change);
    /// Another model stands in place of the one that was absorbed last: a step that brings that one back.
    /// `former` is it with its line; null where that is too long to be kept, and is loaded again. `title` is
    /// what an untitled model goes by.
    void note_other_model(const Workbench& workbench, const std::string& what,
                          std::shared_ptr<Workspace> former, const std::string& title);
    /// What a load or a calculation settles by itself belongs to the step before.
    void absorb(const Workbench& workbench);
    /// The model is what its file holds.
    void note_saved(const Workbench& workbench);
    /// No file holds the model as it stands.
    void forget_saved();

    /// Whether `note_other_model` would keep the line of a workspace.
    static bool keeps_line(const Workspace& workspace);
    /// What a model without a file goes by: "copy of dyke_swarm.axm"; "" for none.
    std::string title() const { return current_.document ? current_.document->title : ""; }
    bool unsaved() const { return current_.document && !current_.saved; }
    bool can_undo() const { return !undo_.empty(); }
    bool can_redo() const { return !redo_.empty(); }
    std::size_t steps() const { return undo_.size(); }
    /// What the next undo takes back, the next redo makes again; "" when there is none.
    std::string undo_name() const { return undo_.empty() ? "" : undo_.back().what; }
    std::string redo_name() const { return redo_.empty() ? "" : redo_.back().what; }

    struct Move {
        bool moved = false;
        std::string what;
        StateDifference difference;
        bool line_wanted = false;  ///< this state had a line, which must be loaded again
        bool another_file = false;
        bool whole = false;  ///< the other model came back with its line and all that was calculated
    };
    /// One step back or forward: workspace and base levels change, nothing is calculated.
    Move undo(Workbench& workbench) { return move(workbench, undo_, redo_); }
    Move redo(Workbench& workbench) { return move(workbench, redo_, undo_); }

  private:
    /// A workspace file, or the lack of one. Saving under another name changes it for all its states.
    struct Document {
        std::string file;
        double date = 0;
        std::string title = {};                ///< while it has no file
        std::shared_ptr<Workspace> left = {};  ///< as it stood when another model took its place; or null
        LineReports reports = {};              ///< of that time
    };
    struct Snapshot {
        ModelState model;
        std::shared_ptr<Document> document;
        std::array<bool, 2> base_from_mean{};
        bool line_loaded = false;
        bool saved = false;
    };
    struct Step {
        Snapshot other;  ///< the state on its far side
        std::string what;
    };
    using Steps = std::deque<Step>;
    /// Former models that keep their lines; the others load them again.
    static constexpr std::size_t kept_lines = 4;

    void keep_left(Document& document, std::shared_ptr<Workspace> workspace);
    void refresh(const Workbench& workbench, const ModelState& model);
    Move move(Workbench& workbench, Steps& from, Steps& to);

    Snapshot current_;
    Steps undo_, redo_;
    std::string gesture_;  ///< of the last step, while it may go on
    Clock::time_point last_note_{};
    Now now_ = &Clock::now;
};

}  // namespace anomalis::edit
