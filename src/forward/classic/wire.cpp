#include "forward/classic/wire.h"

#include <cmath>

#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

/// Field in nT at 1 m from a current of 1 mA.
constexpr double field_of_unit_current = 200.0 / 1000.0;

struct Conductor {
    double across, up;  ///< from the reference point, against x and h
    double strength;    ///< nT m, signed
};

}  // namespace

void fill_wire(const Workspace& workspace, ModelBody& body) {
    const double current = body.susc.value;
    const double separation = body.offset.value;
    const double strength = current * field_of_unit_current;
    const double a = separation * body.sin_dip / 2;
    const double c = separation * body.cos_dip / 2;
    // The first of the pair carries the sign of the current, the second the opposite.
    const Conductor pair[2] = {{-a, -c, strength}, {a, c, -strength}};
    const Conductor single[1] = {{0, 0, strength}};
    const std::span<const Conductor> conductors =
        separation != 0 ? std::span<const Conductor>(pair) : std::span<const Conductor>(single);

    const StationView stations = station_view(workspace);
    const BodyFrame frame = body_frame(body);
    float* response = response_column(workspace, body, 1);
    for (std::size_t i = 0; i < stations.count; ++i) {
        const double x = across_strike(stations, frame, i);
        const double height = height_over_top(stations, frame, i);
        double across = body.moment_x;
        double down = body.moment_z;
        for (const Conductor& wire : conductors) {
            const double h = lifted(height + wire.up);
            const double xk = x + wire.across;
            const double squared = xk * xk + h * h;
            across += wire.strength * h / squared;
            down -= wire.strength * xk / squared;
        }
        const double along = body.moment_y;
        response[i] = static_cast<float>(std::sqrt(across * across + along * along + down * down) -
                                         workspace.field.intensity);
    }
}

}  // namespace anomalis::forward
