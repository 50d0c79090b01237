#include "window/shell/view_controller.h"

#include <QAction>
#include <QMenu>

#include "edit/workbench.h"
#include "show/pointer_panels.h"
#include "window/panels/charts_panel.h"
#include "window/shell/actions.h"
#include "window/shell/bodies_controller.h"
#include "window/shell/form_guards.h"

namespace anomalis::window {

namespace {

const char* const regional_key = "DisplayRegional";

}  // namespace

ViewController::ViewController(QObject* parent, edit::Workbench& workbench, Actions& actions,
                               const FormGuards& guards, ModelNews& news, ChartsPanel& charts,
                               BodiesController& bodies)
    : QObject(parent),
      workbench_(workbench),
      actions_(actions),
      guards_(guards),
      news_(news),
      charts_(charts) {
    workbench.view.show_regional = workbench.session.settings.get(settings_section, regional_key) != "0";
    actions.on(ActionId::display_axes, [this] { toggle_axes(); });
    actions.on(ActionId::display_regional, [this] { toggle_regional(); });
    actions.on(ActionId::highlight, [this] { toggle_highlight(); });
    for (const ActionId id : {ActionId::show_plan, ActionId::section_to_plan})
        actions.on(id, [this] { charts_.show_plan(true); });
    for (const ActionId id : {ActionId::show_section, ActionId::plan_to_section})
        actions.on(id, [this] { charts_.show_plan(false); });
    actions.on(ActionId::next_body, [this] { step_body(1); });
    actions.on(ActionId::previous_body, [this] { step_body(-1); });
    actions.on(ActionId::force_recalc, [this] { charts_.view().force_recalc(); });
    actions.on(ActionId::add_body_here, [this, &bodies] {
        if (menu_place_) bodies.add_body_here(menu_place_->x, menu_place_->y);
    });
    actions.on(ActionId::delete_shown, [this, &bodies] {
        if (!curves_have_focus()) bodies.delete_current();
    });
    connect(&charts_, &ChartsPanel::delete_wanted, this,
            [this] { actions_.action(ActionId::delete_current).trigger(); });
    add_chart_entries();
}

void ViewController::add_chart_entries() {
    chart::GrapherWidget& section = charts_.chart_widget(edit::chart_section);
    section.set_menu_opening([this](float x, float y) { section_menu_opens(x, y); });
    put_first(*section.menu(),
              {&actions_.action(ActionId::add_body_here), &actions_.action(ActionId::section_to_plan)});
    put_first(*charts_.plan_widget().menu(), {&actions_.action(ActionId::plan_to_section)});
    actions_.action(ActionId::add_body_here).setEnabled(false);
}

void ViewController::section_menu_opens(float x, float y) {
    menu_place_ = show::place_under(charts_.chart_widget(edit::chart_section).chart(), x, y);
    actions_.action(ActionId::add_body_here).setEnabled(menu_place_ && !guards_.closed());
}

/// There is no body to be seen in the charts of the curves.
bool ViewController::curves_have_focus() const {
    for (int i = 0; i < edit::profile_chart_count; ++i)
        if (charts_.chart_widget(i).hasFocus()) return true;
    return false;
}

void ViewController::step_body(int by) {
    charts_.view().select_body(workbench_.view.current_body + by);
}

void ViewController::toggle_axes() {
    workbench_.view.show_axes = !workbench_.view.show_axes;
    news_.tell(News::view);
    charts_.view().display_model();
}

void ViewController::toggle_regional() {
    workbench_.view.show_regional = !workbench_.view.show_regional;
    workbench_.session.settings.set(settings_section, regional_key,
                                    workbench_.view.show_regional ? "1" : "0");
    news_.tell(News::view);
    charts_.view().redraw();
}

void ViewController::toggle_highlight() {
    workbench_.view.highlight_on = !workbench_.view.highlight_on;
    news_.tell(News::view);
    charts_.view().redraw_bodies();
}

}  // namespace anomalis::window
