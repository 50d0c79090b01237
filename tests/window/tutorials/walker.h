#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include <QEventLoop>
#include <QStringList>

#include "support/temp_folder.h"
#include "window/form_sample.h"
#include "window/tutorials/lesson.h"
#include "window/tutorials/snapshot.h"

namespace anomalis::tutorials {

/// Reads a tutorial as a person does who has just started the program, and does what it says, with copies of
/// the examples in a folder of their own.
class Walker {
  public:
    Walker(const Lesson& lesson, Pictures pictures);
    /// Does all steps and tells what went wrong, a line each; after a dozen it stops.
    QStringList walk();

  private:
    void turn();
    bool may_go_on() const;
    void begin_step(int number);
    void end_step();
    void take_turn();
    void note(const Order& order, const QString& wrong);
    void do_order(const Order& order);
    void do_once(const Order& order);
    void answer_dialog(const Order& order);
    void check_shown(const Order& order);
    void check_said(const Order& order);
    void check_table(const Order& order);
    void take_picture(const Order& order);
    [[noreturn]] void fail(const QString& words) const;
    std::string place(const QString& name) const;

    TempFolder folder_;
    CurrentFolder inside_;
    const Lesson& lesson_;
    Pictures pictures_;
    std::unique_ptr<window::FormSample> sample_;
    QStringList failures_;
    QString part_;
    std::size_t next_ = 0;
    int step_ = 0, turns_waited_ = 0;
    std::size_t messages_ = 0;       ///< told by the text
    std::vector<QWidget*> at_work_;  ///< of orders that are being done: the modal form they began under
    QEventLoop loop_;
};

}  // namespace anomalis::tutorials
