#include "window/import/import_controller.h"

#include <utility>

#include <QFileDialog>

#include "core/session.h"
#include "edit/workbench.h"
#include "window/import/form_import.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"
#include "window/shell/open_controller.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

const FileRequest survey_request{
    "Select the survey file",
    "Survey files (*.csv;*.xyz;*.dat;*.dfn;*.txt;*.gz)|*.csv;*.xyz;*.dat;*.dfn;*.txt;*.gz|"
    "All files (*.*)|*.*",
    "", ""};

}  // namespace

ImportController::ImportController(QWidget& window, edit::Workbench& workbench, Actions& actions,
                                   const EntryGate& gate, OpenController& open, StatusPanels& status)
    : QObject(&window),
      window_(window),
      workbench_(workbench),
      gate_(gate),
      open_(open),
      status_(status),
      desk_(workbench, *this) {
    actions.on(ActionId::import_survey, [this] { choose_file(); });
    actions.on(ActionId::survey_map, [this] { show_page(); });
    actions.on(ActionId::next_line, [this] { go_on(1); });
    actions.on(ActionId::previous_line, [this] { go_on(-1); });
}

/// The page shows the desk as long as it is there.
ImportController::~ImportController() {
    delete std::exchange(form_, nullptr);
}

Form_import& ImportController::form() {
    if (form_) return *form_;
    form_ = new Form_import(desk_, &window_);
    connect(form_, &Form_import::file_wanted, this, &ImportController::choose_file);
    connect(form_, &Form_import::folder_wanted, this, &ImportController::choose_folder);
    connect(form_, &Form_import::import_wanted, this, &ImportController::import);
    return *form_;
}

void ImportController::import_file(const std::string& path) {
    if (!gate_.pass()) return;
    form();
    desk_.open(path);
    show_page();
}

void ImportController::choose_file() {
    FileRequest request = survey_request;
    request.default_name = desk_.path();
    if (const auto path = workbench_.session.open_file_dialog(request)) import_file(*path);
}

void ImportController::choose_folder() {
    const QString folder =
        QFileDialog::getExistingDirectory(form_, tr("Folder for the imported lines"), shown(desk_.folder()));
    if (folder.isEmpty()) return;
    desk_.choose_folder(folder.toStdString() + "/");
    choice_changed();
}

void ImportController::show_page() {
    if (desk_.path().empty()) return choose_file();
    Form_import& page = form();
    page.show_layout();
    page.show_lines();
    page.show();
    page.raise();
    page.take_focus();
}

void ImportController::import() {
    if (!desk_.import()) return;
    form_->hide();
    window_.activateWindow();
}

void ImportController::go_on(int step) {
    desk_.import_neighbour(step);
}

/// The old model is a step back; the new one is shown like one that was opened.
void ImportController::load_imported() {
    open_.show_imported();
    status_.show_text(shown(desk_.place_words()) + ": " +
                      tr("%n stations", nullptr, workbench_.session.workspace.station_count));
}

void ImportController::layout_changed() {
    if (form_) form_->show_layout();
}

void ImportController::lines_changed() {
    if (form_) form_->show_lines();
}

void ImportController::choice_changed() {
    if (form_) form_->show_choice();
}

void ImportController::progress_changed() {
    if (form_) form_->show_progress();
}

}  // namespace anomalis::window
