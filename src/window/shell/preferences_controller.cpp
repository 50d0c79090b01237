#include "window/shell/preferences_controller.h"

#include <utility>

#include "chart/qt/dark_ground.h"
#include "core/threads.h"
#include "edit/workbench.h"
#include "flow/new_line_choice.h"
#include "window/shell/actions.h"
#include "window/shell/form_preferences.h"
#include "window/shell/model_news.h"
#include "window/shell/recovery_controller.h"

namespace anomalis::window {

PreferencesController::PreferencesController(QWidget& window, edit::Workbench& workbench, Actions& actions,
                                             ModelNews& news, RecoveryController& recovery)
    : QObject(&window), window_(window), workbench_(workbench), news_(news), recovery_(recovery) {
    actions.on(ActionId::preferences, [this] { ask(); });
    actions.on(ActionId::display_legend, [this] { toggle_legend(); });
}

void PreferencesController::begin() {
    make_work(workbench_.session.preferences);
}

void PreferencesController::make_work(const Preferences& preferences) {
    chart::follow_dark_desktop(preferences.dark_charts);
    limit_threads(preferences.threads);
    recovery_.set_pause(preferences.autosave_seconds);
}

/// A box that shows a susceptibility shows another number after a change of its unit.
void PreferencesController::apply(const Preferences& preferences) {
    const Preferences before = std::exchange(workbench_.session.preferences, preferences);
    if (preferences == before) return;
    make_work(preferences);
    WhatChanged what = News::preferences | News::view;
    if (preferences.susceptibility_unit != before.susceptibility_unit)
        what |= News::parameters | News::boxes | News::step_taken;
    news_.tell(what);
}

void PreferencesController::keep() {
    keep_preferences(workbench_.session.preferences, workbench_.session.settings);
}

void PreferencesController::toggle_legend() {
    Preferences preferences = workbench_.session.preferences;
    preferences.legend = !preferences.legend;
    apply(preferences);
    keep();
}

void PreferencesController::ask(const std::function<void(Form_preferences&)>& shown) {
    Session& session = workbench_.session;
    const Preferences before = session.preferences;
    const Formulas new_line = flow::formulas_of_new_line(session.settings);
    Form_preferences form(before, new_line, &window_);
    connect(&form, &Form_preferences::edited, this, [&] { apply(form.preferences()); });
    if (shown) shown(form);
    if (form.exec() != QDialog::Accepted) return apply(before);
    keep();
    if (form.new_line() == new_line) return;
    flow::choose_formulas_of_new_line(form.new_line(), session.settings);
    // What stands here without a line and a file is what the next line begins with.
    if (edit::line_loaded(session.workspace) || !session.workspace.model_file.empty()) return;
    session.workspace.formulas = form.new_line();
    news_.tell(News::settings);
}

}  // namespace anomalis::window
