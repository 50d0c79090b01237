#include "forward/classic/gravity_response.h"

#include <cmath>
#include <string_view>

#include "core/faults.h"
#include "core/numbers.h"
#include "forward/classic/field_coefficients.h"
#include "forward/classic/limited_response.h"
#include "forward/classic/prism_facets.h"
#include "forward/classic/talwani.h"
#include "forward/forward_memory.h"
#include "forward/shape/prism.h"
#include "forward/shape/reference_point.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

constexpr double least_density = 0.0001;

void fill_sheet(const Workspace& workspace, ModelBody& body, Faults& faults, Pacer& pacer) {
    if (body.length.value > 0) {
        if (workspace.station_count <= 0) return;
        add_prism_facets(workspace, body, {false, true}, {},
                         relative_to_first_station(gravity_prism(body), workspace), faults, pacer);
    } else {
        fill_talwani(workspace, body, gravity_bottom(body), faults, pacer);
    }
    const double factor = body.density.value * gravity_constant;
    float* column = response_column(workspace, body, 2);
    for (std::int32_t i = 0; i < workspace.station_count; ++i)
        column[i] = static_cast<float>(column[i] * factor);
}

void fill(const BodyJob& job, bool found) {
    const Workspace& workspace = job.workspace;
    ModelBody& body = job.body;
    zero_column(workspace, body, 2);
    set_body_angles(body);
    if (body.type == sphere) body.strike.value = to_single(workspace.azimuth + 90.0);
    if (std::abs(strike_against_profile(body, workspace.azimuth)) < least_sine_with_response) return;
    update_body_reference_point(workspace, body.distance.value, body.east, body.north);
    if (!has_weight(body) || !has_classic_gravity(body.type)) return;
    if (is_sheet(body.type)) {
        fill_sheet(workspace, body, job.grav_faults, job.pacer);
    } else {
        fill_pipe_gravity(job, found);
    }
}

}  // namespace

bool has_weight(const ModelBody& body) {
    return !(std::abs(body.density.value) < least_density);
}

void calculate_gravity_response(const BodyJob& job, bool found) {
    constexpr std::string_view prefix = "An error occurred while calculating the gravity response: ";
    report_failure(job.grav_faults, prefix, [&] { fill(job, found); });
    report_failure(job.grav_faults, prefix,
                   [&] { require_finite_column(job.workspace, job.body, job.number, 2); });
}

void calculate_gravity_response(Workspace& workspace, int body_number, Faults& faults, Pacer& pacer) {
    ExactNotes notes;
    calculate_gravity_response({workspace, body_number, workspace.body(body_number), false, true,
                                body_memory(forward_memory(workspace)), notes, faults, faults, pacer},
                               false);
}

}  // namespace anomalis::forward
