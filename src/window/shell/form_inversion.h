#pragma once

#include <QObject>

#include "flow/inversion_desk.h"
#include "window/shell/model_news.h"

class QMainWindow;
class QTabWidget;
class QTimer;

namespace anomalis::window {

class Actions;
class BusyInput;
class ChartsPanel;
class EntryGate;
struct FormGuards;
class InvertPanel;
class LimitStripView;
class ModelSide;
class RecoveryController;
class StatusPanels;

/// The parts of the window that the inversion shows itself in.
struct InversionParts {
    QMainWindow& window;
    QTabWidget& tabs;
    ChartsPanel& charts;
    ModelSide& side;
    StatusPanels& status;
};

/// The inversion in the window: panel, limit bars, menu entries, and what is served while it runs.
class FormInversion : public QObject, private flow::InversionDeskHost {
    Q_OBJECT

  public:
    FormInversion(const InversionParts& parts, edit::Workbench& workbench, Actions& actions,
                  const EntryGate& gate, FormGuards& guards, ModelNews& news, RecoveryController& recovery);
    ~FormInversion() override;

    flow::InversionDesk& desk() { return desk_; }
    /// False while a run goes on: it is stopped, and the window closes after it.
    bool may_close() { return desk_.control().may_close(); }
    void follow(WhatChanged what);

  private:
    void show_panel(const flow::InversionPanel& panel) override;
    void show_bars() override;
    void show_run(bool running) override;
    void display_body_parameters() override;
    void display_model() override;
    void display_chart(int index) override;
    void display_plan_view() override;
    void show_caption() override;
    void keep_model() override;
    void close_window() override;

    void line_changed();
    void follow_model();
    void wire_actions();
    void wire_strip();
    void wire_panel();
    void invert(int index);
    void stop();
    void show_progress();
    void place_bars();
    void show_misfit();
    void show_inversion_view(bool invert);
    void follow_view();

    InversionParts parts_;
    edit::Workbench& workbench_;
    Actions& actions_;
    const EntryGate& gate_;
    FormGuards& guards_;
    ModelNews& news_;
    RecoveryController& recovery_;
    flow::InversionDesk desk_;
    InvertPanel& panel_;
    LimitStripView* strip_;
    QTimer* progress_timer_;
    BusyInput* busy_ = nullptr;
    std::int64_t evaluations_before_ = 0;
    bool placing_ = false;
    bool shown_view_ = false;  ///< the panel's view as last shown
};

}  // namespace anomalis::window
