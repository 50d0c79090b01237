#include "forward/classic/wire.h"

#include <cmath>

#include "forward/station_columns.h"
#include "forward/station_stretches.h"

namespace anomalis::forward {

namespace {

/// Field in nT at 1 m from a current of 1 mA.
constexpr double field_of_unit_current = 200.0 / 1000.0;

struct Conductor {
    double across, up;  ///< from the reference point, against x and h
    double strength;    ///< nT m, signed
};

/// Across strike, along strike and down (nT).
struct StrikeField {
    double across, along, down;
    double dot(const StrikeField& other) const {
        return across * other.across + along * other.along + down * other.down;
    }
};

/// Strength of the earth's field and an added one together, less the `intensity` of the earth's alone. The
/// parts of the earth's field are singles: a plain difference would leave their rounding, 0.002 nT, in the
/// anomaly of the weakest current. With |b|^2 = intensity^2 the same is (2 b.d + d.d) / (|b + d| +
/// intensity).
double strength_gained(const StrikeField& earth, const StrikeField& added, double intensity) {
    const StrikeField whole{earth.across + added.across, earth.along + added.along, earth.down + added.down};
    const double strength = std::sqrt(whole.dot(whole));
    if (!(intensity > 0)) return strength - intensity;
    return (2 * earth.dot(added) + added.dot(added)) / (strength + intensity);
}

}  // namespace

void fill_wire(const BodyJob& job) {
    const ModelBody& body = job.body;
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

    const StationView stations = station_view(job.workspace);
    const BodyFrame frame = body_frame(body);
    const StrikeField earth{body.moment_x, body.moment_y, body.moment_z};
    float* const response = response_column(job.workspace, job.body, 1);
    constexpr double units_a_station = 20;
    for_stretches(stations.count, units_a_station, job.pacer, [&](std::size_t first, std::size_t count) {
        for (std::size_t i = first; i < first + count; ++i) {
            const double x = across_strike(stations, frame, i);
            const double height = height_over_top(stations, frame, i);
            StrikeField added{0, 0, 0};
            for (const Conductor& wire : conductors) {
                const double h = lifted(height + wire.up);
                const double xk = x + wire.across;
                const double squared = xk * xk + h * h;
                added.across += wire.strength * h / squared;
                added.down -= wire.strength * xk / squared;
            }
            response[i] = static_cast<float>(strength_gained(earth, added, job.workspace.field.intensity));
        }
    });
}

}  // namespace anomalis::forward
