#include "forward/classic/mag_response.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "core/faults.h"
#include "core/numbers.h"
#include "forward/classic/edge_step.h"
#include "forward/classic/field_coefficients.h"
#include "forward/classic/limited_response.h"
#include "forward/classic/shape_terms.h"
#include "forward/classic/sheet.h"
#include "forward/classic/sphere.h"
#include "forward/classic/wire.h"
#include "forward/shape/reference_point.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

constexpr float least_magnetisation = 0.0001F;
/// Of a closed form.
constexpr double units_a_station = 20;

void zero_magnetic_columns(const Workspace& workspace, ModelBody& body) {
    for (const int column : {1, 3, 4, 5})
        std::fill_n(response_column(workspace, body, column), workspace.station_count, 0.0F);
}

bool unlimited_strike(const ModelBody& body) {
    return !(body.length.value > 0) && body.slope.value == 0;
}

void fill_by_type(Workspace& workspace, ModelBody& body, double strike_sine, Faults& faults, Pacer& pacer) {
    if (body.type == wire) return fill_wire(workspace, body);
    if (body.type == polygon) return;
    const ShapeTerms terms = shape_terms(body, strike_sine);
    if (terms.size() < least_shape_terms) return;
    switch (body.type) {
        case thin_sheet:
            return add_thin_sheet(workspace, body, strike_sine, terms);
        case edge:
            return add_edge(workspace, body, terms);
        case sloping_step:
            return add_sloping_step(workspace, body, terms);
        case sphere:
            return add_sphere(workspace, body, terms);
        case thick_sheet:
        case pipe:
            if (unlimited_strike(body)) return add_thick_sheet(workspace, body, strike_sine, terms);
            return body.type == pipe ? fill_pipe(workspace, body, faults, pacer)
                                     : fill_prism(workspace, body, faults, pacer);
        default:
            return;
    }
}

void fill(Workspace& workspace, int body_number, Faults& faults, Pacer& pacer) {
    ModelBody& body = workspace.body(body_number);
    zero_magnetic_columns(workspace, body);
    if (calculate_field_coefficients(workspace, body, faults) != 0) return;
    // Radians are added to degrees on purpose:
    // test `Sphere, takes_the_azimuth_in_radians_plus_90_as_its_strike`.
    if (body.type == sphere) body.strike.value = to_single(workspace.azimuth + 90.0);
    const double strike_sine = strike_against_profile(body, workspace.azimuth);
    if (std::abs(strike_sine) < least_sine_with_response) return;
    update_body_reference_point(workspace, body.distance.value, body.east, body.north);
    if (std::abs(body.last_calculated) < least_magnetisation) return;
    fill_by_type(workspace, body, strike_sine, faults, pacer);
    pacer.done(units_a_station * workspace.station_count);
}

}  // namespace

void calculate_mag_response(Workspace& workspace, int body_number, Faults& faults, Pacer& pacer) {
    // The spelling is part of the text.
    constexpr std::string_view prefix = "An error occured while calculating the response: ";
    report_failure(faults, prefix, [&] { fill(workspace, body_number, faults, pacer); });
    report_failure(faults, prefix, [&] { require_finite_column(workspace, body_number, 1); });
}

}  // namespace anomalis::forward
