#pragma once

#include <QObject>

class QWidget;

namespace anomalis {
class Session;
}  // namespace anomalis

namespace anomalis::window {

class Actions;
class StatusPanels;

/// What belongs to the session and to no model: its log, its folder, and the menu Help.
class SessionController : public QObject {
    Q_OBJECT

  public:
    SessionController(QWidget& window, Session& session, Actions& actions, StatusPanels& status);

  private:
    void toggle_logging();
    void save_directory();
    void restore_directory();
    void find_file();
    void tell_version();

    QWidget& window_;
    Session& session_;
    StatusPanels& status_;
};

}  // namespace anomalis::window
