#include "window/shell/form_inversion.h"

#include <QApplication>
#include <QMainWindow>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>

#include "chart/ax_grapher.h"
#include "chart/surface_mapping.h"
#include "window/panels/charts_panel.h"
#include "window/panels/invert_panel.h"
#include "window/panels/model_side.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/busy_input.h"
#include "window/shell/entry_gate.h"
#include "window/shell/qt_prompts.h"
#include "window/shell/recovery_controller.h"
#include "window/widgets/limit_strip.h"

namespace anomalis::window {

namespace {

constexpr int progress_pause = 100;  // ms

}  // namespace

FormInversion::FormInversion(const InversionParts& parts, edit::Workbench& workbench, Actions& actions,
                             const EntryGate& gate, FormGuards& guards, ModelNews& news,
                             RecoveryController& recovery)
    : QObject(&parts.window),
      parts_(parts),
      workbench_(workbench),
      actions_(actions),
      gate_(gate),
      guards_(guards),
      news_(news),
      recovery_(recovery),
      desk_(workbench, *this),
      panel_(parts.side.invert()),
      strip_(new LimitStripView(parts.charts.chart_widget(edit::chart_section))),
      progress_timer_(new QTimer(this)) {
    wire_actions();
    wire_panel();
    wire_strip();
    busy_ = new BusyInput(parts_.window, panel_.stop_button(), actions.action(ActionId::stop_inversion),
                          [this] { stop(); });
    progress_timer_->setInterval(progress_pause);
    connect(progress_timer_, &QTimer::timeout, this, &FormInversion::show_progress);
    connect(&parts_.side, &ModelSide::invert_view_toggled, this, &FormInversion::show_inversion_view);
    connect(&parts_.tabs, &QTabWidget::currentChanged, this, [this] { desk_.check_channel(); });
    show_panel(desk_.panel());
}

FormInversion::~FormInversion() = default;

void FormInversion::wire_strip() {
    connect(strip_, &LimitStripView::chart_painted, this, &FormInversion::place_bars);
    for (int i = 0; i < 2; ++i) {
        LimitBar& bar = strip_->bar(i);
        constexpr double scale = LimitStripView::twips_a_pixel;
        connect(&bar, &LimitBar::pressed, this, [this, i](double x) { desk_.press_bar(i, x * scale); });
        connect(&bar, &LimitBar::moved, this, [this, i](double x) { desk_.move_bar(i, x * scale); });
        connect(&bar, &LimitBar::released, this, [this, i] { desk_.release_bar(i); });
    }
}

void FormInversion::wire_actions() {
    actions_.on(ActionId::invert_current, [this] { invert(0); });
    actions_.on(ActionId::invert_all, [this] { invert(1); });
    actions_.on(ActionId::stop_inversion, [this] { stop(); });
    actions_.on(ActionId::restore_best, [this] { desk_.restore_best(); });
    actions_.on(ActionId::reject_changes, [this] { desk_.reject_changes(); });
}

void FormInversion::wire_panel() {
    flow::RunControl& control = desk_.control();
    connect(&panel_, &InvertPanel::invert_wanted, this, [this](int index) {
        if (gate_.pass()) invert(index);
    });
    connect(&panel_, &InvertPanel::stop_wanted, this, &FormInversion::stop);
    connect(&panel_, &InvertPanel::restore_wanted, this, [this] {
        if (gate_.pass()) desk_.restore_best();
    });
    connect(&panel_, &InvertPanel::reject_wanted, this, [this] {
        if (gate_.pass()) desk_.reject_changes();
    });
    connect(&panel_, &InvertPanel::channel_chosen, this,
            [&control](int index) { control.combo_invert(index); });
    connect(&panel_, &InvertPanel::method_chosen, this, [&control](int index) {
        control.set_method(index == 1 ? inversion::InversionMethod::least_squares
                                      : inversion::InversionMethod::sweep);
    });
    connect(&panel_, &InvertPanel::gradient_chosen, this,
            [&control](bool on) { control.check_inversion_mode(on ? target_gradient : target_data); });
    connect(&panel_, &InvertPanel::iterations_typed, this,
            [&control](const QString& text) { control.set_max_iterations_text(text.toStdString()); });
}

void FormInversion::invert(int index) {
    follow_view();
    desk_.invert(index);
    const std::string remark = desk_.fit_remark();
    if (!remark.empty()) parts_.status.show_text(QString::fromStdString(remark));
}

void FormInversion::stop() {
    if (!desk_.busy()) return;
    desk_.control().command_stop_inversion();
    parts_.status.show_text(tr("The run stops after this iteration"));
}

void FormInversion::show_panel(const flow::InversionPanel& panel) {
    panel_.show_panel(panel);
    if (shown_view_ == panel.invert_frame) return;
    shown_view_ = panel.invert_frame;
    parts_.side.show_invert_view(shown_view_);
}

/// The column goes back to its bars by itself when the list of bodies begins or ends.
void FormInversion::follow_view() {
    if (parts_.side.invert_view() || !desk_.panel().invert_frame || desk_.busy()) return;
    shown_view_ = false;
    desk_.control().show_move_view();
}

/// The button of the column was pressed, which then shows the other view.
void FormInversion::show_inversion_view(bool invert) {
    if (guards_.closed()) return;
    if (desk_.panel().invert_frame == invert) desk_.control().show_move_view();
    shown_view_ = invert;
    desk_.show_view(invert);
}

void FormInversion::show_run(bool running) {
    guards_.busy = running;
    // Keys and clicks are let in at the yields of a run; all but a stop are turned away.
    if (auto* prompts = dynamic_cast<QtPrompts*>(&workbench_.session.prompts)) prompts->serve_input(running);
    if (running) {
        evaluations_before_ = workbench_.session.inversion.evaluations;
        show_progress();
        progress_timer_->start();
        QApplication::setOverrideCursor(Qt::WaitCursor);
        busy_->begin();
    } else {
        busy_->end();
        QApplication::restoreOverrideCursor();
        progress_timer_->stop();
        show_panel(desk_.panel());
    }
}

void FormInversion::show_progress() {
    const Session& session = workbench_.session;
    const auto evaluations = session.inversion.evaluations - evaluations_before_;
    const int done = QString::fromStdString(desk_.panel().num_iterations_text).toInt();
    const int limit = desk_.control().iteration_limit();
    panel_.show_progress(done, limit,
                         tr("Iteration %1 of %2, %3 models tried").arg(done + 1).arg(limit).arg(evaluations));
}

void FormInversion::display_body_parameters() {
    parts_.side.display_body_parameters();
}

void FormInversion::display_model() {
    parts_.charts.view().display_model();
}

void FormInversion::display_chart(int index) {
    if (parts_.charts.view().charts().is_shown(index)) parts_.charts.view().display_maginv_model(index);
}

void FormInversion::display_plan_view() {
    parts_.charts.view().display_plan_view();
}

void FormInversion::show_caption() {
    news_.tell(News::file);
}

void FormInversion::keep_model() {
    recovery_.keep_now();
}

void FormInversion::close_window() {
    QTimer::singleShot(0, &parts_.window, &QWidget::close);
}

void FormInversion::follow(WhatChanged what) {
    if (what & News::line) line_changed();
    if (what & (News::parameters | News::bodies | News::settings)) follow_model();
    if (what & News::calculated) show_misfit();
}

void FormInversion::line_changed() {
    desk_.line_changed();
    place_bars();
}

void FormInversion::follow_model() {
    follow_view();
    desk_.follow_model();
    show_panel(desk_.panel());
    place_bars();
}

void FormInversion::show_misfit() {
    if (desk_.busy()) return;
    desk_.control().show_current_misfit(parts_.charts.misfit());
}

void FormInversion::show_bars() {
    place_bars();
}

/// The bars follow the window on the line as the section shows it, also after a zoom by mouse.
void FormInversion::place_bars() {
    const Workspace& workspace = workbench_.session.workspace;
    chart::GrapherWidget& section = parts_.charts.chart_widget(edit::chart_section);
    chart::AX_Grapher& chart = section.chart();
    const chart::Rect plot = chart.PlotRect();
    const chart::Rect view = chart.ViewLimits();
    const bool shown =
        edit::line_loaded(workspace) && plot.width() > 0 && plot.height() > 0 && view.width() > 0;
    if (placing_) return;
    placing_ = true;
    if (shown) {
        const double length = workspace.distances.last();
        const double zoom = view.width() < length ? length / view.width() : 1;
        desk_.place_bars({plot.x_low, plot.width()}, {zoom, view.width(), (view.x_low + view.x_high) / 2});
    }
    constexpr double unit = chart::units_per_screen_pixel;
    strip_->place(QRectF(plot.x_low / unit, section.height() - plot.y_high / unit, plot.width() / unit,
                         plot.height() / unit),
                  desk_.bars(), shown);
    placing_ = false;
}

}  // namespace anomalis::window
