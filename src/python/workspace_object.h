#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/failure.h"
#include "core/session.h"
#include "flow/open_unattended.h"
#include "python/line_arrays.h"
#include "python/told.h"

// The session behind a Workspace of Python.
namespace anomalis::python {

/// A session with its prompts. Views of numpy hold it, so that their memory stays.
struct HeldSession {
    ToldPrompts prompts;
    Session session{prompts, Settings{}};
};

class WorkspaceObject {
  public:
    WorkspaceObject();
    WorkspaceObject(const WorkspaceObject&) = delete;
    WorkspaceObject& operator=(const WorkspaceObject&) = delete;

    /// Raises Fault while another thread, or the work that calls back, is at work with it.
    Session& session();
    Workspace& workspace() { return session().workspace; }
    /// For views: the session that holds the rows as they stand.
    std::shared_ptr<HeldSession> held();

    /// Before the rows change their size: views keep what they show.
    void detach_views();

    /// Does `job` without the lock of the interpreter, with this workspace closed to all others. `progress`
    /// may be None. Raises what Ctrl+C or the callback raised, and Fault.
    void work(Watch& watch, const std::function<void(Session&)>& job);

    /// For a job: called whenever long work lets go for a moment, in place of the look at Ctrl+C.
    void on_yield(std::function<void()> call) { held_->prompts.on_yield = std::move(call); }

    /// What the last work told, and warns of doubts and failures; with `failed` raises Fault with its words.
    void settle(bool failed, const std::string& otherwise);
    const ToldPrompts::Told& told() const { return held_->prompts.told(); }
    const ToldPrompts& prompts() const { return held_->prompts; }

    /// How far the line of the workspace came; none of it once its stations were dropped.
    flow::OpenState state();

    std::optional<LineArrays> arrays;  ///< of a line that no file holds
    flow::OpenedWorkspace opened;

  private:
    std::shared_ptr<HeldSession> held_;
    std::atomic<bool> busy_ = false;
};

}  // namespace anomalis::python
