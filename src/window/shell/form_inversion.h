#pragma once

#include <cstdint>

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
class FormInversion : public QObject, private flow::InversionDeskObserver {
    Q_OBJECT

  public:
    FormInversion(const InversionParts& parts, edit::Workbench& workbench, Actions& actions,
                  const EntryGate& gate, ModelNews& news, RecoveryController& recovery);
    ~FormInversion() override;

    const flow::InversionDesk& desk() const { return desk_; }
    /// What stands in for the noise of magnetics and gravity that is not keyed.
    std::array<std::string, 2> noise_estimates() {
        return {desk_.noise_estimate(channel_mag), desk_.noise_estimate(channel_grav)};
    }
    /// False while a run goes on: it is stopped, and the window closes after it.
    bool may_close() { return desk_.may_close(); }
    void follow(WhatChanged what);

  private:
    void panel_changed() override;
    void bars_changed() override { place_bars(); }
    void run_changed() override;
    void stage_changed() override { show_progress(); }
    void model_changed() override;
    void draw_chart(int index) override;
    void close_wanted() override;

    void wire_actions();
    void wire_strip();
    void wire_panel();
    void invert(int index);
    void stop();
    void answer_key(QKeyCombination key);
    void show_progress();
    QString progress_words(int done, int limit) const;
    void place_bars();

    InversionParts parts_;
    edit::Workbench& workbench_;
    Actions& actions_;
    const EntryGate& gate_;
    ModelNews& news_;
    RecoveryController& recovery_;
    flow::InversionDesk desk_;
    InvertPanel& panel_;
    LimitStripView* strip_;
    QTimer* progress_timer_;
    BusyInput* busy_ = nullptr;
    std::int64_t evaluations_before_ = 0;
};

}  // namespace anomalis::window
