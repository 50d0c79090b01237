#pragma once

#include "core/inversion_state.h"

namespace anomalis::window {

/// Change handlers of the controls return at once while controls are being filled, a run goes on or a
/// calculation is felt.
struct FormGuards {
    explicit FormGuards(const InversionState& the_inversion) : inversion(the_inversion) {}

    const InversionState& inversion;
    bool events_suspended = false;  ///< controls are being filled
    bool calculating = false;       ///< long enough to serve events in between

    bool busy() const { return inversion.running || calculating; }
    bool closed() const { return events_suspended || busy(); }
};

/// Suspends the change handlers for a scope and puts back what was.
class SuspendEvents {
  public:
    explicit SuspendEvents(FormGuards& guards) : guards_(guards), before_(guards.events_suspended) {
        guards_.events_suspended = true;
    }
    ~SuspendEvents() { guards_.events_suspended = before_; }
    SuspendEvents(const SuspendEvents&) = delete;
    SuspendEvents& operator=(const SuspendEvents&) = delete;

  private:
    FormGuards& guards_;
    bool before_;
};

}  // namespace anomalis::window
