#pragma once

namespace anomalis::window {

/// Change handlers of the controls return at once while either flag is set.
struct FormGuards {
    bool events_suspended = false;  ///< controls are being filled
    bool busy = false;              ///< a run is in progress

    bool closed() const { return events_suspended || busy; }
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
