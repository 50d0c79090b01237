#pragma once

#include <deque>
#include <memory>
#include <random>
#include <string>

#include <QTimer>
#include <QWidget>

#include "core/session.h"
#include "support/temp_folder.h"
#include "window/restless_prompts.h"
#include "window/shell/form_anomalis.h"

namespace anomalis::window {

/// Someone who works on a model without rest and without plan, by clicks and keys on what is there.
/// Everything follows from the seed.
class RestlessPerson {
  public:
    explicit RestlessPerson(std::uint32_t seed);
    ~RestlessPerson();

    /// One action. True when it was a step back or forward in the history.
    bool act();
    /// The window as after a fresh start with the same line: for comparisons of memory.
    void start_anew();
    /// What was done last, for a report.
    std::string last_deeds() const;

    Workspace& workspace() { return session.workspace; }
    const TempFolder& folder() const { return folder_; }

    std::mt19937 random;
    RestlessPrompts prompts{random};
    Session session{prompts, Settings()};

  private:
    struct Habit;
    static const std::vector<Habit>& habits();

    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    template <class Widget>
    Widget* any_visible();
    QPoint any_place(const QWidget& widget);
    void trigger(const char* action);
    void settle();
    void note(const std::string& deed);
    void close_what_is_open();
    void stay_reasonable();

    void type_into_box();
    void click_button();
    void step_bar();
    void choose_entry();
    void drag_limit_bar();
    void work_in_grid();
    void work_on_chart();
    void press_key();
    void choose_action();
    void undo();
    void redo();
    void load();
    void open_a_file();
    void fit_and_stop();
    void add_or_delete();
    void change_page();
    void resize();
    void move_scroll_bar();

    TempFolder folder_;
    CurrentFolder inside_{folder_.folder()};
    QTimer closer_;
    std::deque<std::string> deeds_;
    int yields_to_stop_ = 0;
    bool stepped_ = false;
    // Last: the window goes first.
    std::unique_ptr<Form_anomalis> form_;
};

}  // namespace anomalis::window
