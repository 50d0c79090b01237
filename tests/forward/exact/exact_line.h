#pragma once

#include "forward/exact/exact_axes.h"
#include "forward/exact/exact_plane.h"
#include "forward/exact/exact_response.h"
#include "forward/line.h"

namespace anomalis::forward {

enum class Curve { magnetic, gravity };

/// A survey whose stations stand where a test wants them, and the exact curves of its bodies in double
/// precision.
struct ExactLine : Line {
    explicit ExactLine(int stations = 101, double spacing = 10, double bearing = 0, double sensor = 60)
        : Line(stations, spacing, bearing, sensor) {
        workspace.formulas = Formulas::exact;
    }

    /// Turns all stations about the origin of the survey, anticlockwise, and moves the origin to 0, 0.
    void turn(double degrees) {
        const double c = std::cos(exact_radians(degrees)), s = std::sin(exact_radians(degrees));
        for (int i = 1; i <= workspace.station_count; ++i) {
            const double x = workspace.stations(i, column_east) - workspace.origin_east;
            const double y = workspace.stations(i, column_north) - workspace.origin_north;
            workspace.stations(i, column_east) = c * x - s * y;
            workspace.stations(i, column_north) = s * x + c * y;
        }
        workspace.origin_east = workspace.origin_north = 0;
    }

    void lift(double by) {
        for (int i = 1; i <= workspace.station_count; ++i) workspace.stations(i, column_sensor) += by;
    }

    std::vector<double> curve(Curve kind, int number = 1) {
        std::vector<double> values(static_cast<std::size_t>(workspace.station_count));
        if (kind == Curve::magnetic) {
            exact_anomaly(workspace, body(number), polyhedron, values, notes);
        } else {
            exact_gravity(workspace, body(number), polyhedron, values, notes);
        }
        return values;
    }

    Polyhedron polyhedron;
    ExactNotes notes;
};

/// Largest difference as a share of the largest value of the second curve.
inline double relative_difference(const std::vector<double>& a, const std::vector<double>& b) {
    return largest_difference(a, b) / peak_of(b);
}

inline std::vector<double> minus(std::vector<double> a, const std::vector<double>& b) {
    for (std::size_t i = 0; i < a.size(); ++i) a[i] -= b.at(i);
    return a;
}

inline std::vector<double> plus(std::vector<double> a, const std::vector<double>& b) {
    return minus(std::move(a), times(b, -1));
}

/// A body of every kind that the exact formulas know, none of them symmetric.
struct BodySample {
    const char* name;
    BodyType type;
    float strike, dip, width, depth_extent, length, offset, plunge, slope;
};
inline constexpr std::array<BodySample, 9> body_samples{
    {{"thin sheet, endless", thin_sheet, 50, 60, 8, 0, 0, 0, 0, 0},
     {"thick sheet", thick_sheet, -35, 115, 90, 180, 0, 0, 0, 12},
     {"edge", edge, 20, 65, 0, 150, 0, 0, 0, 0},
     {"step", sloping_step, 200, 120, 0, 80, 0, 0, 0, 0},
     {"sphere", sphere, 0, 0, 70, 0, 0, 0, 0, 0},
     {"prism", thick_sheet, 75, 70, 60, 140, 230, 40, 15, -10},
     {"column", thick_sheet, 110, 50, 40, 0, 300, -30, -10, 8},
     {"pipe", pipe, 140, 25, 60, 0, 200, 20, 10, 0},
     {"pipe, endless", pipe, 75, 0, 80, 0, 0, 0, 0, 0}}};

inline ModelBody& add_sample(Line& line, const BodySample& sample, double distance = 470) {
    ModelBody& body = line.add(sample.type, distance, sample.strike);
    body.dip.value = sample.dip;
    body.width.value = sample.width;
    body.depth_extent.value = sample.depth_extent;
    body.length.value = sample.length;
    body.offset.value = sample.offset;
    body.plunge.value = sample.plunge;
    body.slope.value = sample.slope;
    if (sample.type == sphere) body.top.value = -40;
    return body;
}

}  // namespace anomalis::forward
