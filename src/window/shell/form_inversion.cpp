#include "window/shell/form_inversion.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>

#include "chart/ax_grapher.h"
#include "chart/surface_mapping.h"
#include "window/panels/charts_panel.h"
#include "window/panels/invert_panel.h"
#include "window/panels/model_side.h"
#include "window/panels/status_panels.h"
#include "window/shell/busy_input.h"
#include "window/shell/form_anomalis.h"
#include "window/shell/form_menus.h"
#include "window/shell/form_recovery.h"
#include "window/shell/qt_prompts.h"
#include "window/widgets/entry_box.h"
#include "window/widgets/limit_strip.h"

namespace anomalis::window {

namespace {

constexpr int progress_pause = 100;  // ms

}  // namespace

FormInversion::FormInversion(Form_anomalis& form, FormRecovery& recovery)
    : QObject(&form),
      form_(form),
      recovery_(recovery),
      desk_(form.workbench(), *this),
      panel_(form.side().invert()),
      strip_(new LimitStripView(form.charts().chart_widget(edit::chart_section))),
      progress_timer_(new QTimer(this)) {
    add_entries();
    wire_panel();
    busy_ = new BusyInput(form_, panel_.stop_button(), *stop_action_, [this] { stop(); });
    progress_timer_->setInterval(progress_pause);
    connect(progress_timer_, &QTimer::timeout, this, &FormInversion::show_progress);
    connect(strip_, &LimitStripView::chart_painted, this, &FormInversion::place_bars);
    for (int i = 0; i < 2; ++i) {
        LimitBar& bar = strip_->bar(i);
        constexpr double scale = LimitStripView::twips_a_pixel;
        connect(&bar, &LimitBar::pressed, this, [this, i](double x) { desk_.press_bar(i, x * scale); });
        connect(&bar, &LimitBar::moved, this, [this, i](double x) { desk_.move_bar(i, x * scale); });
        connect(&bar, &LimitBar::released, this, [this, i] { desk_.release_bar(i); });
    }
    connect(&form_.charts(), &ChartsPanel::misfit_found, this, &FormInversion::show_misfit);
    connect(&form_.side(), &ModelSide::invert_view_toggled, this, &FormInversion::show_inversion_view);
    if (auto* tabs = form_.findChild<QTabWidget*>("Tab_model"))
        connect(tabs, &QTabWidget::currentChanged, this, [this] { desk_.check_channel(); });
    show_panel(desk_.panel());
}

FormInversion::~FormInversion() = default;

void FormInversion::add_entries() {
    FormMenus& menus = form_.menus();
    QMenu& model = menus.model_menu();
    model.addSeparator();
    const auto add = [&](const char* name, const QString& text, const QString& tip, auto&& handler) {
        QAction* action = menus.add_action(model, name, text, tip);
        connect(action, &QAction::triggered, this, handler);
        return action;
    };
    add("menu_invert_0", tr("Invert &Current Body"), tr("Fit the free parameters of the current body"),
        [this] { invert(0); });
    add("menu_invert_1", tr("&Invert Entire Model"), tr("Fit the free parameters of all bodies"), [this] {
        invert(1);
    })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_I));
    stop_action_ = add("menu_stop_inversion", tr("&Stop Inversion"),
                       tr("End the run after the iteration that it is in"), [this] { stop(); });
    stop_action_->setShortcut(QKeySequence(Qt::Key_Escape));
    add("menu_restore_best", tr("Restore &Best Model"), tr("Go back to the best model of the runs so far"),
        [this] { desk_.restore_best(); });
    add("menu_reject_changes", tr("Re&ject Changes"),
        tr("Put back the values that the last run started with"), [this] { desk_.reject_changes(); });
}

void FormInversion::wire_panel() {
    flow::RunControl& control = desk_.control();
    connect(&panel_, &InvertPanel::invert_wanted, this, &FormInversion::invert);
    connect(&panel_, &InvertPanel::stop_wanted, this, &FormInversion::stop);
    connect(&panel_, &InvertPanel::restore_wanted, this, [this] { desk_.restore_best(); });
    connect(&panel_, &InvertPanel::reject_wanted, this, [this] { desk_.reject_changes(); });
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
    if (form_.guards().closed()) return;
    form_.commit_entries();
    commit_boxes(panel_);
    follow_view();
    desk_.invert(index);
    const std::string remark = desk_.fit_remark();
    if (!remark.empty()) form_.status().show_text(QString::fromStdString(remark));
}

void FormInversion::stop() {
    if (!desk_.busy()) return;
    desk_.control().command_stop_inversion();
    form_.status().show_text(tr("The run stops after this iteration"));
}

void FormInversion::show_panel(const flow::InversionPanel& panel) {
    panel_.show_panel(panel);
    if (shown_view_ == panel.invert_frame) return;
    shown_view_ = panel.invert_frame;
    form_.side().show_invert_view(shown_view_);
}

/// The column goes back to its bars by itself when the list of bodies begins or ends.
void FormInversion::follow_view() {
    if (form_.side().invert_view() || !desk_.panel().invert_frame || desk_.busy()) return;
    shown_view_ = false;
    desk_.control().show_move_view();
}

/// The button of the column was pressed, which then shows the other view.
void FormInversion::show_inversion_view(bool invert) {
    if (form_.guards().closed()) return;
    if (desk_.panel().invert_frame == invert) desk_.control().show_move_view();
    shown_view_ = invert;
    desk_.show_view(invert);
}

void FormInversion::show_run(bool running) {
    form_.guards().busy = running;
    // Keys and clicks are let in at the yields of a run; all but a stop are turned away.
    if (auto* prompts = dynamic_cast<QtPrompts*>(&form_.workbench().session.prompts))
        prompts->serve_input(running);
    if (running) {
        evaluations_before_ = form_.workbench().session.inversion.evaluations;
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
    const Session& session = form_.workbench().session;
    const auto evaluations = session.inversion.evaluations - evaluations_before_;
    const int done = QString::fromStdString(desk_.panel().num_iterations_text).toInt();
    const int limit = desk_.control().iteration_limit();
    panel_.show_progress(done, limit,
                         tr("Iteration %1 of %2, %3 models tried").arg(done + 1).arg(limit).arg(evaluations));
}

void FormInversion::display_body_parameters() {
    form_.side().display_body_parameters();
}

void FormInversion::display_model() {
    form_.charts().view().display_model();
}

void FormInversion::display_chart(int index) {
    if (form_.charts().view().charts().is_shown(index)) form_.charts().view().display_maginv_model(index);
}

void FormInversion::display_plan_view() {
    form_.charts().view().display_plan_view();
}

void FormInversion::show_caption() {
    form_.show_caption();
}

void FormInversion::keep_model() {
    recovery_.keep_now();
}

void FormInversion::close_window() {
    QTimer::singleShot(0, &form_, &QWidget::close);
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

void FormInversion::show_misfit(double data, double gradient) {
    if (desk_.busy()) return;
    desk_.control().show_current_misfit({static_cast<float>(data), static_cast<float>(gradient)});
}

void FormInversion::show_bars() {
    place_bars();
}

/// The bars follow the window on the line as the section shows it, also after a zoom by mouse.
void FormInversion::place_bars() {
    const Workspace& workspace = form_.workbench().session.workspace;
    chart::GrapherWidget& section = form_.charts().chart_widget(edit::chart_section);
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
