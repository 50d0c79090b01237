#pragma once

#include <QElapsedTimer>

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::window {

class StatusPanels;

/// Shows the bar of the status line while curves are calculated for longer than a blink. Nothing is painted
/// in the middle of a calculation, so how long it will take is judged before, by the last one.
class CalculationWatch {
  public:
    CalculationWatch(const Workspace& workspace, StatusPanels& status)
        : workspace_(workspace), status_(status) {}

    void follow(bool begins);

  private:
    /// Responses to be calculated, times stations.
    double work_ahead() const;

    const Workspace& workspace_;
    StatusPanels& status_;
    QElapsedTimer clock_;
    double work_ = 0;
    double seconds_a_unit_ = 1e-6;
    bool shown_ = false;
};

}  // namespace anomalis::window
