#include "forward/limited_response.h"

#include "core/numbers.h"
#include "forward/field_coefficients.h"
#include "forward/prism.h"
#include "forward/prism_facets.h"
#include "forward/station_columns.h"

namespace anomalis {

namespace {

void store_moment(const Workspace& workspace, ModelBody& body) {
    const Magnetisation m = plain_magnetisation(workspace, body);
    body.moment_x = to_single(m.north);
    body.moment_y = to_single(m.east);
    body.moment_z = to_single(m.down);
}

void fill_prism_by_faces(const Workspace& workspace, ModelBody& body, const PrismCorners& corners,
                         Prompts& prompts) {
    const NedVector moment{body.moment_x, body.moment_y, body.moment_z};
    add_prism_facets(workspace, body, {true, false}, moment, relative_to_first_station(corners, workspace),
                     prompts);
    const AmbientField field = ambient_field(workspace);
    float* const total = response_column(workspace, body, 1);
    const float* const north = response_column(workspace, body, 3);
    const float* const east = response_column(workspace, body, 4);
    const float* const down = response_column(workspace, body, 5);
    for (std::int32_t i = 0; i < workspace.station_count; ++i)
        total[i] = static_cast<float>(north[i] * field.north + east[i] * field.east + down[i] * field.down);
}

}  // namespace

void fill_prism(Workspace& workspace, ModelBody& body, Prompts& prompts) {
    store_moment(workspace, body);
    if (workspace.station_count <= 0) return;
    const PrismCorners corners = magnetic_prism(body);
    fill_prism_by_faces(workspace, body, corners, prompts);
}

}  // namespace anomalis
