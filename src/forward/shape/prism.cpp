#include "forward/shape/prism.h"

#include <cmath>

#include "core/angles.h"

namespace anomalis::forward {

namespace {

/// Depth that stands for a sheet without lower end, m.
constexpr double unlimited_depth = 5000.0;
/// The same for gravity, in widths.
constexpr double unlimited_widths = 1000.0;

Point3 moved_across(const ModelBody& body, const Point3& from, double across, double up) {
    return {from.x + body.cos_strike * across, from.y - body.sin_strike * across, from.z + up};
}

/// False for a flat sheet; a dip that is no number counts as one, so that it shows.
bool has_dip(const ModelBody& body) {
    return !(std::abs(body.sin_dip) <= 0.001);
}

/// Width of a top that is tilted by the slope, met by a far side that dips.
double tilted_width(const ModelBody& body, double slope) {
    const double width = body.width.value;
    if (std::abs(static_cast<double>(body.dip.value) - 90) < 0.1) return width;
    if (body.sin_dip == 0) throw Fault(FaultKind::division_by_zero);
    const double divisor = 1 - body.cos_dip * std::tan(slope * radians_per_degree) / body.sin_dip;
    if (divisor == 0) throw Fault(FaultKind::division_by_zero);
    return width / divisor;
}

PrismCorners build(const ModelBody& body, const SheetBottom& bottom, double narrowing_slope) {
    const double half = static_cast<double>(body.length.value) / 2;
    const double plunge = std::sin(body.plunge.value * radians_per_degree);
    const double width = body.width.value;
    const auto end = [&](double along) {
        return Point3{along * body.sin_strike + body.east, along * body.cos_strike + body.north,
                      body.top.value - along * plunge};
    };
    PrismCorners at{};
    at[0] = end(half + body.offset.value);
    at[1] = end(-half + body.offset.value);
    at[2] = moved_across(body, at[1], width, 0);
    at[3] = moved_across(body, at[0], width, 0);
    for (std::size_t i = 0; i < 4; ++i) at[i + 4] = moved_across(body, at[i], bottom.offset, -bottom.depth);

    const double slope = body.slope.value;
    if (std::abs(slope) > 0.1) {
        const double tilted = tilted_width(body, narrowing_slope);
        const double rise = tilted * std::tan(slope * radians_per_degree);
        for (const std::size_t level : {0U, 4U}) {
            at[level + 2] = moved_across(body, at[level + 1], tilted, rise);
            at[level + 3] = moved_across(body, at[level], tilted, rise);
        }
    }
    return at;
}

}  // namespace

PrismCorners magnetic_prism(const ModelBody& body) {
    const double depth = body.depth_extent.value;
    SheetBottom bottom{0, depth == 0 ? unlimited_depth : depth};
    // A negative extent goes straight up, whatever the dip.
    if (depth >= 0 && has_dip(body)) bottom.offset = body.cos_dip * bottom.depth / body.sin_dip;
    return build(body, bottom, -body.slope.value);
}

SheetBottom gravity_bottom(const ModelBody& body) {
    const double depth = body.depth_extent.value;
    SheetBottom bottom{0, depth == 0 ? unlimited_widths * std::abs(body.width.value) : depth};
    if (bottom.depth != 0 && has_dip(body)) bottom.offset = body.cos_dip * bottom.depth / body.sin_dip;
    return bottom;
}

PrismCorners gravity_prism(const ModelBody& body) {
    return build(body, gravity_bottom(body), body.slope.value);
}

std::array<NedVector, 8> relative_to_first_station(const PrismCorners& corners, const Workspace& workspace) {
    const StationTable& stations = workspace.stations;
    std::array<NedVector, 8> relative;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        relative[i] = {corners[i].y - stations(1, column_north), corners[i].x - stations(1, column_east),
                       stations(1, column_sensor) - corners[i].z};
    }
    return relative;
}

}  // namespace anomalis::forward
