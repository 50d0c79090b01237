#include "flow/take_found.h"

#include "core/body_fields.h"
#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "core/numbers.h"
#include "core/workspace.h"
#include "edit/body_palette.h"
#include "forward/shape/reference_point.h"
#include "inversion/find/find_bodies.h"

namespace anomalis::flow {

namespace {

void place(const Workspace& workspace, ModelBody& body) {
    forward::update_body_reference_point(workspace, static_cast<double>(body.distance.value), body.east,
                                         body.north);
}

/// What a file holds of a body; its responses are found out of date where that differs.
void take_values(const ModelBody& from, const Workspace& workspace, ModelBody& to) {
    body_field_values(to) = body_field_values(from);
    for (const BodyParameter& row : body_parameters()) to.*row.slot = from.*row.slot;
    place(workspace, to);
}

void append(const ModelBody& found, std::int32_t channel, Workspace& workspace) {
    const std::int32_t colour = edit::next_body_colour(workspace);
    reserve_next_body(workspace);
    ModelBody& body = workspace.body(workspace.body_count + 1);
    // A place that a deleted body left must not pass anything on.
    body = ModelBody();
    body.response.assign(workspace.station_count);
    take_values(found, workspace, body);
    // Magnetics tell nothing of a density: what they find leaves the curve of the gravity as it was.
    if (channel == channel_mag && workspace.has_grav()) body.density.value = 0;
    body.colour = colour;
    ++workspace.body_count;
    if (body.name.empty()) body.name = "Body " + format_number(workspace.body_count, "0");
}

void take_regionals(const inversion::FoundModel& model, Workspace& workspace) {
    const std::int32_t channel = model.record.channel;
    if (channel != channel_grav) workspace.mag.regional_degree = model.mag_degree;
    if (channel != channel_mag) workspace.grav.regional_degree = model.grav_degree;
}

}  // namespace

void take_found(Workspace& workspace, const inversion::FoundModel& model) {
    const int present = static_cast<int>(model.bodies.size()) - model.found;
    for (int number = 1; number <= present; ++number)
        take_values(model.bodies[static_cast<std::size_t>(number - 1)], workspace, workspace.body(number));
    workspace.body_count = present;
    for (auto body = model.bodies.begin() + present; body != model.bodies.end(); ++body)
        append(*body, model.record.channel, workspace);
    take_regionals(model, workspace);
    workspace.fit = model.record;
    // Names and colours are no part of it; found anew all the same, so that the record is of what stands
    // here.
    workspace.fit->model_mark = model_mark(workspace);
}

}  // namespace anomalis::flow
