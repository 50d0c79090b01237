#include "forward/classic/sphere.h"

#include <cmath>

#include "core/angles.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

void add_sphere(const Workspace& workspace, ModelBody& body, const ShapeTerms& terms) {
    const double diameter = 2 * std::abs(static_cast<double>(body.width.value));
    const double volume = diameter * diameter * diameter * pi / 6;
    const double p = terms.p * volume;
    const double q = terms.q * volume;
    const double r = terms.r * volume;
    const StationView stations = station_view(workspace);
    const BodyFrame frame = body_frame(body);
    float* response = response_column(workspace, body, 1);
    for (std::size_t i = 0; i < stations.count; ++i) {
        const double x = across_strike(stations, frame, i);
        const double h = lifted(height_over_top(stations, frame, i));
        const double squared = x * x + h * h;
        const double anomaly = (q * h * h + p * x * x + r * x * h) / (squared * squared * std::sqrt(squared));
        response[i] = static_cast<float>(response[i] + anomaly);
    }
}

}  // namespace anomalis::forward
