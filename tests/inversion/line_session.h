#pragma once

#include <cmath>
#include <string>

#include "core/body_defaults.h"
#include "core/body_parameters.h"
#include "core/session.h"
#include "forward/driver.h"
#include "intake/profile.h"
#include "inversion/fitted_model.h"
#include "model/refresh_model.h"
#include "support/scripted_prompts.h"

namespace anomalis::inversion {

/// A session with a straight line, both channels, a sensor 10 m above flat ground.
class LineSession {
  public:
    explicit LineSession(int stations = 101, double spacing = 10, StationColumn along = column_east)
        : session(prompts, Settings{}) {
        initialise_workspace(session.workspace, prompts);
        Workspace& w = session.workspace;
        w.definition.mag_column = 5;
        w.definition.grav_column = 6;
        w.mag.base = 0;
        w.station_count = stations;
        w.stations.assign(stations);
        w.mag.data.assign(stations);
        w.grav.data.assign(stations);
        for (int i = 1; i <= stations; ++i) w.stations(i, along) = (i - 1) * spacing;
        intake::setup_profile_coordinates(w, prompts);
        intake::setup_graphics_arrays(w, prompts);
        Faults told;
        intake::setup_sensor_elevations(w, told);
        show_faults(told, prompts);
        model::finish_load(session);
    }

    Workspace& workspace() { return session.workspace; }
    /// What a run works on; what goes wrong is kept in `faults`.
    FittedModel fitted() { return {session.workspace, session.inversion, faults}; }

    /// A body across the line, nothing of it free.
    ModelBody& add_body(int type, float distance = 500, float top = -50) {
        Workspace& w = session.workspace;
        reserve_next_body(w);
        const int number = ++w.body_count;
        ModelBody& body = w.body(number);
        body = ModelBody{};
        body.type = type;
        initialise_body(w, number, session.settings, prompts);
        body.distance.value = distance;
        body.top.value = top;
        body.response.assign(w.station_count);
        for (const BodyParameter& row : body_parameters()) (body.*row.slot).vary = 0;
        return body;
    }

    /// The model as it stands becomes the data, without noise.
    void take_model_as_data() {
        Workspace& w = session.workspace;
        reset_calculated_data(w, prompts);
        Faults told;
        forward::calculate_model(w, w.mag.data, w.grav.data, told);
        show_faults(told, prompts);
        for (ChannelTable* data : {&w.mag.data, &w.grav.data})
            for (int i = 1; i <= w.station_count; ++i)
                (*data)(i, row_raw, stage_observed) = (*data)(i, row_raw, stage_calculated);
        invalidate_filtered_data(0, w);
        // Whoever changes the body next writes its fields directly.
        reset_calculated_data(w, prompts);
    }

    /// A sheet whose susceptibility is off by much: each sweep takes one whole step.
    ModelBody& sheet_off_by(float susceptibility) {
        ModelBody& body = add_body(thick_sheet);
        take_model_as_data();
        body.susc.value += susceptibility;
        body.susc.vary = 1;
        body.susc.max = 1e6F;
        refresh();
        return body;
    }

    MisfitPair refresh() {
        reset_calculated_data(session.workspace, prompts);
        return model::refresh_model(session);
    }

    ScriptedPrompts prompts;
    Session session;
    Faults faults;
};

}  // namespace anomalis::inversion
