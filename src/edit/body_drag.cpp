#include "edit/body_drag.h"

#include <algorithm>
#include <cmath>

#include "edit/body_form.h"
#include "edit/body_grid.h"
#include "edit/change.h"
#include "edit/pipe_tie.h"
#include "edit/workbench.h"

namespace anomalis::edit {

namespace {

/// As a single, inside what a person may give; a value that stood outside may stay.
float allowed(const ModelBody& body, const ParameterValue& wanted) {
    const float present = body_param(body, wanted.code).value;
    const ValueRange& range = value_range(body.type, wanted.code);
    const double held = std::clamp(wanted.value, range.low, range.high);
    const bool outside = !range.holds(static_cast<double>(present));
    if (!std::isfinite(wanted.value) || (outside && wanted.value == static_cast<double>(present)))
        return present;
    return static_cast<float>(held);
}

}  // namespace

ModelBody shape_of(const ModelBody& body) {
    ModelBody shape;
    shape.type = body.type;
    shape.east = body.east;
    shape.north = body.north;
    shape.shell_thickness = body.shell_thickness;
    shape.end_thickness = body.end_thickness;
    shape.num_sectors = body.num_sectors;
    shape.num_segments = body.num_segments;
    for (const BodyParameter& row : body_parameters()) shape.*row.slot = body.*row.slot;
    return shape;
}

BodyDrag::BodyDrag(Workbench& workbench)
    : workbench_(workbench), number_(workbench.view.current_body), start_(shape_of(body())) {}

ModelBody& BodyDrag::body() {
    return workbench_.session.workspace.body(number_);
}

BodyDrag::Values BodyDrag::values(const ModelBody& body) {
    Values values;
    std::transform(body_parameters().begin(), body_parameters().end(), values.begin(),
                   [&](const BodyParameter& row) { return body.*row.slot; });
    return values;
}

bool BodyDrag::moved() {
    return values(body()) != values(start_);
}

void BodyDrag::put_back() {
    for (const BodyParameter& row : body_parameters()) body().*row.slot = start_.*row.slot;
    body().east = start_.east;
    body().north = start_.north;
}

bool BodyDrag::set(std::span<const ParameterValue> wanted) {
    if (workbench_.view.current_body != number_) return false;
    const Values before = values(body());
    put_back();
    // The tie looks at the sensor over the place where the pipe was, as a step of the bar does.
    for (const bool tie : {true, false})
        for (const ParameterValue& each : wanted) {
            const float value = allowed(start_, each);
            const float stood = body_param(start_, each.code).value;
            if (value == stood) continue;
            const double step = static_cast<double>(value) - static_cast<double>(stood);
            if (!tie) store_parameter(workbench_, each.code, value);
            if (tie && each.code == param_top) tie_susceptibility(workbench_, body(), step);
        }
    workbench_.forget_marks();
    return values(body()) != before;
}

void BodyDrag::keep(const std::string& what) {
    if (moved()) note_change(workbench_, {of_current_body(workbench_, what), "", false});
}

void BodyDrag::give_up() {
    put_back();
    workbench_.forget_marks();
}

}  // namespace anomalis::edit
