#include "window/survey/survey_controller.h"

#include <exception>

#include <QTabWidget>

#include "core/failure.h"
#include "core/paths.h"
#include "core/session.h"
#include "edit/workbench.h"
#include "survey/desk/line_thumbnail.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/entry_gate.h"
#include "window/shell/open_controller.h"
#include "window/survey/line_card.h"
#include "window/survey/survey_page.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

constexpr int look_pause = 2000;       // ms
constexpr int picture_pause = 120;     // ms that a line is chosen before its section is drawn
constexpr std::size_t at_a_time = 40;  // results between two turns of the event loop
constexpr const char* survey_file_name = "survey.json";

const FileRequest results_request{"Select survey.json in the folder of the results",
                                  "Results of a survey (survey.json)|survey.json|All files (*.*)|*.*", "",
                                  ""};

}  // namespace

SurveyController::SurveyController(QTabWidget& tabs, edit::Workbench& workbench, Actions& actions,
                                   const EntryGate& gate, OpenController& open, StatusPanels& status)
    : QObject(&tabs),
      tabs_(tabs),
      workbench_(workbench),
      actions_(actions),
      gate_(gate),
      open_(open),
      status_(status) {
    actions.on(ActionId::open_results, [this] { choose_folder(); });
    actions.on(ActionId::survey_results, [this] { show_page(); });
    actions.on(ActionId::next_result, [this] { open_neighbour(1); });
    actions.on(ActionId::previous_result, [this] { open_neighbour(-1); });
    for (const ActionId id : {ActionId::survey_results, ActionId::next_result, ActionId::previous_result})
        actions.only_if(id, [this] { return desk_.is_open(); });
    look_.setInterval(look_pause);
    connect(&look_, &QTimer::timeout, this, &SurveyController::look);
    read_.setInterval(0);
    connect(&read_, &QTimer::timeout, this, &SurveyController::read_on);
    picture_.setSingleShot(true);
    picture_.setInterval(picture_pause);
    connect(&picture_, &QTimer::timeout, this, &SurveyController::picture_line);
    connect(&tabs, &QTabWidget::currentChanged, this, [this] {
        if (page_ && tabs_.currentWidget() == page_) look();
    });
}

/// The page shows the desk as long as it is there.
SurveyController::~SurveyController() {
    delete page_;
}

bool SurveyController::is_results(const std::string& path) {
    return folder_exists(path) || file_name(path) == survey_file_name;
}

SurveyPage& SurveyController::page() {
    if (page_) return *page_;
    page_ = new SurveyPage(desk_, workbench_.session.preferences.susceptibility_unit);
    wire_page();
    return *page_;
}

void SurveyController::wire_page() {
    connect(page_, &SurveyPage::line_chosen, this,
            [this](const QString& line) { choose(line.toStdString()); });
    connect(page_, &SurveyPage::step_wanted, this, &SurveyController::step);
    connect(page_, &SurveyPage::open_wanted, this, &SurveyController::open_line);
    connect(page_, &SurveyPage::folder_wanted, this, &SurveyController::choose_folder);
    connect(page_, &SurveyPage::close_wanted, this, &SurveyController::close, Qt::QueuedConnection);
    connect(page_, &SurveyPage::flag_wanted, this, [this](survey::LineFlag flag) {
        page_->settle();
        change_flags([this, flag] {
            desk_.set_flag(desk_.chosen(), flag);
            return std::string();
        });
    });
    connect(page_, &SurveyPage::note_given, this, [this](const QString& line, const QString& note) {
        change_flags([this, &line, &note] {
            desk_.set_note(line.toStdString(), note.toStdString());
            return std::string();
        });
    });
    connect(page_, &SurveyPage::undo_wanted, this, [this] {
        page_->settle();
        change_flags([this] { return desk_.can_undo() ? desk_.undo() : "There is no flag to take back"; });
    });
    connect(page_, &SurveyPage::redo_wanted, this, [this] {
        page_->settle();
        change_flags([this] { return desk_.can_redo() ? desk_.redo() : "There is no flag to give again"; });
    });
}

void SurveyController::choose_folder() {
    FileRequest request = results_request;
    if (desk_.is_open()) request.default_name = survey::survey_file(desk_.folder());
    if (const auto path = workbench_.session.open_file_dialog(request)) open_folder(*path);
}

