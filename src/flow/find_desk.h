#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "flow/find_state.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {

/// The window around a search for bodies. What there is to show it asks the desk.
class FindDeskObserver {
  public:
    virtual ~FindDeskObserver() = default;
    /// Texts, choices or alternatives of the panel changed.
    virtual void panel_changed() = 0;
    /// A search begins, or has ended. The panel changed too.
    virtual void run_changed() = 0;
    /// The charts are to show this model of the line in place of the open one, until they are told otherwise;
    /// null: the open one again. Its numbers are up to date.
    virtual void show_model(const Workspace* model) = 0;
    /// A model was taken and noted: its numbers, its charts and the caption follow. `first_bodies`: there
    /// were none before.
    virtual void model_taken(int found, bool first_bodies) = 0;
    /// The window was asked to close during the search that has ended.
    virtual void close_wanted() = 0;
};

/// The search for bodies as the window offers it: what is chosen, the search itself and its stop, the models
/// that it proposes. Needs no window.
///
/// What grows and what is looked at are workspaces of the desk's own. The open one is only read, until a
/// model is taken as one step that can be taken back; so nothing that is merely looked at can get into a
/// file, a table, the history or a run.
class FindDesk : private inversion::FindObserver {
  public:
    using Finder = std::function<inversion::FindResult(const Workspace&, const inversion::FindRequest&,
                                                       inversion::FindObserver&)>;

    /// Workbench and observer outlive the desk.
    FindDesk(edit::Workbench& workbench, FindDeskObserver& observer, Finder finder = inversion::find_bodies);

    const FindState& state() const { return state_; }
    /// There is a line to be searched, and no run goes on.
    bool can_find() const;
    /// Another way to look for bodies.
    void set_finder(Finder finder) { finder_ = std::move(finder); }

    void choose_most(int most);
    void choose_kinds(SheetKinds kinds);
    void choose_channel(std::int32_t channel);
    void choose_present(bool free);

    /// Looks for bodies and shows the best model that it finds in the charts.
    void command_find();
    /// The search ends with what it has.
    void command_keep();
    /// The search ends, and what it has is forgotten.
    void command_cancel();

    /// An alternative as a workspace of its own, counted from 0; its numbers are up to date.
    const Workspace& model(int index) const { return *models_.at(static_cast<std::size_t>(index)); }
    /// The charts show an alternative.
    void preview(int index);
    /// The charts show the open model again; the alternatives stay.
    void put_back();
    /// An alternative becomes the open model, in one step that can be taken back. The others are forgotten.
    void take(int index);
    /// The open model is another one by now, or nobody wants the alternatives.
    void forget();

    /// True when the window may close now; a search is left first, and `close_wanted` follows it.
    bool may_close();

  private:
    bool working(double units) override;
    void stage(inversion::FindStage stage) override;
    void grew(const inversion::FoundModel& model) override;

    bool running() const;
    bool bring_up_to_date();
    void begin_search();
    void end_search(inversion::FindResult result);
    void take_over(inversion::FindResult result);
    bool picture_due() const;
    std::unique_ptr<Workspace> workspace_of(const inversion::FoundModel& model) const;

    using Clock = std::chrono::steady_clock;

    edit::Workbench& workbench_;
    FindDeskObserver& observer_;
    Finder finder_;
    FindState state_;
    std::vector<std::unique_ptr<Workspace>> models_;
    std::unique_ptr<Workspace> growing_;
    Clock::time_point last_picture_{};
    Clock::duration picture_time_{};
    bool keep_ = false, cancel_ = false, close_requested_ = false;
};

}  // namespace anomalis::flow
