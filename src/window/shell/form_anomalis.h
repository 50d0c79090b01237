#pragma once

#include <memory>
#include <vector>

#include <QMainWindow>

#include "chart/qt/chart_dialogs.h"
#include "edit/workbench.h"
#include "flow/examples.h"
#include "flow/save_flow.h"
#include "window/shell/entry_gate.h"
#include "window/shell/form_guards.h"
#include "window/shell/model_news.h"

class QTabWidget;

namespace anomalis::window {

class Actions;
class CalculationWatch;
class ChartFileDialogs;
class ChartsPanel;
class DefinitionsPage;
class FindController;
class FieldController;
class FitController;
class FormInversion;
class FormulasController;
class ImportController;
class LineController;
class Menus;
class ModelPage;
class ModelSide;
class OpenController;
class PageController;
class PreferencesController;
class RecoveryController;
class SaveController;
class StatusPanels;
class SurveyController;
class UncertaintyController;
class WatchController;
class WindowPlacer;

/// The main window: two tabs, menus and status bar, and the controllers that join them to the flows. It
/// composes them, says who hears the news in which order, and holds no arithmetic.
class Form_anomalis : public QMainWindow, public chart::ChartDialogsHost {
    Q_OBJECT

  public:
    /// Starts the session. `session` outlives the window.
    Form_anomalis(Session& session, const std::vector<flow::ExampleFile>& examples);
    ~Form_anomalis() override;

    /// Reads a workspace file and shows it; results of a survey go to their page, a file of another kind to
    /// the import.
    void open_file(const std::string& path);
    /// Reads a workspace, loads its data and shows the model.
    void open_example(const std::string& path);
    void load_locations();

    edit::Workbench& workbench() { return workbench_; }
    FormGuards& guards() { return guards_; }
    /// Of all charts in the window and in its forms.
    chart::ChartDialogs& chart_dialogs() override;
    EntryGate& gate() { return gate_; }
    ModelNews& news() { return news_; }
    Actions& actions() { return *actions_; }
    ChartsPanel& charts() { return *charts_; }
    ModelSide& side() { return *side_; }
    FormInversion& inversion() { return *inversion_; }
    UncertaintyController& uncertainty() { return *uncertainty_; }
    FindController& find() { return *find_; }
    PreferencesController& preferences() { return *preferences_; }
    RecoveryController& recovery() { return *recovery_; }
    ImportController& import() { return *import_; }
    SurveyController& survey() { return *survey_; }
    CalculationWatch& calculation() { return *calculation_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void lay_out();
    void make_controllers(const std::vector<flow::ExampleFile>& examples);
    void wire_panels();
    void start();
    void restore_place(const StartSettings& settings);
    void keep_place();
    void follow(WhatChanged what);
    flow::WindowLayout window_layout() const;

    Session& session_;
    edit::Workbench workbench_;
    FormGuards guards_;
    EntryGate gate_;
    std::unique_ptr<ChartFileDialogs> chart_dialogs_;
    ModelNews news_;
    QTabWidget* tabs_;
    DefinitionsPage* definitions_page_;
    ChartsPanel* charts_;
    ModelSide* side_;
    ModelPage* model_page_;
    StatusPanels* status_;
    Actions* actions_;
    Menus* menus_;
    WindowPlacer* placer_;
    std::unique_ptr<CalculationWatch> calculation_;
    PageController* pages_ = nullptr;
    LineController* line_ = nullptr;
    OpenController* open_ = nullptr;
    SaveController* save_ = nullptr;
    FormulasController* formulas_ = nullptr;
    FieldController* field_ = nullptr;
    PreferencesController* preferences_ = nullptr;
    RecoveryController* recovery_ = nullptr;
    WatchController* watch_ = nullptr;
    FormInversion* inversion_ = nullptr;
    FitController* fit_ = nullptr;
    UncertaintyController* uncertainty_ = nullptr;
    FindController* find_ = nullptr;
    ImportController* import_ = nullptr;
    SurveyController* survey_ = nullptr;
};

}  // namespace anomalis::window
