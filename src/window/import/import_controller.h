#pragma once

#include <string>

#include <QObject>

#include "flow/import_desk.h"

class QWidget;

namespace anomalis::window {

class Actions;
class EntryGate;
class Form_import;
class OpenController;
class StatusPanels;

/// The import of survey files: the page, and from line to line of a survey.
class ImportController : public QObject, private flow::ImportDeskObserver {
    Q_OBJECT

  public:
    ImportController(QWidget& window, edit::Workbench& workbench, Actions& actions, const EntryGate& gate,
                     OpenController& open, StatusPanels& status);
    ~ImportController() override;

    /// Shows a survey file on the page.
    void import_file(const std::string& path);
    flow::ImportDesk& desk() { return desk_; }

  private:
    void layout_changed() override;
    void lines_changed() override;
    void choice_changed() override;
    void progress_changed() override;
    void load_imported() override;

    Form_import& form();
    void choose_file();
    void choose_folder();
    void import();
    void go_on(int step);
    void show_page();

    QWidget& window_;
    edit::Workbench& workbench_;
    const EntryGate& gate_;
    OpenController& open_;
    StatusPanels& status_;
    flow::ImportDesk desk_;
    Form_import* form_ = nullptr;
};

}  // namespace anomalis::window
