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

void fill_polyhedron(Workspace& workspace, ModelBody& body, const Magnetisation& m, ForwardMemory& memory,
                     Pacer& pacer) {
    const AmbientField field = ambient_field(workspace);
    memory.polyhedron.total_field(station_spans(workspace), east_north_up(m.north, m.east, m.down),
                                  east_north_up(field.north, field.east, field.down), memory.values,
                                  {.pacer = &pacer});
    store_values(workspace, body, 1, memory.values);
}

void assign_placed(const ModelBody& body, ForwardMemory& memory, Pacer& pacer) {
    const PlainSurface surface = placed_plain_surface(body.solid, memory.plain_solid);
    memory.polyhedron.assign(surface.points, surface.facets, &pacer);
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

void fill_prism(Workspace& workspace, ModelBody& body, Faults& faults, Pacer& pacer) {
    const Magnetisation m = store_moment(workspace, body);
    if (workspace.station_count <= 0) return;
    const PrismCorners corners = magnetic_prism(body);
    if (body.include_demagnetisation < 0) return fill_prism_by_faces(workspace, body, corners, faults, pacer);
    ForwardMemory& memory = forward_memory(workspace);
    memory.polyhedron.assign(corners, prism_triangles);
    fill_polyhedron(workspace, body, m, memory, pacer);
}

void fill_pipe(Workspace& workspace, ModelBody& body, Faults& faults, Pacer& pacer) {
    Magnetisation m = store_moment(workspace, body);
    if (setup_cylinder_body(body, body.solid, faults, workspace.station_count) != 0) return;
    ForwardMemory& memory = forward_memory(workspace);
    if (body.include_demagnetisation != 0) m = demagnetised_pipe(body, m, memory.polyhedron, pacer);
    assign_placed(body, memory, pacer);
    fill_polyhedron(workspace, body, m, memory, pacer);
}

void fill_pipe_gravity(Workspace& workspace, ModelBody& body, Faults& faults, Pacer& pacer) {
    if (setup_cylinder_body(body, body.solid, faults, workspace.station_count) != 0) return;
    ForwardMemory& memory = forward_memory(workspace);
    assign_placed(body, memory, pacer);
    memory.polyhedron.gravity(station_spans(workspace), body.density.value, memory.values, {.pacer = &pacer});
    store_values(workspace, body, 2, memory.values);
}

}  // namespace anomalis::forward
