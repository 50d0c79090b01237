#include "model/refresh_model.h"

#include "core/pacer.h"
#include "filter/filters.h"
#include "forward/body_price.h"
#include "forward/driver.h"
#include "intake/profile.h"
#include "model/burial_depth.h"
#include "model/misfit.h"
#include "model/paced_rows.h"
#include "model/regional.h"
#include "model/stale.h"
#include "model/unnamed_types.h"
#include "model/usable_field.h"

namespace anomalis::model {

void finish_load(Session& session) {
    session.inversion.inversion_channel = session.workspace.has_mag() ? channel_mag : channel_grav;
    set_misfit_scale(session.inversion);
    forget_best_model(session.inversion);
}

void refresh_elevations(Workspace& workspace, Faults& faults) {
    find_stale(workspace);
    if (workspace.station_count > 0) intake::setup_sensor_elevations(workspace, faults);
}

namespace {

/// Responses, and the rows of both stages.
void bring_up_to_date(Workspace& workspace, Faults& faults, Pacer& pacer) {
    with_rows_kept(workspace, pacer, [&](Pacer& filters) {
        forward::calculate_model(workspace, workspace.mag.data, workspace.grav.data, faults, pacer);
        set_burial_depths(workspace);
        // The observed stage first: a floating base lays the calculated curve on it.
        for (const int stage : {stage_observed, stage_calculated}) {
            if (workspace.has_mag())
                filter::filter_data(workspace, channel_mag, stage, workspace.mag.data, faults, filters);
            if (workspace.has_grav())
                filter::filter_data(workspace, channel_grav, stage, workspace.grav.data, faults, filters);
        }
        lay_regionals(workspace, workspace.mag.data, workspace.grav.data);
    });
}

void calculate(Session& session, Faults& faults) {
    Workspace& workspace = session.workspace;
    WatchedCalculation watched(session.prompts,
                               forward::work_ahead(workspace) + filter_work_ahead(workspace));
    try {
        bring_up_to_date(workspace, faults, watched);
    } catch (const Stopped&) {
        throw CalculationStopped();
    }
}

/// False without stations.
bool derive(Session& session, Faults& faults) {
    settle_station_window(session.workspace);
    refresh_elevations(session.workspace, faults);
    if (session.workspace.station_count <= 0) return false;
    calculate(session, faults);
    return true;
}

}  // namespace

MisfitPair refresh_model(Session& session) {
    Faults faults;
    if (!derive(session, faults)) return {};
    const MisfitPair misfit = calculate_misfit(session.workspace, session.inversion, faults);
    show_faults(faults, session.prompts);
    return misfit;
}

void refresh_numbers(Workspace& workspace, Faults& faults, Pacer& pacer) {
    settle_station_window(workspace);
    refresh_elevations(workspace, faults);
    if (workspace.station_count > 0) bring_up_to_date(workspace, faults, pacer);
}

std::vector<std::string> calculation_failures(const Session& session) {
    Session anew(session.prompts, Settings{});
    anew.workspace = session.workspace;
    anew.workspace.known_settings.reset();
    for (ModelBody& body : anew.workspace.bodies) body.told_edges = {};
    Faults faults;
    note_unnamed_types(anew.workspace, faults);
    derive(anew, faults);
    note_unusable_field(anew.workspace, faults);
    std::vector<std::string> texts;
    for (const Faults::Entry& entry : faults.entries())
        if (entry.severity != Severity::remark) texts.push_back(counted_text(entry));
    return texts;
}

}  // namespace anomalis::model
