#pragma once

#include <map>
#include <vector>

#include "core/body_parameters.h"
#include "core/workspace.h"
#include "forward/gravity_constant.h"
#include "quad.h"

// Sheets, edges and steps without end along strike as textbooks have them: poles on the sides of a polygon,
// the mass within it, side by side. In quadruple precision, so that plain differences of it are derivatives.
namespace anomalis::forward {

/// A body by its parameters, which may lie between the numbers that a body can hold.
struct QuadBody {
    std::int32_t type = 0;
    std::map<int, Quad> value;

    explicit QuadBody(const ModelBody& body) : type(body.type) {
        for (const BodyParameter& row : body_parameters()) value[row.code] = (body.*row.slot).value;
    }
    Quad operator[](int code) const { return value.at(code); }
};

/// So far away ends what has no end, m.
inline constexpr double without_end = 1e14;

/// The corners of the section, first the top, from the reference point.
inline std::vector<QuadPair> section_of(const QuadBody& body) {
    const Quad cotangent = quad_cos(body[param_dip]) / quad_sin(body[param_dip]);
    const Quad depth = body[param_depth_extent];
    if (is_step(body.type)) {
        const Quad down = depth == 0 ? Quad(100000.0) : depth;
        return {{0, 0}, {without_end, 0}, {without_end, -down}, {cotangent * down, -down}};
    }
    Quad width = body[param_width];
    if (body.type == thin_sheet) width = width * quad_sqrt(1 + cotangent * cotangent);
    // The line of the top meets the far wall, which starts at (width, 0) and goes down by (cotangent, -1).
    const Quad tangent = quad_sin(body[param_slope]) / quad_cos(body[param_slope]);
    const Quad meets = width / (1 + cotangent * tangent);
    const Quad down = depth == 0 ? Quad(without_end) : depth;
    const QuadPair wall{cotangent * down, -down};
    const QuadPair near{0, 0}, far{meets, meets * tangent};
    return {near, far, far + wall, near + wall};
}

inline Quad area_of(const std::vector<QuadPair>& section) {
    Quad twice = 0;
    for (std::size_t k = 0; k < section.size(); ++k)
        twice += cross(section[k], section[(k + 1) % section.size()]);
    return twice / 2;
}

/// Where a body's reference point stands and how its axes lie.
struct QuadFrame {
    Quad east, north, top, cos_strike, sin_strike;

