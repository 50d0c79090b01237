#pragma once

#include <QObject>

#include "flow/inversion_desk.h"

class QAction;
class QTimer;

namespace anomalis::window {

class BusyInput;
class Form_anomalis;
class FormRecovery;
class InvertPanel;
class LimitStripView;

/// The inversion in the window: panel, limit bars, menu entries, and what is served while it runs.
class FormInversion : public QObject, private flow::InversionDeskHost {
    Q_OBJECT

  public:
    FormInversion(Form_anomalis& form, FormRecovery& recovery);
    ~FormInversion() override;

    flow::InversionDesk& desk() { return desk_; }
    /// False while a run goes on: it is stopped, and the window closes after it.
    bool may_close() { return desk_.control().may_close(); }
    /// Another line, or none.
    void line_changed();
    /// The model was edited.
    void follow_model();

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

    void add_entries();
    void wire_panel();
    void invert(int index);
    void stop();
    void show_progress();
    void place_bars();
    void show_misfit(double data, double gradient);
    void show_inversion_view(bool invert);
    void follow_view();

    Form_anomalis& form_;
    FormRecovery& recovery_;
    flow::InversionDesk desk_;
    InvertPanel& panel_;
    LimitStripView* strip_;
    QTimer* progress_timer_;
    QAction* stop_action_ = nullptr;
    BusyInput* busy_ = nullptr;
    std::int64_t evaluations_before_ = 0;
    bool placing_ = false;
    bool shown_view_ = false;  ///< the panel's view as last shown
};

}  // namespace anomalis::window
