#pragma once

#include <vector>

#include <QMainWindow>

#include "edit/workbench.h"
#include "flow/examples.h"
#include "flow/open_flow.h"
#include "window/shell/form_guards.h"

class QStackedWidget;
class QTabWidget;

namespace anomalis::edit {
struct HistoryStep;
}  // namespace anomalis::edit

namespace anomalis::window {

class ChartsPanel;
class DefinitionsPage;
class FormBodies;
class FormFiles;
class FormFormulas;
class FormHistory;
class FormInversion;
class FormMenus;
class FormRecovery;
class FormViews;
class ModelSide;
class StatusPanels;
class WelcomePanel;

/// The main window: two tabs, menus and status bar, and the flows that join them. It holds no arithmetic.
class Form_anomalis : public QMainWindow {
    Q_OBJECT

  public:
    /// Starts the session. `session` outlives the window.
    Form_anomalis(Session& session, const std::vector<flow::ExampleFile>& examples);
    ~Form_anomalis() override;

    /// Reads a workspace file and shows it; a file of another kind becomes the observed data file.
    void open_file(const std::string& path);
    /// Reads a workspace, loads its data and shows the model.
    void open_example(const std::string& path);
    void load_locations();

    edit::Workbench& workbench() { return workbench_; }
    FormGuards& guards() { return guards_; }
    ChartsPanel& charts() { return *charts_; }
    ModelSide& side() { return *side_; }
    FormBodies& bodies() { return *bodies_; }
    FormMenus& menus() { return *menus_; }
    StatusPanels& status() { return *status_; }
    DefinitionsPage& definitions_page() { return *definitions_page_; }
    /// Takes over what is being typed anywhere: before a command that reads or writes the workspace.
    void commit_entries();
    void show_model_tab();
    void show_definitions_tab();
    /// Menus and model page follow whether a line is loaded.
    void update_line_state();
    FormInversion& inversion() { return *inversion_; }
    FormRecovery& recovery() { return *recovery_; }
    /// A model that a crash left is back: it is shown like an opened one, and its line is loaded.
    void show_recovered();
    /// A step back or forward was taken: boxes, line, bodies, charts and caption follow.
    void history_moved(const edit::HistoryStep& step);
    /// Shows what a read of a workspace file left.
    void show_opened(flow::OpenOutcome outcome, flow::ReadMode mode);
    /// Caption, Save button and recent files follow the model.
    void show_caption();

  public slots:
    /// The model was edited, by whomever: body controls, charts and caption follow.
    void model_edited();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    void start();
    void lay_out();
    void wire_pages();
    void wire_menus();
    void restore_size(const StartSettings& settings);

    void open_with_dialog(flow::ReadMode mode);
    void choose_data();
    void take_data_file(const std::string& path);
    void tab_changed(int index);
    void line_dropped();
    void setting_changed();

    Session& session_;
    edit::Workbench workbench_;
    FormGuards guards_;
    bool window_ready_ = false;
    QTabWidget* tabs_;
    DefinitionsPage* definitions_page_;
    QStackedWidget* model_page_;
    WelcomePanel* hint_;
    QWidget* model_row_;
    ChartsPanel* charts_;
    ModelSide* side_;
    StatusPanels* status_;
    FormMenus* menus_;
    FormBodies* bodies_;
    FormViews* views_;
    FormHistory* history_;
    FormFiles* files_ = nullptr;
    FormFormulas* formulas_;
    FormRecovery* recovery_;
    FormInversion* inversion_;
};

}  // namespace anomalis::window
