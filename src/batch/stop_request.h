#pragma once

namespace anomalis::batch {

/// While it lives, an interrupt from the keyboard does not end the program but is remembered; a second one
/// ends it. One at a time.
class StopRequest {
  public:
    StopRequest();
    ~StopRequest();
    StopRequest(const StopRequest&) = delete;
    StopRequest& operator=(const StopRequest&) = delete;

    bool made() const;

  private:
    void (*handler_before_)(int);
};

}  // namespace anomalis::batch
