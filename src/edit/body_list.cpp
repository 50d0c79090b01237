#include "edit/body_list.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/numbers.h"
#include "edit/body_form.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "forward/shape/reference_point.h"

namespace anomalis::edit {

namespace {

constexpr double least_shift = 1.0;

auto first_body(Workspace& workspace) {
    return workspace.bodies.begin() + 1;
}

/// Orders by distance; the current body stays the current one.
void order_by_distance(Workbench& workbench, bool ascending) {
    Workspace& workspace = workbench.session.workspace;
    // The mark travels with its body.
    std::vector<std::pair<int, ModelBody>> bodies;
    bodies.reserve(static_cast<std::size_t>(workspace.body_count));
    for (int i = 1; i <= workspace.body_count; ++i) bodies.emplace_back(i, std::move(workspace.body(i)));
    std::stable_sort(bodies.begin(), bodies.end(), [&](const auto& a, const auto& b) {
        const float left = a.second.distance.value, right = b.second.distance.value;
        return ascending ? left < right : left > right;
    });
    int current = workbench.view.current_body;
    for (int i = 1; i <= workspace.body_count; ++i) {
        auto& [old_number, body] = bodies[static_cast<std::size_t>(i - 1)];
        if (old_number == workbench.view.current_body) current = i;
        workspace.body(i) = std::move(body);
        workspace.body(i).name = "Body " + format_number(i, "0");
    }
    workbench.view.current_body = current;
}

void move_current(Workbench& workbench, bool to_start) {
    Workspace& workspace = workbench.session.workspace;
    const auto first = first_body(workspace);
    const auto at = first + workbench.view.current_body - 1;
    if (to_start) {
        std::rotate(first, at, at + 1);
    } else {
        std::rotate(at, at + 1, first + workspace.body_count);
    }
    workbench.view.current_body = to_start ? 1 : workspace.body_count;
}

/// 0 when the person gave up or the bodies would leave the numbers that a file can hold.
double asked_shift(Workbench& workbench) {
    const auto text = workbench.session.prompts.input_box(
        "Lateral shift", "Enter the distance along the profile that you would like to use", "0");
    double shift = 0;
    if (!text || !parse_number(*text, shift)) return 0;
    const Workspace& workspace = workbench.session.workspace;
    for (int i = 1; i <= workspace.body_count; ++i) {
        const double moved = static_cast<double>(workspace.body(i).distance.value) + shift;
        if (!(std::abs(moved) <= static_cast<double>(std::numeric_limits<float>::max()))) return 0;
    }
    return shift;
}

}  // namespace

void delete_all_bodies(Workbench& workbench) {
    Session& session = workbench.session;
    if (session.workspace.body_count <= 0) return;
    session.workspace.body_count = 0;
    workbench.view.current_body = 1;
    note_change(workbench, {"delete all bodies", "", true});
}

bool delete_current_body(Workbench& workbench) {
    if (!current_body(workbench)) return false;
    Workspace& workspace = workbench.session.workspace;
    if (workspace.body_count == 1) {
        delete_all_bodies(workbench);
        return true;
    }
    const auto first = first_body(workspace);
    const auto at = first + workbench.view.current_body - 1;
    std::rotate(at, at + 1, first + workspace.body_count);
    --workspace.body_count;
    workbench.view.current_body = std::min(workbench.view.current_body, workspace.body_count);
    note_change(workbench, {"delete body", "", true});
    return true;
}

bool sort_bodies(Workbench& workbench, BodyOrder order) {
    Session& session = workbench.session;
    if (session.workspace.body_count < 1) return false;
    if (order == BodyOrder::ascending || order == BodyOrder::descending) {
        order_by_distance(workbench, order == BodyOrder::ascending);
        note_change(workbench, {"sort bodies", "", true});
        session.prompts.remark("The bodies have been sorted");
        return true;
    }
    if (!current_body(workbench)) return false;
    move_current(workbench, order == BodyOrder::current_first);
    note_change(workbench, {"move body", "", true});
    session.prompts.remark("The body has been moved");
    return true;
}

bool shift_bodies(Workbench& workbench) {
    Session& session = workbench.session;
    Workspace& workspace = session.workspace;
    const double shift = asked_shift(workbench);
    if (std::abs(shift) < least_shift || workspace.body_count < 1) return false;
    for (int i = 1; i <= workspace.body_count; ++i) {
        ModelBody& body = workspace.body(i);
        body.distance.value = static_cast<float>(static_cast<double>(body.distance.value) + shift);
        forward::update_body_reference_point(workspace, static_cast<double>(body.distance.value), body.east,
                                             body.north);
    }
    note_change(workbench, {"shift bodies", "", false});
    return true;
}

}  // namespace anomalis::edit
