#pragma once

#include <QObject>

#include "flow/file_watch.h"

class QWidget;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

struct FormGuards;
class RecoveryController;
class StatusPanels;

/// Tells in the status bar what others did to the files that are open here: when the window comes to the
/// front, once a minute, and after an open or a save. Tells other windows which file is open in this one.
class WatchController : public QObject {
    Q_OBJECT

  public:
    WatchController(QWidget& window, edit::Workbench& workbench, const FormGuards& guards,
                    RecoveryController& recovery, StatusPanels& status);

    /// The model has another file, or was saved.
    void follow();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void look();

    edit::Workbench& workbench_;
    const FormGuards& guards_;
    RecoveryController& recovery_;
    StatusPanels& status_;
    flow::FileWatch watch_;
};

}  // namespace anomalis::window
