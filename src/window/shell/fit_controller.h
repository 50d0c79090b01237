#pragma once

#include <QObject>

#include "window/shell/model_news.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class Form_fit;

/// The results of the last fit in a window of their own, which follows the model.
class FitController : public QObject {
    Q_OBJECT

  public:
    FitController(QWidget& window, edit::Workbench& workbench, Actions& actions);

    void follow(WhatChanged what);

  private:
    void open();
    void fill();

    QWidget& window_;
    edit::Workbench& workbench_;
    Form_fit* form_ = nullptr;
};

}  // namespace anomalis::window
