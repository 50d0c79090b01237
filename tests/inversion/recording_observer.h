#pragma once

#include <functional>
#include <vector>

#include "inversion/run_observer.h"

namespace anomalis::inversion {

/// Keeps what a run tells, and leaves it at one of its turns; or at one after its errors began.
class RecordingObserver : public RunObserver {
  public:
    void stage(RunStage stage) override {
        if (stage == RunStage::errors && leave_errors_at > 0) leave_at = turns + leave_errors_at;
    }
    void show_initial_misfit(const MisfitPair& misfit) override { initial.push_back(misfit); }
    void show_current_misfit(const MisfitPair& misfit) override { current.push_back(misfit); }
    void display_iteration() override { ++displays; }
    void progress(const InversionProgress& state) override {
        states.push_back(state);
        iterations.push_back(state.iteration);
        if (on_progress) on_progress(state);
    }
    void best_model(bool available) override { best.push_back(available); }
    bool working(double) override { return ++turns == leave_at; }

    std::vector<MisfitPair> initial, current;
    std::vector<int> iterations;
    std::vector<InversionProgress> states;
    std::vector<bool> best;
    int displays = 0;
    int turns = 0, leave_at = 0, leave_errors_at = 0;
    std::function<void(const InversionProgress&)> on_progress;
};

}  // namespace anomalis::inversion
