#include "core/pacer.h"

#include <utility>

#include "core/prompts.h"

namespace anomalis {

namespace {

class NoPace : public Pacer {
  public:
    void done(double) override {}
};

}  // namespace

Pacer& no_pace() {
    static NoPace none;  // without state, so that any thread may use it
    return none;
}

void TurnPacer::done(double units) {
    since_turn_ += units;
    if (since_turn_ >= turn_units_) take_turn();
}

void TurnPacer::waiting() {
    take_turn();
}

void TurnPacer::take_turn() {
    if (turn(std::exchange(since_turn_, 0))) throw Stopped{};
}

WatchedCalculation::WatchedCalculation(Prompts& prompts, double units) : prompts_(prompts) {
    if (auto* watcher = prompts_.watcher()) watcher->begins(units);
}

WatchedCalculation::~WatchedCalculation() {
    if (auto* watcher = prompts_.watcher()) watcher->ended();
}

bool WatchedCalculation::turn(double units) {
    if (auto* watcher = prompts_.watcher()) return watcher->turn(units);
    prompts_.yield();
    return false;
}

}  // namespace anomalis
