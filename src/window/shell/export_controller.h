#pragma once

#include <QObject>

#include "flow/export_flow.h"

class QWidget;

namespace anomalis::window {

class Actions;
class ChartFileDialogs;
class ChartsPanel;
class EntryGate;
class StatusPanels;

/// Tables, drawings and pictures that leave the program.
class ExportController : public QObject {
    Q_OBJECT

  public:
    ExportController(QWidget& window, edit::Workbench& workbench, Actions& actions, const EntryGate& gate,
                     ChartsPanel& charts, StatusPanels& status, ChartFileDialogs& dialogs);

  private:
    void export_table(flow::Exported (*export_flow)(edit::Workbench&));
    void print_figure();
    void screenshot(flow::ScreenshotKind kind);

    QWidget& window_;
    edit::Workbench& workbench_;
    ChartsPanel& charts_;
    StatusPanels& status_;
    ChartFileDialogs& dialogs_;
};

}  // namespace anomalis::window
