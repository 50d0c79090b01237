#include "forward/shape/trapezoid.h"

#include <cmath>

#include "core/angles.h"
#include "core/faults.h"
#include "core/numbers.h"
#include "forward/exact/exact_axes.h"
#include "forward/shape/exact_shape.h"

namespace anomalis::forward {

namespace {

/// Depth to which a body without limit in depth is drawn, m.
constexpr double drawn_depth = 1000.0;

struct Sheet {
    double cos_dip, sin_dip, cos_strike, sin_strike;
    double width, depth_extent, slope;

    explicit Sheet(const ModelBody& body)
        : cos_dip(static_cast<float>(std::cos(body.dip.value * radians_per_degree))),
          sin_dip(static_cast<float>(std::sin(body.dip.value * radians_per_degree))),
          cos_strike(static_cast<float>(std::cos(body.strike.value * radians_per_degree))),
          sin_strike(static_cast<float>(std::sin(body.strike.value * radians_per_degree))),
          width(body.width.value),
          depth_extent(body.depth_extent.value),
          slope(body.slope.value) {}

    std::array<double, 3> moved(const std::array<double, 3>& from, double across, double up) const {
        return {from[0] + cos_strike * across, from[1] - sin_strike * across, from[2] + up};
    }

    /// How far the bottom lies across strike from the top.
    double bottom_offset() const {
        if (!(std::abs(sin_dip) > 0.001)) return 0;
        return (depth_extent == 0 ? drawn_depth : depth_extent) * cos_dip / sin_dip;
    }

    /// Width of the tilted top. The export tests the cosine of the dip, not the dip.
    double tilted_width() const {
        if (std::abs(cos_dip) < 0.1) return width;
        const double divisor =
            sin_dip == 0 ? 0 : 1 - cos_dip * std::tan(-slope * radians_per_degree) / sin_dip;
        if (divisor == 0) throw Fault(FaultKind::division_by_zero);
        return width / divisor;
    }
};

void convert(const ModelBody& body, Trapezoid& corners) {
    const Sheet sheet(body);
    std::array<std::array<std::array<double, 3>, 4>, 2> at{};
    const double half = static_cast<double>(body.length.value) / 2;
    const double plunge = std::sin(body.plunge.value * radians_per_degree);
    const auto end = [&](double along) {
        return std::array<double, 3>{along * sheet.sin_strike, along * sheet.cos_strike, -plunge * along};
    };
    at[0][0] = end(half + body.offset.value);
    at[0][1] = end(-half + body.offset.value);
    at[0][2] = sheet.moved(at[0][1], sheet.width, 0);
    at[0][3] = sheet.moved(at[0][0], sheet.width, 0);

    const double down = sheet.depth_extent == 0 ? drawn_depth : sheet.depth_extent;
    for (std::size_t i = 0; i < 4; ++i) at[1][i] = sheet.moved(at[0][i], sheet.bottom_offset(), -down);

    if (std::abs(sheet.slope) > 0.1) {
        const double width = sheet.tilted_width();
        const double rise = width * std::tan(sheet.slope * radians_per_degree);
        for (auto& level : at) {
            level[2] = sheet.moved(level[1], width, rise);
            level[3] = sheet.moved(level[0], width, rise);
        }
    }
    for (std::size_t level = 0; level < 2; ++level)
        for (std::size_t i = 0; i < 4; ++i)
            for (std::size_t axis = 0; axis < 3; ++axis)
                corners[level][i][axis] = to_single(at[level][i][axis]);
}

void convert_exact(const ModelBody& body, Trapezoid& corners) {
    SheetShape sheet = sheet_shape(body);
    if (!sheet.meets) sheet.rise = 0;
    if (sheet.depth == 0) sheet.depth = drawn_depth;
    const double strike = exact_radians(body.strike.value);
    const double c = std::cos(strike), s = std::sin(strike);
    const std::array<Point3, 8> at = sheet_corners(sheet);
    for (std::size_t i = 0; i < at.size(); ++i)
        corners[i / 4][i % 4] = {to_single(at[i].x * c + at[i].y * s), to_single(at[i].y * c - at[i].x * s),
                                 to_single(at[i].z)};
}

}  // namespace

int convert_profile_model_to_trapezoid(const ModelBody& body, Trapezoid& corners, Faults& faults) {
    return report_failure(faults,
                          "An error occurred while converting the body: ", [&] { convert(body, corners); });
}

int convert_exact_sheet_to_trapezoid(const ModelBody& body, Trapezoid& corners, Faults& faults) {
    return report_failure(
        faults, "An error occurred while converting the body: ", [&] { convert_exact(body, corners); });
}

}  // namespace anomalis::forward
