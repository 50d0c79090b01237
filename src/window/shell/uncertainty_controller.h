#pragma once

#include <functional>

#include <QObject>

#include "flow/uncertainty_desk.h"
#include "window/shell/model_news.h"

namespace anomalis::edit {
struct Workbench;
}  // namespace anomalis::edit

namespace anomalis::window {

class Actions;
class ChartsPanel;
class Form_ensemble;
class Form_uncertainty;
class RecoveryController;
class StatusPanels;

/// How sure the model is: the run, the page of what it found, and whether ghosts and fan are drawn.
class UncertaintyController : public QObject, private flow::UncertaintyDeskObserver {
    Q_OBJECT

  public:
    /// `channel` tells which channel the inversion is set to.
    UncertaintyController(QWidget& window, edit::Workbench& workbench, Actions& actions, ModelNews& news,
                          ChartsPanel& charts, StatusPanels& status, RecoveryController& recovery,
                          std::function<int()> channel);
    ~UncertaintyController() override;

    flow::UncertaintyDesk& desk() { return desk_; }
    void follow(WhatChanged what);
    /// False while a run goes on: it is cancelled, and the window closes after it.
    bool may_close();

  private:
    void run_changed() override;
    void progress_changed() override;
    void model_changed() override;

    void open();
    void open_run();
    void start();
    void open_results();
    void fill_results();
    void toggle_shown();
    void copy_table();

    QWidget& window_;
    edit::Workbench& workbench_;
    ModelNews& news_;
    ChartsPanel& charts_;
    StatusPanels& status_;
    RecoveryController& recovery_;
    std::function<int()> channel_;
    flow::UncertaintyDesk desk_;
    Form_uncertainty* run_ = nullptr;
    Form_ensemble* results_ = nullptr;
    bool close_after_ = false;
    int body_ = 0;  ///< plotted; 0 for the current one
};

}  // namespace anomalis::window
