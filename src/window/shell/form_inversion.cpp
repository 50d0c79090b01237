#include "window/shell/form_inversion.h"

#include <QMainWindow>
#include <QPushButton>
#include <QSignalBlocker>
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
#include "window/shell/recovery_controller.h"
#include "window/shell/served_run.h"
#include "window/widgets/limit_strip.h"

namespace anomalis::window {

namespace {

constexpr int progress_pause = 100;  // ms

}  // namespace

FormInversion::FormInversion(const InversionParts& parts, edit::Workbench& workbench, Actions& actions,
                             const EntryGate& gate, ModelNews& news, RecoveryController& recovery)
    : QObject(&parts.window),
      parts_(parts),
      workbench_(workbench),
      actions_(actions),
      gate_(gate),
      news_(news),
      recovery_(recovery),
      desk_(workbench, *this),
      panel_(parts.side.invert()),
      strip_(new LimitStripView(parts.charts.chart_widget(edit::chart_section))),
      progress_timer_(new QTimer(this)) {
    wire_actions();
    wire_panel();
    wire_strip();
    busy_ = new BusyInput(
        parts_.window, panel_.stop_button(), actions.action(ActionId::stop_inversion), [this] { stop(); },
        [this](QKeyCombination key) { answer_key(key); });
    progress_timer_->setInterval(progress_pause);
    connect(progress_timer_, &QTimer::timeout, this, &FormInversion::show_progress);
    connect(&parts_.tabs, &QTabWidget::currentChanged, this,
            [this] { desk_.combo_invert(desk_.panel().channel_index); });
    panel_changed();
}

FormInversion::~FormInversion() = default;

void FormInversion::wire_strip() {
    connect(strip_, &LimitStripView::chart_painted, this, &FormInversion::place_bars);
    for (int i = 0; i < 2; ++i) {
        LimitBar& bar = strip_->bar(i);
        constexpr double scale = LimitStripView::twips_a_pixel;
        connect(&bar, &LimitBar::pressed, this, [this, i](double x) {
            if (gate_.pass()) desk_.press_bar(i, x * scale);
        });
        connect(&bar, &LimitBar::moved, this, [this, i](double x) { desk_.move_bar(i, x * scale); });
        connect(&bar, &LimitBar::released, this, [this, i] { desk_.release_bar(i); });
    }
}

void FormInversion::wire_actions() {
    actions_.on(ActionId::invert_current, [this] { invert(0); });
    actions_.on(ActionId::invert_all, [this] { invert(1); });
    actions_.on(ActionId::stop_inversion, [this] { stop(); });
    actions_.on(ActionId::restore_best, [this] { desk_.command_restore_best(); });
    actions_.on(ActionId::reject_changes, [this] { desk_.command_reject_changes(); });
    actions_.only_if(ActionId::reject_changes, [this] { return desk_.panel().reject_changes_enabled; });
}

void FormInversion::wire_panel() {
    connect(&parts_.side, &ModelSide::other_view_wanted, this,
            [this] { desk_.command_toggle_invert_body(); });
    connect(&panel_, &InvertPanel::invert_wanted, this, [this](int index) {
        if (gate_.pass()) invert(index);
    });
    connect(&panel_, &InvertPanel::stop_wanted, this, &FormInversion::stop);
    connect(&panel_, &InvertPanel::restore_wanted, this, [this] {
        if (gate_.pass()) desk_.command_restore_best();
    });
    connect(&panel_, &InvertPanel::reject_wanted, this, [this] {
        if (gate_.pass()) desk_.command_reject_changes();
    });
    connect(&panel_, &InvertPanel::channel_chosen, this, [this](int index) { desk_.combo_invert(index); });
    connect(&panel_, &InvertPanel::method_chosen, this, [this](int index) {
        desk_.choose_method(index == 1 ? inversion::InversionMethod::least_squares
                                       : inversion::InversionMethod::sweep);
        parts_.side.display_body_parameters();  // other limits hold
    });
    connect(&panel_, &InvertPanel::gradient_chosen, this,
            [this](bool on) { desk_.check_inversion_mode(on ? target_gradient : target_data); });
    connect(&panel_, &InvertPanel::starts_typed, this,
            [this](const QString& text) { desk_.type_starts(text.toStdString()); });
    connect(&panel_, &InvertPanel::iterations_typed, this,
            [this](const QString& text) { desk_.type_max_iterations(text.toStdString()); });
}

void FormInversion::invert(int index) {
    desk_.command_invert(index);
}

void FormInversion::stop() {
    if (!desk_.running()) return;
    desk_.command_stop_inversion();
    parts_.status.show_text(tr("The run stops after this iteration; Esc again stops it at once"));
}

void FormInversion::panel_changed() {
    panel_.show_panel(desk_.panel());
    const bool invert = desk_.panel().invert_frame;
    if (parts_.side.invert_view() != invert) parts_.side.show_invert_view(invert);
}

void FormInversion::run_changed() {
    const bool running = desk_.running();
    if (running) {
        recovery_.keep_now();
        evaluations_before_ = workbench_.session.inversion.evaluations;
        show_progress();
        progress_timer_->start();
    } else {
        progress_timer_->stop();
    }
    serve_run(running, workbench_.session.prompts, *busy_);
    parts_.charts.view().hand().show();
    // What was switched off is on again: the states of the panel's own controls follow.
    panel_changed();
}

/// A save would write values that are only being tried.
void FormInversion::answer_key(QKeyCombination key) {
    if (key == action_row(ActionId::save).key || key == action_row(ActionId::save_as).key)
        parts_.status.show_text(tr("Not saved: a run goes on. Stop it with Esc, then save"));
}

QString FormInversion::progress_words(int done, int limit) const {
    const auto evaluations = workbench_.session.inversion.evaluations - evaluations_before_;
    switch (desk_.panel().stage) {
        case inversion::RunStage::fit:
            break;
        case inversion::RunStage::starts:
            return tr("From %1 other starts").arg(desk_.panel().starts() - 1);
        case inversion::RunStage::weights:
            return tr("Weights of the channels");
        case inversion::RunStage::errors:
            return tr("Errors and intervals");
    }
    return tr("Iteration %1 of %2, %3 models tried").arg(done + 1).arg(limit).arg(evaluations);
}

/// What follows the iterations has no measure of its own: the bar is full.
void FormInversion::show_progress() {
    const int done = QString::fromStdString(desk_.panel().num_iterations_text).toInt();
    const int limit = desk_.panel().iteration_limit();
    const bool fitting = desk_.panel().stage == inversion::RunStage::fit;
    panel_.show_progress(fitting ? done : limit, limit, progress_words(done, limit));
}

void FormInversion::model_changed() {
    news_.tell(News::bodies | News::file);
}

void FormInversion::draw_chart(int index) {
    flow::ModelView& view = parts_.charts.view();
    if (index == edit::model_chart_count) {
        view.display_plan_view();
    } else if (view.charts().is_shown(index)) {
        view.display_maginv_model(index);
    }
}

void FormInversion::close_wanted() {
    QTimer::singleShot(0, &parts_.window, &QWidget::close);
}

void FormInversion::follow(WhatChanged what) {
    if (what & (News::line | News::form_reset)) desk_.line_changed();
    if (what & News::settings) desk_.forget_noise();
    if (what & (News::parameters | News::bodies | News::settings)) {
        desk_.follow_model();
        panel_changed();
        place_bars();
    }
    if ((what & News::calculated) && !desk_.running()) {
        desk_.show_current_misfit(parts_.charts.misfit());
        parts_.status.explain_misfit({desk_.panel().quality[0].full, desk_.panel().quality[1].full});
    }
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
    // A failure is told, and the window paints below it.
    const QSignalBlocker no_paint(strip_);
    if (shown) {
        const double length = workspace.distances.last();
        const double zoom = view.width() < length ? length / view.width() : 1;
        desk_.bars().update_inversion_limit_display({plot.x_low, plot.width()},
                                                    {zoom, view.width(), (view.x_low + view.x_high) / 2});
    }
    constexpr double unit = chart::units_per_screen_pixel;
    strip_->place(QRectF(plot.x_low / unit, section.height() - plot.y_high / unit, plot.width() / unit,
                         plot.height() / unit),
                  desk_.bars(), shown);
}

}  // namespace anomalis::window
