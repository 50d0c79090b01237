#include "forward/classic/sphere.h"

#include <cmath>

#include "core/angles.h"
#include "forward/station_columns.h"
#include "forward/station_stretches.h"

namespace anomalis::forward {

void add_sphere(const BodyJob& job, const ShapeTerms& terms) {
    const ModelBody& body = job.body;
    const double diameter = 2 * std::abs(static_cast<double>(body.width.value));
    const double volume = diameter * diameter * diameter * pi / 6;
    const double p = terms.p * volume;
    const double q = terms.q * volume;
    const double r = terms.r * volume;
    const StationView stations = station_view(job.workspace);
    const BodyFrame frame = body_frame(body);
    float* const response = response_column(job.workspace, job.body, 1);
    constexpr double units_a_station = 15;
    for_stretches(stations.count, units_a_station, job.pacer, [&](std::size_t first, std::size_t count) {
        for (std::size_t i = first; i < first + count; ++i) {
            const double x = across_strike(stations, frame, i);
            const double h = lifted(height_over_top(stations, frame, i));
            const double squared = x * x + h * h;
            const double anomaly =
                (q * h * h + p * x * x + r * x * h) / (squared * squared * std::sqrt(squared));
            response[i] = static_cast<float>(response[i] + anomaly);
        }
    });
}

}  // namespace anomalis::forward
