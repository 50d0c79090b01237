#pragma once

#include <functional>

#include "core/inversion_state.h"

namespace anomalis::window {

/// Change handlers of the controls return at once while controls are being filled, a run goes on or a
/// calculation is felt.
struct FormGuards {
    explicit FormGuards(const InversionState& the_inversion) : inversion(the_inversion) {}

    const InversionState& inversion;
    bool events_suspended = false;  ///< controls are being filled
    bool calculating = false;       ///< long enough to serve events in between

    std::function<void()> settle_entries;  ///< what the gate does before anything else

    bool busy() const { return inversion.running || calculating; }
    bool closed() const { return events_suspended || busy(); }
    /// Asked by a handler before it reads or changes anything: what is half typed elsewhere is taken over
    /// first, since a click need not move the focus. False: nothing may be done.
    [[nodiscard]] bool pass() const {
        if (closed()) return false;
        if (settle_entries) settle_entries();
        return true;
    }
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
