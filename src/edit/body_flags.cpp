#include "edit/body_flags.h"

#include "edit/change.h"
#include "edit/workbench.h"

namespace anomalis::edit {

namespace {

struct FlagPlan {
    std::int32_t ModelBody::*field;
    std::int32_t on;
    const char* name;
};

FlagPlan plan_of(BodyFlag flag) {
    switch (flag) {
        case BodyFlag::demagnetisation:
            return {&ModelBody::include_demagnetisation, 1, "demagnetisation flags"};
        case BodyFlag::use:
            return {&ModelBody::turned_off, 0, "use body flags"};
        default:
            // "On" frees the bodies: test `BodyFlags, on_of_the_fix_flags_frees_the_bodies`.
            return {&ModelBody::vary, 1, "fix body flags"};
    }
}

bool end_flags(Workbench& workbench, const char* name) {
    note_change(workbench, {name, "", false});
    return true;
}

}  // namespace

bool set_body_flags(Workbench& workbench, BodyFlag flag, FlagSetting setting) {
    Workspace& workspace = workbench.session.workspace;
    if (workspace.body_count < 1) return false;
    const FlagPlan plan = plan_of(flag);
    for (int i = 1; i <= workspace.body_count; ++i) {
        std::int32_t& value = workspace.body(i).*plan.field;
        value = setting == FlagSetting::on ? plan.on : setting == FlagSetting::off ? 1 - plan.on : 1 - value;
    }
    return end_flags(workbench, plan.name);
}

bool fix_outside_limits(Workbench& workbench) {
    Workspace& workspace = workbench.session.workspace;
    if (workspace.body_count < 1 || workspace.station_count <= 0) return false;
    const bool narrowed = workspace.first_station < workspace.last_station;
    const double first = narrowed ? workspace.first_distance : workspace.distances[1];
    const double last = narrowed ? workspace.last_distance : workspace.distances.last();
    for (int i = 1; i <= workspace.body_count; ++i) {
        ModelBody& body = workspace.body(i);
        const auto distance = static_cast<double>(body.distance.value);
        if (distance < first || distance > last) body.vary = 0;
    }
    return end_flags(workbench, "fix body flags");
}

}  // namespace anomalis::edit
