#include "window/shell/bodies_controller.h"

#include <array>
#include <utility>

#include "edit/body_form.h"
#include "edit/body_list.h"
#include "edit/pipe_tie.h"
#include "edit/workbench.h"
#include "window/panels/status_panels.h"
#include "window/shell/actions.h"
#include "window/shell/new_line.h"
#include "window/shell/page_controller.h"
#include "window/widgets/plain_text.h"

namespace anomalis::window {

namespace {

bool delete_all(edit::Workbench& workbench) {
    const bool some = workbench.session.workspace.body_count > 0;
    edit::delete_all_bodies(workbench);
    return some;
}

bool toggle_tie(edit::Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    const bool before = edit::pipes_are_tied(workspace);
    edit::toggle_pipe_tie(workbench);
    return edit::pipes_are_tied(workspace) != before;
}

}  // namespace

BodiesController::BodiesController(QObject* parent, edit::Workbench& workbench, Actions& actions,
                                   ModelNews& news, PageController& pages, StatusPanels& status)
    : QObject(parent), workbench_(workbench), news_(news), pages_(pages), status_(status) {
    wire_list(actions);
    wire_marks(actions);
    actions.on(ActionId::save_defaults, [this] { save_defaults(); });
}

void BodiesController::on(Actions& actions, ActionId id, Command command) {
    actions.on(id, [this, command = std::move(command)] { run(command); });
}

void BodiesController::wire_list(Actions& actions) {
    static constexpr std::array adds{std::pair{ActionId::add_body, edit::AddMode::add},
                                     std::pair{ActionId::copy_body, edit::AddMode::copy},
                                     std::pair{ActionId::split_body, edit::AddMode::split}};
    for (const auto& [id, mode] : adds)
        actions.on(id, [this, how = mode] {
            add([how](edit::Workbench& w) { return edit::add_body_from_menu(w, how); });
        });
    on(actions, ActionId::delete_all, delete_all);
    actions.on(ActionId::delete_current, [this] { delete_current(); });
    static constexpr std::array orders{std::pair{ActionId::sort_ascending, edit::BodyOrder::ascending},
                                       std::pair{ActionId::sort_descending, edit::BodyOrder::descending},
                                       std::pair{ActionId::send_to_start, edit::BodyOrder::current_first},
                                       std::pair{ActionId::send_to_end, edit::BodyOrder::current_last}};
    for (const auto& [id, order] : orders)
        on(actions, id, [by = order](edit::Workbench& w) { return edit::sort_bodies(w, by); });
    on(actions, ActionId::shift_bodies, edit::shift_bodies);
}

void BodiesController::wire_marks(Actions& actions) {
    static constexpr std::array colours{
        std::pair{ActionId::colour_by_susceptibility, edit::ColourProperty::susceptibility},
        std::pair{ActionId::colour_by_remanence, edit::ColourProperty::remanence},
        std::pair{ActionId::colour_by_density, edit::ColourProperty::density}};
    for (const auto& [id, property] : colours)
        on(actions, id, [by = property](edit::Workbench& w) { return edit::colour_bodies(w, by); });
    struct FlagEntry {
        ActionId id;
        edit::BodyFlag flag;
        edit::FlagSetting setting;
    };
    using edit::BodyFlag;
    using edit::FlagSetting;
    static constexpr std::array flags{
        FlagEntry{ActionId::fix_on, BodyFlag::fix, FlagSetting::on},
        FlagEntry{ActionId::fix_off, BodyFlag::fix, FlagSetting::off},
        FlagEntry{ActionId::fix_flip, BodyFlag::fix, FlagSetting::flip},
        FlagEntry{ActionId::fix_all, BodyFlag::fix, FlagSetting::off},
        FlagEntry{ActionId::free_all, BodyFlag::fix, FlagSetting::on},
        FlagEntry{ActionId::demag_on, BodyFlag::demagnetisation, FlagSetting::on},
        FlagEntry{ActionId::demag_off, BodyFlag::demagnetisation, FlagSetting::off},
        FlagEntry{ActionId::demag_flip, BodyFlag::demagnetisation, FlagSetting::flip},
        FlagEntry{ActionId::use_on, BodyFlag::use, FlagSetting::on},
        FlagEntry{ActionId::use_off, BodyFlag::use, FlagSetting::off},
        FlagEntry{ActionId::use_flip, BodyFlag::use, FlagSetting::flip}};
    for (const FlagEntry& entry : flags)
        on(actions, entry.id,
           [&entry](edit::Workbench& w) { return edit::set_body_flags(w, entry.flag, entry.setting); });
    on(actions, ActionId::fix_outside_limits, edit::fix_outside_limits);
    on(actions, ActionId::tie_pipes, toggle_tie);
}

void BodiesController::run(const Command& command) {
    if (!command(workbench_)) return;
    if (workbench_.session.workspace.body_count == 0) {
        begin_anew(workbench_, news_, News::bodies);
    } else {
        news_.tell(News::bodies);
    }
}

void BodiesController::delete_current() {
    const ModelBody* body = edit::current_body(std::as_const(workbench_));
    if (!body) return;
    const QString name = shown(body->name);
    run(edit::delete_current_body);
    status_.show_text(tr("%1 is deleted; Ctrl+Z brings it back").arg(name.isEmpty() ? tr("The body") : name));
}

void BodiesController::add(const Command& command) {
    if (!command(workbench_)) return;
    const bool first = workbench_.session.workspace.body_count == 1;
    pages_.show_model();
    if (first) {
        begin_anew(workbench_, news_, News::bodies);
    } else {
        news_.tell(News::bodies);
    }
}

void BodiesController::add_body_here(double distance, double elevation) {
    add([=](edit::Workbench& w) { return edit::add_body_at(w, distance, elevation); });
}

void BodiesController::save_defaults() {
    const int current = workbench_.view.current_body;
    workbench_.session.save_body_defaults(current);
    status_.show_text(tr("New bodies start like body %1").arg(current));
}

}  // namespace anomalis::window
