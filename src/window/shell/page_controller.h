#pragma once

#include <QObject>

#include "window/shell/model_news.h"

class QTabWidget;
class QWidget;

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class ChartsPanel;
class DefinitionsPage;
class EntryGate;
class ModelPage;

/// The two pages of the window.
struct Pages {
    QTabWidget& tabs;
    DefinitionsPage& definitions;
    ModelPage& model;
    ChartsPanel& charts;
};

/// Which page is on show, and what must be right before the model is.
class PageController : public QObject {
    Q_OBJECT

  public:
    PageController(const Pages& pages, edit::Workbench& workbench, Actions& actions, const EntryGate& gate);

    void show_definitions();
    void show_model();
    void follow(WhatChanged what);

  private:
    /// The first box whose text keeps the model from being shown, which was told; null when all are right.
    QWidget* wrong_box();
    void page_changed(int index);
    void turn(int step);
    /// With a box that is wrong, the first page comes back and the box gets the focus; without a line the
    /// page tells what to do.
    void enter_model_page();

    Pages pages_;
    edit::Workbench& workbench_;
    Actions& actions_;
    const EntryGate& gate_;
};

}  // namespace anomalis::window
