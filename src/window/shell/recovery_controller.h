#pragma once

#include <memory>

#include <QObject>

#include "flow/kept_models.h"

class QTimer;
class QWidget;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit
namespace anomalis::flow {
class ProgramFolder;
class RecoveryKeeper;
}  // namespace anomalis::flow

namespace anomalis::window {

class Actions;
struct FormGuards;
class Menus;
class OpenController;
class StatusPanels;

/// Keeps the unsaved model once a minute and when the program is left, and offers what earlier sessions have
/// left: on the welcome panels, in the menu, and, over a model that is open already, in the status line.
class RecoveryController : public QObject {
    Q_OBJECT

  public:
    RecoveryController(QWidget& window, edit::Workbench& workbench, const FormGuards& guards,
                       Actions& actions, Menus& menus, OpenController& open, StatusPanels& status);
    ~RecoveryController() override;

    /// Begins with a folder that all running programs share; until then nothing is kept or offered.
    void start(const std::string& root);
    void keep_now();
    /// How often the model is kept.
    void set_pause(int seconds);
    /// The window closes. False, once, when the unsaved model cannot be kept: it stays open and says so.
    bool leave();
    /// Where this program keeps what a crash must not take; null while it keeps nothing.
    const flow::ProgramFolder* folder() const;

  signals:
    void keeping_began();

  private:
    void tick();
    void show_problem();
    void show_kept();
    void tell_kept();
    void go_on_with(int index);
    void discard(int index);

    QWidget& window_;
    edit::Workbench& workbench_;
    const FormGuards& guards_;
    Actions& actions_;
    Menus& menus_;
    OpenController& open_;
    StatusPanels& status_;
    std::unique_ptr<flow::RecoveryKeeper> keeper_;
    flow::KeptModels kept_;
    QTimer* timer_;
    bool told_of_loss_ = false;
};

}  // namespace anomalis::window
