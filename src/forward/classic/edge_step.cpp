#include "forward/classic/edge_step.h"

#include <cmath>

#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

template <class Formula>
void add_at_stations(const Workspace& workspace, ModelBody& body, const Formula& formula) {
    const StationView stations = station_view(workspace);
    const BodyFrame frame = body_frame(body);
    float* response = response_column(workspace, body, 1);
    for (std::size_t i = 0; i < stations.count; ++i) {
        const double x = across_strike(stations, frame, i);
        const double h = lifted(height_over_top(stations, frame, i));
        response[i] = static_cast<float>(response[i] + formula(x, h));
    }
}

}  // namespace

void add_edge(const Workspace& workspace, ModelBody& body, const ShapeTerms& terms) {
    const double p = body.sin_dip * terms.p / 2;
    const double q = body.sin_dip * terms.q;
    add_at_stations(workspace, body,
                    [=](double x, double h) { return p * std::log(x * x + h * h) + q * std::atan(x / h); });
}

void add_sloping_step(const Workspace& workspace, ModelBody& body, const ShapeTerms& terms) {
    const double p = body.sin_dip * terms.p / 2;
    const double q = body.sin_dip * terms.q;
    const double width = body.width.value;
    const double depth = body.depth_extent.value;
    add_at_stations(workspace, body, [=](double x, double h) {
        const double below = h + depth;
        const double beyond = x - width;
        if (below == 0) throw Fault(FaultKind::division_by_zero);
        return p * std::log((x * x + h * h) / (beyond * beyond + below * below)) +
               q * (std::atan(x / h) - std::atan(beyond / below));
    });
}

}  // namespace anomalis::forward
