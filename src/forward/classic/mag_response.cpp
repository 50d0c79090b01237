#include "forward/classic/mag_response.h"

#include <cmath>
#include <string_view>

#include "core/faults.h"
#include "core/numbers.h"
#include "forward/classic/edge_step.h"
#include "forward/classic/field_coefficients.h"
#include "forward/classic/gravity_response.h"
#include "forward/classic/limited_response.h"
#include "forward/classic/shape_terms.h"
#include "forward/classic/sheet.h"
#include "forward/classic/sphere.h"
#include "forward/classic/wire.h"
#include "forward/forward_memory.h"
#include "forward/shape/reference_point.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

constexpr float least_magnetisation = 0.0001F;
/// Of an edge or a step.
constexpr double units_a_station = 20;

void zero_magnetic_columns(const Workspace& workspace, ModelBody& body) {
    zero_column(workspace, body, 1);
    for (const int column : {3, 4, 5})
        if (held_column(workspace, body, column)) body.response.drop(column);
}

bool unlimited_strike(const ModelBody& body) {
    return !(body.length.value > 0) && body.slope.value == 0;
}

/// True where the gravity was found with it.
bool fill_limited(const BodyJob& job) {
    if (job.body.type == pipe) return fill_pipe(job, job.grav && has_weight(job.body));
    fill_prism(job);
    return false;
}

bool fill_by_type(const BodyJob& job, double strike_sine) {
    const Workspace& workspace = job.workspace;
    ModelBody& body = job.body;
    if (body.type == wire) fill_wire(job);
    if (body.type == wire || body.type == polygon) return false;
    const ShapeTerms terms = shape_terms(body, strike_sine);
    if (terms.size() < least_shape_terms) return false;
    switch (body.type) {
        case thin_sheet:
            add_thin_sheet(job, strike_sine, terms);
            return false;
        case edge:
            add_edge(workspace, body, terms);
            job.pacer.done(units_a_station * workspace.station_count);
            return false;
        case sloping_step:
            add_sloping_step(workspace, body, terms);
            job.pacer.done(units_a_station * workspace.station_count);
            return false;
        case sphere:
            add_sphere(job, terms);
            return false;
        case thick_sheet:
        case pipe:
            if (!unlimited_strike(body)) return fill_limited(job);
            add_thick_sheet(job, strike_sine, terms);
            return false;
        default:
            return false;
    }
}

bool fill(const BodyJob& job) {
    const Workspace& workspace = job.workspace;
    ModelBody& body = job.body;
    zero_magnetic_columns(workspace, body);
    if (calculate_field_coefficients(workspace, body, job.mag_faults) != 0) return false;
    // Radians are added to degrees on purpose:
    // test `Sphere, takes_the_azimuth_in_radians_plus_90_as_its_strike`.
    if (body.type == sphere) body.strike.value = to_single(workspace.azimuth + 90.0);
    const double strike_sine = strike_against_profile(body, workspace.azimuth);
    if (std::abs(strike_sine) < least_sine_with_response) return false;
    update_body_reference_point(workspace, body.distance.value, body.east, body.north);
    if (std::abs(body.last_calculated) < least_magnetisation) return false;
    return fill_by_type(job, strike_sine);
}

}  // namespace

bool calculate_mag_response(const BodyJob& job) {
    // The spelling is part of the text.
    constexpr std::string_view prefix = "An error occured while calculating the response: ";
    bool attraction_too = false;
    report_failure(job.mag_faults, prefix, [&] { attraction_too = fill(job); });
    report_failure(job.mag_faults, prefix,
                   [&] { require_finite_column(job.workspace, job.body, job.number, 1); });
    return attraction_too;
}

void calculate_mag_response(Workspace& workspace, int body_number, Faults& faults, Pacer& pacer) {
    ExactNotes notes;
    calculate_mag_response({workspace, body_number, workspace.body(body_number), true, false,
                            body_memory(forward_memory(workspace)), notes, faults, faults, pacer});
}

}  // namespace anomalis::forward
