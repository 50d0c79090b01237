#pragma once

namespace anomalis::batch {

/// Which signals a run hears. A cluster that wants its machine back asks before it kills.
enum class StopSignals { keyboard, terminate_too };

/// While it lives, an interrupt from the keyboard does not end the program but is remembered; a second one
/// ends it. One at a time.
class StopRequest {
  public:
    explicit StopRequest(StopSignals signals = StopSignals::keyboard);
    ~StopRequest();
    StopRequest(const StopRequest&) = delete;
    StopRequest& operator=(const StopRequest&) = delete;

    bool made() const;

  private:
    void (*handler_before_)(int);
    void (*terminate_before_)(int);  ///< SIG_ERR: not heard
};

}  // namespace anomalis::batch