void SurveyController::open_folder(const std::string& path) {
    if (!gate_.pass()) return;
    try {
        desk_.open(path);
    } catch (const std::exception& failure) {
        workbench_.session.prompts.message(fault_text(failure));
        return;
    }
    pictured_.clear();
    desk_.step(1);
    page().show_survey();
    shown_change_ = desk_.change();
    show_page();
    look_.start();
    read_.start();
    picture_.start();
    actions_.refresh();
}

void SurveyController::show_page() {
    if (!desk_.is_open()) return choose_folder();
    if (tabs_.indexOf(&page()) < 0) tabs_.addTab(page_, tr("Survey"));
    tabs_.setCurrentWidget(page_);
    page_->take_focus();
}

void SurveyController::close() {
    settle();
    for (QTimer* timer : {&look_, &read_, &picture_}) timer->stop();
    tabs_.removeTab(tabs_.indexOf(page_));
    delete page_;
    desk_.close();
    desk_.filter({});
    desk_.sort_as_planned();
    actions_.refresh();
}

void SurveyController::settle() {
    if (page_) page_->settle();
}

void SurveyController::follow(WhatChanged what) {
    if (page_ && (what & News::preferences))
        page_->card().show_unit(workbench_.session.preferences.susceptibility_unit);
}

void SurveyController::choose(const std::string& line) {
    page_->settle();
    if (!desk_.choose(line)) return;
    page_->show_chosen();
    picture_.start();
}

void SurveyController::step(int by) {
    page_->settle();
    if (!desk_.step(by)) return;
    page_->show_chosen();
    picture_.start();
}

void SurveyController::open_line() {
    if (!gate_.pass() || desk_.chosen().empty()) return;
    const std::string line = desk_.chosen();
    const survey::LineResult* result = desk_.watch().result(line);
    if (!result || result->status == survey::LineStatus::failed)
        return page_->show_refused(tr("Line %1 has no model to be opened: %2")
                                       .arg(shown(line), result ? shown(result->message)
                                                                : tr("the survey has no result of it yet")));
    const std::string workspace = desk_.watch().workspace_of(line);
    if (workspace.empty())
        return page_->show_refused(
            tr("There is no workspace in %1: the plan of the survey kept none, or it was taken "
               "away. Run the survey again to have it made")
                .arg(shown(survey::line_folder(desk_.folder(), line))));
    page_->show_refused({});
    open_.open_copy(workspace);  // the file is the survey's
    status_.add_text(tr("Line %1, %2 of %3 on the list of the survey")
                         .arg(shown(line))
                         .arg(desk_.chosen_row().value_or(0) + 1)
                         .arg(desk_.rows().size()));
}

/// From line to line in the workbench; those that have no model are passed over.
void SurveyController::open_neighbour(int by) {
    if (!desk_.is_open() || !gate_.pass()) return;
    page_->settle();
    const std::string before = desk_.chosen();
    bool found = false;
    while (!found && desk_.step(by)) {
        const survey::LineResult* result = desk_.watch().result(desk_.chosen());
        found = result && result->status == survey::LineStatus::done;
    }
    if (!found) {
        desk_.choose(before);
        status_.show_text(by > 0 ? tr("This is the last line on the list of the survey")
                                 : tr("This is the first line on the list of the survey"));
        return;
    }
    page_->show_chosen();
    picture_.start();
    open_line();
}

/// A page that nobody sees is not kept up to date.
void SurveyController::look() {
    if (!page_ || !page_->isVisible()) return;
    desk_.look();
    read_.start();
}

void SurveyController::read_on() {
    if (!desk_.read_on(at_a_time)) read_.stop();
    page_->show_progress();
    if (desk_.change() == shown_change_) return;
    shown_change_ = desk_.change();
    pictured_.clear();
    page_->show_rows();
    picture_.start();
}

void SurveyController::picture_line() {
    const std::string line = desk_.chosen();
    if (!page_ || line == pictured_) return;
    pictured_ = line;
    SectionPicture& picture = page_->card().picture();
    const survey::LineResult* result = desk_.watch().result(line);
    const std::string workspace =
        result && result->status == survey::LineStatus::done ? desk_.watch().workspace_of(line) : "";
    picture.show_section(workspace.empty() ? std::nullopt
                                           : survey::line_thumbnail(workspace, picture.aspect()));
}

void SurveyController::change_flags(const std::function<std::string()>& change) {
    QString told;
    try {
        told = shown(change());
    } catch (const std::exception& failure) {
        told = tr("The flag was not kept: %1").arg(shown(fault_text(failure)));
    }
    page_->show_refused(told);
    shown_change_ = desk_.change();
    page_->show_rows();
    page_->show_chosen();
    picture_.start();
}

}  // namespace anomalis::window
