#pragma once

#include <functional>

#include <QObject>

#include "core/preferences.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class Form_preferences;
class ModelNews;
class RecoveryController;

/// Edit, Preferences..., and the choices of the View menu that are kept with them: everything works at once.
class PreferencesController : public QObject {
    Q_OBJECT

  public:
    PreferencesController(QWidget& window, edit::Workbench& workbench, Actions& actions, ModelNews& news,
                          RecoveryController& recovery);

    /// Makes those that the session has read work; once, at the start.
    void begin();
    /// Shows the form until it is closed; `shown` is called when it is there.
    void ask(const std::function<void(Form_preferences&)>& shown = {});

  private:
    void apply(const Preferences& preferences);
    void make_work(const Preferences& preferences);
    void keep();
    void toggle_legend();

    QWidget& window_;
    edit::Workbench& workbench_;
    ModelNews& news_;
    RecoveryController& recovery_;
};

}  // namespace anomalis::window
