#pragma once

#include <algorithm>

#include "core/pacer.h"

namespace anomalis {

/// Counts the work between two turns, and leaves the work at a turn of choice.
class StepPacer : public TurnPacer {
  public:
    explicit StepPacer(int leave_at = 0, double turn_units = usual_turn)
        : TurnPacer(turn_units), leave_at_(leave_at) {}

    int turns = 0;
    double units = 0;    ///< in all turns
    double longest = 0;  ///< work between two turns

  protected:
    bool turn(double done) override {
        units += done;
        longest = std::max(longest, done);
        return ++turns == leave_at_;
    }

  private:
    int leave_at_;
};

}  // namespace anomalis