    QuadFrame(const Workspace& workspace, const QuadBody& body)
        : top(body[param_top]),
          cos_strike(quad_cos(body[param_strike])),
          sin_strike(quad_sin(body[param_strike])) {
        const Quad distance = body[param_distance];
        int at = 1;
        while (at + 2 <= workspace.station_count && distance >= Quad(workspace.distances[at + 1])) ++at;
        const auto between = [&](const auto& of) {
            const Quad a = workspace.distances[at], b = workspace.distances[at + 1];
            return Quad(of(at)) + (Quad(of(at + 1)) - Quad(of(at))) * (distance - a) / (b - a);
        };
        east = between([&](int i) { return workspace.stations(i, column_east); });
        north = between([&](int i) { return workspace.stations(i, column_north); });
    }
    QuadPair station(const Workspace& workspace, int i) const {
        return {cos_strike * (workspace.stations(i, column_east) - east) -
                    sin_strike * (workspace.stations(i, column_north) - north),
                workspace.stations(i, column_sensor) - top};
    }
    /// Of a unit vector, the part in the plane across strike.
    QuadPair across(Quad inclination, Quad declination) const {
        const Quad level = quad_cos(inclination);
        return {level * (quad_sin(declination) * cos_strike - quad_cos(declination) * sin_strike),
                -quad_sin(inclination)};
    }
};

/// ln(b / a): of the distances, and the angle from a to b.
inline QuadPair logarithm_between(const QuadPair& a, const QuadPair& b) {
    const Quad squared = dot(a, a);
    return quad_log({dot(a, b) / squared, cross(a, b) / squared});
}

/// Attraction of the poles on a straight side at the origin, by its density 1: 2 times the integral of
/// -w / w^2, along the side and across it.
inline QuadPair side_field(const QuadPair& a, const QuadPair& b) {
    const QuadPair run = b - a;
    const Quad length = quad_sqrt(dot(run, run));
    const QuadPair along{run.x / length, run.z / length}, aside{along.z, -along.x};
    const QuadPair log = logarithm_between(a, b);
    return (-2 * log.x) * along - (2 * log.z) * aside;
}

inline std::vector<Quad> reference_anomaly(const Workspace& workspace, const QuadBody& body) {
    const QuadFrame frame(workspace, body);
    const EarthField& earth = workspace.field;
    const QuadPair field = frame.across(earth.inclination, earth.declination);
    const Quad induced = body[param_susc] / 1000000 * earth.intensity / (4 * quad_pi());
    const QuadPair magnetisation =
        induced * (field + body[param_rem_q] * frame.across(body[param_rem_i], body[param_rem_d]));
    const std::vector<QuadPair> section = section_of(body);
    const Quad sense = area_of(section) < 0 ? -1 : 1;
    std::vector<Quad> anomaly;
    for (int i = 1; i <= workspace.station_count; ++i) {
        const QuadPair at = frame.station(workspace, i);
        Quad sum = 0;
        for (std::size_t k = 0; k < section.size(); ++k) {
            const QuadPair a = section[k] - at, b = section[(k + 1) % section.size()] - at;
            const QuadPair run = b - a;
            const QuadPair outward{sense * run.z, -sense * run.x};
            const Quad poles = dot(magnetisation, outward) / quad_sqrt(dot(run, run));
            sum += poles * dot(field, side_field(a, b));
        }
        anomaly.push_back(sum);
    }
    return anomaly;
}

/// Won and Bevis (1987, Geophysics 52) for z up.
inline std::vector<Quad> reference_gravity(const Workspace& workspace, const QuadBody& body) {
    const QuadFrame frame(workspace, body);
    const std::vector<QuadPair> section = section_of(body);
    const Quad area = area_of(section), size = area < 0 ? -area : area;
    // A sheet without lower end has the level of one that ends 100 km down.
    Quad level = 0;
    if (is_sheet(body.type) && body[param_depth_extent] == 0) {
        const Quad cotangent = quad_cos(body[param_dip]) / quad_sin(body[param_dip]);
        level = size / without_end / (1 + cotangent * cotangent) * quad_log({without_end / 1e5, 0}).x;
    }
    std::vector<Quad> attraction;
    for (int i = 1; i <= workspace.station_count; ++i) {
        const QuadPair at = frame.station(workspace, i);
        Quad sum = 0;
        for (std::size_t k = 0; k < section.size(); ++k) {
            const QuadPair a = section[k] - at, b = section[(k + 1) % section.size()] - at;
            const QuadPair run = b - a, log = logarithm_between(a, b);
            sum += cross(a, b) / dot(run, run) * (run.x * log.z - run.z * log.x);
        }
        if (area < 0) sum = -sum;
        attraction.push_back(2 * Quad(gravity_constant) * body[param_density] * (sum - level));
    }
    return attraction;
}

/// The derivative by a parameter at every station, of the fourth order.
template <class Reference>
std::vector<double> reference_slope(const Workspace& workspace, QuadBody body, int param_code,
                                    const Reference& reference) {
    const Quad middle = body[param_code];
    const Quad step = Quad(1e-5);
    const auto at = [&](int steps) {
        body.value[param_code] = middle + steps * step;
        return reference(workspace, body);
    };
    const auto a = at(2), b = at(1), c = at(-1), d = at(-2);
    std::vector<double> slope;
    for (std::size_t i = 0; i < a.size(); ++i)
        slope.push_back(static_cast<double>((8 * (b[i] - c[i]) - (a[i] - d[i])) / (12 * step)));
    return slope;
}

}  // namespace anomalis::forward
