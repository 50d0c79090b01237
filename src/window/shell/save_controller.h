#pragma once

#include <functional>

#include <QObject>

#include "flow/save_flow.h"
#include "window/shell/model_news.h"

class QPushButton;
class QWidget;

namespace anomalis::window {

class Actions;
class ChartsPanel;
class EntryGate;
struct FormGuards;
class StatusPanels;

/// Saving, and what tells whether there is anything to save: the caption of the window and the Save button.
class SaveController : public QObject {
    Q_OBJECT

  public:
    using Layout = std::function<flow::WindowLayout()>;
    SaveController(QWidget& window, edit::Workbench& workbench, Actions& actions, const EntryGate& gate,
                   const FormGuards& guards, ModelNews& news, ChartsPanel& charts, StatusPanels& status,
                   Layout layout);

    /// Caption and button follow, and are left alone where nothing differs.
    void follow();

  private:
    void save_as();
    void save();
    void save_by_button();
    void show_saved(flow::SaveOutcome outcome);

    QWidget& window_;
    edit::Workbench& workbench_;
    const FormGuards& guards_;
    ModelNews& news_;
    StatusPanels& status_;
    Layout layout_;
    QPushButton* button_;
};

}  // namespace anomalis::window
