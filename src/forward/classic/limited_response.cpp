#include "forward/classic/limited_response.h"

#include "core/numbers.h"
#include "core/pacer.h"
#include "forward/classic/demagnetisation.h"
#include "forward/classic/field_coefficients.h"
#include "forward/classic/prism_facets.h"
#include "forward/forward_memory.h"
#include "forward/shape/body_solid.h"
#include "forward/shape/prism.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

Point3 east_north_up(double north, double east, double down) {
    return {east, north, -down};
}

/// With the gravity where `attraction_too`.
void fill_polyhedron(const BodyJob& job, const Magnetisation& m, bool attraction_too = false) {
    BodyMemory& memory = job.memory;
    const AmbientField field = ambient_field(job.workspace);
    const StationSpans stations = station_spans(job.workspace);
    const Point3 moment = east_north_up(m.north, m.east, m.down);
    const Point3 direction = east_north_up(field.north, field.east, field.down);
    const std::span<double> anomaly = station_values(memory.anomaly, job.workspace);
    if (attraction_too) {
        memory.polyhedron.total_field_and_gravity(stations, moment, direction, job.body.density.value,
                                                  anomaly, station_values(memory.attraction, job.workspace),
                                                  {.pacer = &job.pacer});
    } else {
        memory.polyhedron.total_field(stations, moment, direction, anomaly, {.pacer = &job.pacer});
    }
    store_values(job.workspace, job.body, 1, anomaly);
}

void assign_placed(const BodyJob& job) {
    const PlainSurface surface = placed_plain_surface(job.body.solid, job.memory.plain_solid);
    job.memory.polyhedron.assign(surface.points, surface.facets, &job.pacer);
}

Magnetisation store_moment(const Workspace& workspace, ModelBody& body) {
    const Magnetisation m = plain_magnetisation(workspace, body);
    body.moment_x = to_single(m.north);
    body.moment_y = to_single(m.east);
    body.moment_z = to_single(m.down);
    return m;
}

void fill_prism_by_faces(const Workspace& workspace, ModelBody& body, const PrismCorners& corners,
                         Faults& faults, Pacer& pacer) {
    const NedVector moment{body.moment_x, body.moment_y, body.moment_z};
    add_prism_facets(workspace, body, {true, false}, moment, relative_to_first_station(corners, workspace),
                     faults, pacer);
    const AmbientField field = ambient_field(workspace);
    float* const total = response_column(workspace, body, 1);
    const float* const north = response_column(workspace, body, 3);
    const float* const east = response_column(workspace, body, 4);
    const float* const down = response_column(workspace, body, 5);
    for (std::int32_t i = 0; i < workspace.station_count; ++i)
        total[i] = static_cast<float>(north[i] * field.north + east[i] * field.east + down[i] * field.down);
}

}  // namespace

StationSpans station_spans(const Workspace& workspace) {
    const StationView view = station_view(workspace);
    return {{view.east, view.count}, {view.north, view.count}, {view.sensor, view.count}};
}

void store_values(const Workspace& workspace, ModelBody& body, int column, std::span<const double> values) {
    float* to = response_column(workspace, body, column);
    for (const double value : values) *to++ = static_cast<float>(value);
}

void fill_prism(const BodyJob& job) {
    const Magnetisation m = store_moment(job.workspace, job.body);
    if (job.workspace.station_count <= 0) return;
    const PrismCorners corners = magnetic_prism(job.body);
    if (job.body.include_demagnetisation < 0)
        return fill_prism_by_faces(job.workspace, job.body, corners, job.mag_faults, job.pacer);
    job.memory.polyhedron.assign(corners, prism_triangles);
    fill_polyhedron(job, m);
}

bool fill_pipe(const BodyJob& job, bool attraction_too) {
    ModelBody& body = job.body;
    Magnetisation m = store_moment(job.workspace, body);
    if (setup_cylinder_body(body, body.solid, job.mag_faults, job.workspace.station_count) != 0) return false;
    if (body.include_demagnetisation != 0) m = demagnetised_pipe(body, m, job.memory.polyhedron, job.pacer);
    assign_placed(job);
    fill_polyhedron(job, m, attraction_too);
    return attraction_too;
}

void fill_pipe_gravity(const BodyJob& job, bool found) {
    BodyMemory& memory = job.memory;
    if (!found) {
        if (setup_cylinder_body(job.body, job.body.solid, job.grav_faults, job.workspace.station_count) != 0)
            return;
        assign_placed(job);
        memory.polyhedron.gravity(station_spans(job.workspace), job.body.density.value,
                                  station_values(memory.attraction, job.workspace), {.pacer = &job.pacer});
    }
    store_values(job.workspace, job.body, 2, memory.attraction);
}

}  // namespace anomalis::forward
