#pragma once

#include <memory>

#include <QObject>

#include "window/shell/model_news.h"

class QPushButton;
class QTimer;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit
namespace anomalis::forward {
class FormulaComparison;
struct FormulaDifference;
}  // namespace anomalis::forward

namespace anomalis::window {

class Actions;
class EntryGate;
struct FormGuards;
class StatusPanels;

/// The choice of the formulas: its menu entry, and in the status bar always which ones are in force; of the
/// classic ones how far the curve of the current body is from the exact one, with a click to change over. The
/// distance is found when the hand rests, in pieces between which the window goes on; the next change ends
/// it.
class FormulasController : public QObject {
    Q_OBJECT

  public:
    FormulasController(QObject* parent, edit::Workbench& workbench, Actions& actions, const EntryGate& gate,
                       const FormGuards& guards, ModelNews& news, StatusPanels& status);
    ~FormulasController() override;

    void follow(WhatChanged what);

  private:
    void choose(bool exact);
    bool can_be_compared() const;
    bool at_rest() const;
    void show_kind();
    void stop_comparing();
    void begin_comparing();
    void compare_on();
    void show_difference(const forward::FormulaDifference& found);
    void show_notable(bool notable);

    edit::Workbench& workbench_;
    const FormGuards& guards_;
    ModelNews& news_;
    QPushButton* difference_;
    QTimer* rest_;
    QTimer* pieces_;  ///< active while a comparison has pieces left
    std::unique_ptr<forward::FormulaComparison> comparison_;
};

}  // namespace anomalis::window
