#pragma once

#include <QElapsedTimer>

#include "core/prompts.h"

class QAction;
class QMainWindow;
class QWidget;

namespace anomalis::window {

class BusyInput;
struct FormGuards;
class StatusPanels;

/// What of the window a calculation shows itself in, and what stops it besides the key Esc.
struct WatchParts {
    QMainWindow& window;
    StatusPanels& status;
    QWidget& stop_button;
    QAction& stop_action;
};

/// A calculation that is felt: the bar of the status line shows how far it has come, the window is painted,
/// and of what the person does only a stop and a request to close get through. A shorter one passes unseen.
class CalculationWatch : public CalculationWatcher {
  public:
    /// All outlive the watch.
    CalculationWatch(const WatchParts& parts, FormGuards& guards);

    void begins(double units) override;
    bool turn(double units) override;
    void ended() override;

    /// False while a calculation is felt: it is left, and the window closes after it.
    bool may_close();
    /// Milliseconds that a calculation passes unseen.
    void set_patience(int patience) { patience_ = patience; }

  private:
    void show();
    void hide();
    void leave() { left_ = true; }

    WatchParts parts_;
    FormGuards& guards_;
    BusyInput* busy_;
    QElapsedTimer clock_;
    int patience_ = 150;
    double expected_ = 0, done_ = 0;
    bool shown_ = false, left_ = false, close_ = false;
};

}  // namespace anomalis::window
