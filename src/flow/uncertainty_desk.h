#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "inversion/ensemble/find_ensemble.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::flow {

/// What a person chooses.
struct UncertaintyChoice {
    static constexpr int least_samples = 20, most_samples = 5000;
    static constexpr double widest_strike = 90;  ///< degrees to each side: any strike

    int samples = 300;
    bool vary_regional = true;
    bool vary_bodies = false;
    double strike_within = 0;  ///< degrees
};

/// How far a run is.
struct UncertaintyProgress {
    int done = 0, of = 0;                ///< models; 0 of 0 while the model itself is fitted
    std::optional<double> seconds_left;  ///< once it can be told
};

class UncertaintyDeskObserver {
  public:
    virtual ~UncertaintyDeskObserver() = default;
    /// A run begins, and the model must be kept where a crash does not reach it; or it has ended.
    virtual void run_changed() = 0;
    virtual void progress_changed() = 0;
    /// Values were changed and noted, or the ensemble is another one: numbers and drawings follow.
    virtual void model_changed() = 0;
};

/// The uncertainty of a model as the window offers it: a run, its stop, what is taken over at its end. Needs
/// no window. Meanwhile `InversionState::running` keeps everything else closed.
class UncertaintyDesk : private inversion::EnsembleObserver {
  public:
    using Find = std::function<inversion::EnsembleResult(const Workspace&, const inversion::EnsembleRequest&,
                                                         inversion::EnsembleObserver&)>;

    /// Workbench and observer outlive the desk.
    UncertaintyDesk(edit::Workbench& workbench, UncertaintyDeskObserver& observer,
                    Find find = inversion::find_ensemble);
    /// Another way to find an ensemble.
    void set_find(Find find) { find_ = std::move(find); }

    /// Why there can be no run of the model as it stands, in a sentence; "" when there can be one.
    std::string refusal() const;

    /// Fits the model and finds its ensemble by the channel and the target of the inversion (a channel that
    /// the line lacks gives way to the other). Both are taken into the model at the end, as one step of the
    /// history if the fit moves anything.
    void start(const UncertaintyChoice& choice, int channel);
    /// Ends a run with the models that are there, if they are enough to tell anything.
    void stop() { leave(Leave::keep); }
    /// Ends a run; the model stays as it was.
    void cancel() { leave(Leave::drop); }

    bool running() const { return running_; }
    const UncertaintyProgress& progress() const { return progress_; }
    /// How the last run ended, in a sentence; "" before one.
    const std::string& outcome() const { return outcome_; }
    /// The last run brought an ensemble.
    bool found() const { return found_; }

    /// Seconds since any moment; the steady clock unless another is set.
    using Now = double (*)();
    void set_clock(Now now) { now_ = now; }

  private:
    enum class Leave { no, keep, drop };

    bool working(double units) override;
    void samples_done(int done, int of) override;

    void leave(Leave how);
    inversion::EnsembleRequest request_of(const UncertaintyChoice& choice, int channel) const;
    void end_run(inversion::EnsembleResult& result);
    void take(inversion::EnsembleResult& result);

    edit::Workbench& workbench_;
    UncertaintyDeskObserver& observer_;
    Find find_;
    Now now_;
    UncertaintyProgress progress_;
    double first_sample_ = 0;  ///< seconds
    Leave leave_ = Leave::no;
    bool running_ = false, found_ = false;
    std::string outcome_;
};

}  // namespace anomalis::flow
