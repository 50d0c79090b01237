#include "model/refresh_model.h"

#include "core/pacer.h"
#include "filter/filters.h"
#include "forward/body_price.h"
#include "forward/driver.h"
#include "intake/profile.h"
#include "model/burial_depth.h"
#include "model/misfit.h"
#include "model/paced_rows.h"
#include "model/stale.h"

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

}  // namespace

MisfitPair refresh_model(Session& session) {
    Workspace& workspace = session.workspace;
    settle_station_window(workspace);
    Faults faults;
    refresh_elevations(workspace, faults);
    if (workspace.station_count <= 0) return {};
    calculate(session, faults);
    const MisfitPair misfit = calculate_misfit(workspace, session.inversion, faults);
    show_faults(faults, session.prompts);
    return misfit;
}

}  // namespace anomalis::model
