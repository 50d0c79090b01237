#pragma once

#include <QObject>

#include "window/shell/model_news.h"

class QPushButton;
class QTimer;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class EntryGate;
struct FormGuards;
class StatusPanels;

/// The choice of the formulas: its menu entry, and in the status bar always which ones are in force; of the
/// classic ones how far the curve of the current body is from the exact one, with a click to change over. The
/// distance is found when the model has rested.
class FormulasController : public QObject {
    Q_OBJECT

  public:
    FormulasController(QObject* parent, edit::Workbench& workbench, Actions& actions, const EntryGate& gate,
                       const FormGuards& guards, ModelNews& news, StatusPanels& status);

    void follow(WhatChanged what);

  private:
    void choose(bool exact);
    bool can_be_compared() const;
    void show_kind();
    void show_difference();
    void show_notable(bool notable);

    edit::Workbench& workbench_;
    const FormGuards& guards_;
    ModelNews& news_;
    QPushButton* difference_;
    QTimer* rest_;
};

}  // namespace anomalis::window
