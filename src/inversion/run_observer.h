#pragma once

#include "core/inversion_state.h"
#include "core/pacer.h"

namespace anomalis::inversion {

/// The state of a run after an iteration.
struct InversionProgress {
    int iteration = 0;
    int iteration_limit = 0;
    MisfitPair misfit{};
    double seconds = 0;  ///< since the run began
};

/// What a least-squares run is at: the fit from the model as it stands, the fits from places about it, the
/// weights of the channels, and how well the data determine the parameters.
enum class RunStage { fit, starts, weights, errors };

/// Who watches a run. A window shows, a batch tool prints, tests record.
class RunObserver {
  public:
    virtual ~RunObserver() = default;
    /// A model was evaluated: who waits can be served, and may ask for a stop.
    virtual void evaluated() {}
    /// A model is being evaluated and has done `units` more (see core/pacer.h): who waits can be served.
    /// True: the run ends here and now, with what it accepted so far.
    virtual bool working(double /*units*/) { return false; }
    /// Units of work between two calls of `working`, read at the start of a run.
    virtual double turn_units() const { return TurnPacer::usual_turn; }
    virtual void show_initial_misfit(const MisfitPair&) {}
    virtual void show_current_misfit(const MisfitPair&) {}
    /// Another part of a run begins. It starts with the fit.
    virtual void stage(RunStage) {}
    /// An iteration has ended.
    virtual void progress(const InversionProgress&) {}
    /// The charts, or the plan view, between two iterations.
    virtual void display_iteration() {}
    /// The best model was stored (true) or forgotten.
    virtual void best_model(bool) {}
};

}  // namespace anomalis::inversion
