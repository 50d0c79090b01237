#pragma once

#include <functional>
#include <string>

#include <QObject>
#include <QPointer>
#include <QTimer>

#include "survey/desk/survey_desk.h"
#include "window/shell/model_news.h"
#include "window/survey/survey_page.h"

class QTabWidget;
class QWidget;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class EntryGate;
class OpenController;
class StatusPanels;

/// The results of a survey: their page, a tab of the window while a folder is open, and from line to line of
/// them in the workbench.
class SurveyController : public QObject {
    Q_OBJECT

  public:
    SurveyController(QTabWidget& tabs, edit::Workbench& workbench, Actions& actions, const EntryGate& gate,
                     OpenController& open, StatusPanels& status);
    ~SurveyController() override;

    /// Whether a path is meant for this page: a folder, or the survey.json of one.
    static bool is_results(const std::string& path);
    void open_folder(const std::string& path);
    void settle();
    void follow(WhatChanged what);
    survey::SurveyDesk& desk() { return desk_; }

  private:
    SurveyPage& page();
    void wire_page();
    void choose_folder();
    void show_page();
    void close();
    void choose(const std::string& line);
    void step(int by);
    void open_line();
    void open_neighbour(int by);
    void look();
    void read_on();
    void picture_line();
    /// Runs what writes flags; what failed is told on the page.
    void change_flags(const std::function<std::string()>& change);

    QTabWidget& tabs_;
    edit::Workbench& workbench_;
    Actions& actions_;
    const EntryGate& gate_;
    OpenController& open_;
    StatusPanels& status_;
    survey::SurveyDesk desk_;
    QPointer<SurveyPage> page_;
    QTimer look_, read_, picture_;
    std::size_t shown_change_ = 0;
    std::string pictured_;
};

}  // namespace anomalis::window
