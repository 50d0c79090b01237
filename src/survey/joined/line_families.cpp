#include "survey/joined/line_families.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <map>
#include <numbers>
#include <tuple>

namespace anomalis::survey {

namespace {

/// A place is known to a quarter of depth and width; without an interval a depth is to a fifth, a dip to 15
/// degrees, a strength to a factor of two.
constexpr double usual_place_error = 0.25, usual_depth_error = 0.2, usual_dip_error = 15;
constexpr double least_place_error = 1;  // m

bool is_known(const TrackPoint& p) {
    return std::isfinite(p.east) && std::isfinite(p.north);
}

/// From end to end; 0 where they are one place.
std::complex<double> way_of(const std::vector<TrackPoint>& track) {
    return {track.back().east - track.front().east, track.back().north - track.front().north};
}

bool is_laid(const LineResult& line) {
    return line.track.size() > 1 && std::ranges::all_of(line.track, is_known) &&
           std::abs(way_of(line.track)) > 0;
}

/// Of lines that may run square to each other: both directions count for one.
std::complex<double> common_axis(const SurveyResults& results, const std::vector<std::size_t>& lines) {
    std::complex<double> sum = 0, longest = 1;
    double all = 0, most = 0;
    for (const std::size_t i : lines) {
        const std::complex<double> way = way_of(results.lines[i].track);
        const double length = std::abs(way);
        sum += length * std::pow(way / length, 4);
        all += length;
        if (length > most) most = length, longest = way / length;
    }
    constexpr double least_agreement = 1e-6;
    if (std::abs(sum) < least_agreement * all) return longest;
    constexpr double quarter = 0.25;
    return std::polar(1.0, quarter * std::arg(sum));
}

SheetKind kind_of(const std::string& type) {
    return type.find("heet") != std::string::npos ? SheetKind::sheet : SheetKind::edge;
}

/// Bodies that go on along strike: sheets, edges and steps.
bool goes_on(const BodyResult& body) {
    return body.type.find("heet") != std::string::npos || body.type == "Edge" || body.type == "Sloping step";
}

/// In logarithms, for values above 0.
Measured log_of(const Measured& m) {
    return m.value > 0 ? Measured{std::log(m.value), m.error / m.value} : Measured{};
}

Measured log_strength(const BodyResult& body) {
    const bool magnetic = std::isfinite(body.susceptibility.value);
    Measured strength = magnetic ? measured(body.susceptibility) : measured(body.density_contrast);
    strength.value = std::abs(strength.value);
    const Measured sum = log_of(strength);
    // Of a thin sheet the data tell the product with the width and little of both apart, so the errors of
    // both say too much: the smaller stands for that of the product.
    const Measured width = log_of(measured(body.width));
    if (std::isnan(width.value)) return sum;
    return {sum.value + width.value, std::fmin(sum.error, width.error)};
}

/// The interval is that of the reference point at the edge of the top, which moves with the width where the
/// data hardly tell that: the middle of the top is under the anomaly all the same.
double place_error(const BodyResult& body) {
    const double depth = std::isfinite(body.depth_below_sensor.value) ? body.depth_below_sensor.value
                                                                      : body.depth_below_ground.value;
    const double width = std::isfinite(body.width.value) ? body.width.value : 0;
    const double most = usual_place_error * (std::abs(depth) + std::abs(width));
    const double error = std::fmin(measured(body.distance).error, most);
    return std::fmax(least_place_error, error);
}

void add_usual_errors(LaidBody& body) {
    const auto set = [](Measured& m, double error) {
        if (std::isnan(m.error)) m.error = error;
    };
    set(body.depth, usual_depth_error * std::abs(body.depth.value));
    set(body.dip, usual_dip_error);
    set(body.log_strength, std::numbers::ln2);
}

/// Where the way p to q (parts of it, from 0 to 1) crosses a piece of a track; NaN where it does not.
double crossing_part(const TrackPoint& p, const TrackPoint& q, const TrackPoint& a, const TrackPoint& b) {
    const double px = q.east - p.east, py = q.north - p.north;
    const double ax = b.east - a.east, ay = b.north - a.north;
    const double determinant = px * ay - py * ax;
    if (determinant == 0) return unknown;
    const double wx = a.east - p.east, wy = a.north - p.north;
    const double on_way = (wx * ay - wy * ax) / determinant;
    const double on_track = (wx * py - wy * px) / determinant;
    const bool meet = on_way >= 0 && on_way <= 1 && on_track >= 0 && on_track <= 1;
    return meet ? on_way : unknown;
}

double first_crossing(const TrackPoint& p, const TrackPoint& q, const std::vector<TrackPoint>& track) {
    double first = unknown;
    for (std::size_t i = 1; i < track.size(); ++i) {
        const double part = crossing_part(p, q, track[i - 1], track[i]);
        if (std::isfinite(part) && !(part >= first)) first = part;
    }
    return first;
}

double median(std::vector<double> values) {
    if (values.empty()) return 0;
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

}  // namespace

Measured measured(const IntervalValue& v) {
    const double up = v.upper - v.value, down = v.value - v.lower;
    const double both = (v.upper - v.lower) / 2;
    const double half = std::isfinite(both) ? both : std::isfinite(up) ? up : down;
    const double error = half / normal_90;
    return {v.value, error > 0 ? error : unknown};
}

TrackPoint LineFamily::on_map(double x, double y) const {
    return {origin_east_ + axis_east * x - axis_north * y, origin_north_ + axis_north * x + axis_east * y};
}

TrackPoint LineFamily::laid(const TrackPoint& place) const {
    const double east = place.east - origin_east_, north = place.north - origin_north_;
    return {axis_east * east + axis_north * north, axis_east * north - axis_north * east};
}

std::vector<std::size_t> LineFamily::lines_between(double y_low, double y_high) const {
    const auto below = [](const LaidLine& line, double y) { return line.y_low < y; };
    std::vector<std::size_t> found;
    auto line = std::lower_bound(lines.begin(), lines.end(), y_low - tallest_, below);
    for (; line != lines.end() && line->y_low <= y_high; ++line)
        if (line->y_high >= y_low) found.push_back(static_cast<std::size_t>(line - lines.begin()));
    return found;
}

std::vector<std::size_t> LineFamily::lines_crossed(const LaidBody& from, const LaidBody& to) const {
    const TrackPoint p{from.x, from.y}, q{to.x, to.y};
    std::vector<std::size_t> crossed;
    for (const std::size_t i : lines_between(std::min(p.north, q.north), std::max(p.north, q.north))) {
        const LaidLine& line = lines[i];
        if (!line.done || i == from.laid_line || i == to.laid_line) continue;
        if (line.x_high < std::min(p.east, q.east) || line.x_low > std::max(p.east, q.east)) continue;
        if (std::isfinite(first_crossing(p, q, line.track))) crossed.push_back(i);
    }
    return crossed;
}

std::vector<double> LineFamily::ways_to_next_lines(const TrackPoint& from, double dx, double dy,
                                                   std::size_t without, double most) const {
    const TrackPoint to{from.east + dx * most, from.north + dy * most};
    std::vector<double> ways;
    for (const std::size_t i :
         lines_between(std::min(from.north, to.north), std::max(from.north, to.north))) {
        if (!lines[i].done || i == without) continue;
        const double part = first_crossing(from, to, lines[i].track);
        if (std::isfinite(part)) ways.push_back(part * most);
    }
    std::ranges::sort(ways);
    return ways;
}

void LineFamily::settle(const SurveyResults& results) {
    std::ranges::sort(lines, {}, [&](const LaidLine& line) {
        return std::tuple(line.y_low, line.x_low, results.lines[line.line].line);
    });
    for (const LaidLine& line : lines) tallest_ = std::max(tallest_, line.y_high - line.y_low);
    std::ranges::sort(bodies, {}, [&](const LaidBody& b) {
        return std::tuple(b.y, b.x, results.lines[b.line].line, results.lines[b.line].bodies[b.body].number);
    });
    std::map<std::size_t, std::size_t> laid;
    for (std::size_t i = 0; i < lines.size(); ++i) laid[lines[i].line] = i;
    for (std::size_t i = 0; i < bodies.size(); ++i) {
        bodies[i].laid_line = laid.at(bodies[i].line);
        lines[bodies[i].laid_line].bodies.push_back(i);
    }
    for (LaidLine& line : lines)
        std::ranges::sort(line.bodies, {}, [&](std::size_t i) { return std::tuple(bodies[i].x, i); });
    std::vector<double> spacings;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const LaidLine& line = lines[i];
        const double x = (line.x_low + line.x_high) / 2, y = (line.y_low + line.y_high) / 2;
        double nearest = std::numeric_limits<double>::infinity();
        for (std::size_t k = i + 1; k < lines.size() && lines[k].y_low - y < nearest; ++k) {
            const TrackPoint p{x, y}, q{x, std::max(lines[k].y_high, y) + 1};
            const double part = first_crossing(p, q, lines[k].track);
            if (std::isfinite(part) && part > 0) nearest = std::min(nearest, part * (q.north - p.north));
        }
        if (std::isfinite(nearest)) spacings.push_back(nearest);
    }
    usual_spacing = median(std::move(spacings));
}

namespace {

struct FamilyAxes {
    double origin_east, origin_north;
    std::complex<double> axis;

    TrackPoint lay(const TrackPoint& p) const {
        const std::complex<double> moved =
            std::complex<double>(p.east - origin_east, p.north - origin_north) * std::conj(axis);
        return {moved.real(), moved.imag()};
    }
};

LaidLine laid_line(const LineResult& line, std::size_t index, const FamilyAxes& axes) {
    LaidLine laid;
    laid.line = index;
    laid.done = line.status == LineStatus::done;
    for (const TrackPoint& p : line.track) laid.track.push_back(axes.lay(p));
    if (laid.track.front().east > laid.track.back().east) std::ranges::reverse(laid.track);
    const auto [left, right] = std::ranges::minmax(laid.track, {}, &TrackPoint::east);
    const auto [low, high] = std::ranges::minmax(laid.track, {}, &TrackPoint::north);
    laid.x_low = left.east, laid.x_high = right.east, laid.y_low = low.north, laid.y_high = high.north;
    const std::complex<double> way = way_of(laid.track);
    laid.axis_x = way.real() / std::abs(way), laid.axis_y = way.imag() / std::abs(way);
    return laid;
}

/// The dip seen along +x, from 0 to 180: a sheet dips to the right of its strike.
Measured dip_along(const BodyResult& body, std::complex<double> axis) {
    constexpr double half_turn = 180, quarter_turn = 90;
    Measured dip = measured(body.dip);
    dip.value -= half_turn * std::floor(dip.value / half_turn);
    const double strike =
        std::isfinite(body.strike.value) ? body.strike.value : body.profile_azimuth - quarter_turn;
    const double east = std::cos(strike * degree_in_radians), north = -std::sin(strike * degree_in_radians);
    if (east * axis.real() + north * axis.imag() < 0) dip.value = half_turn - dip.value;
    return dip;
}

LaidBody laid_body(const BodyResult& body, const FamilyAxes& axes, bool ground) {
    LaidBody laid;
    const TrackPoint place = axes.lay({body.east, body.north});
    laid.x = place.east, laid.y = place.north;
    laid.kind = kind_of(body.type);
    laid.place_error = place_error(body);
    laid.depth = measured(ground ? body.depth_below_ground : body.depth_below_sensor);
    laid.dip = dip_along(body, axes.axis);
    laid.log_strength = log_strength(body);
    if (std::isfinite(body.density_contrast.value)) laid.sign = body.density_contrast.value < 0 ? -1 : 1;
    add_usual_errors(laid);
    return laid;
}

}  // namespace

std::vector<LineFamily> line_families(const SurveyResults& results) {
    std::map<std::string, std::vector<std::size_t>> systems;
    for (std::size_t i = 0; i < results.lines.size(); ++i)
        if (is_laid(results.lines[i])) systems[results.lines[i].coordinate_system].push_back(i);
    std::vector<LineFamily> families;
    for (auto& [system, indices] : systems) {
        // Sums then come out the same whatever the order of the plan.
        std::ranges::sort(indices, {}, [&](std::size_t i) { return results.lines[i].line; });
        const std::complex<double> axis = common_axis(results, indices);
        const TrackPoint origin = results.lines[indices.front()].track.front();
        bool ground = true;
        for (const std::size_t i : indices)
            for (const BodyResult& body : results.lines[i].bodies)
                ground = ground && std::isfinite(body.depth_below_ground.value);
        std::vector<std::size_t> rest = indices;
        for (const std::complex<double> turned : {axis, axis * std::complex<double>(0, 1)}) {
            const FamilyAxes axes{origin.east, origin.north, turned};
            LineFamily family;
            family.coordinate_system = system;
            family.axis_east = turned.real(), family.axis_north = turned.imag();
            family.origin_east_ = origin.east, family.origin_north_ = origin.north;
            std::vector<std::size_t> others;
            for (const std::size_t i : rest) {
                const std::complex<double> way = way_of(results.lines[i].track) * std::conj(turned);
                if (std::abs(way.real()) < std::abs(way.imag())) {
                    others.push_back(i);
                    continue;
                }
                family.lines.push_back(laid_line(results.lines[i], i, axes));
                for (std::size_t k = 0; k < results.lines[i].bodies.size(); ++k) {
                    const BodyResult& body = results.lines[i].bodies[k];
                    if (!goes_on(body) || !is_known({body.east, body.north})) continue;
                    LaidBody laid = laid_body(body, axes, ground);
                    laid.line = i, laid.body = k;
                    family.bodies.push_back(laid);
                }
            }
            rest = std::move(others);
            if (family.lines.empty()) continue;
            family.settle(results);
            families.push_back(std::move(family));
        }
    }
    return families;
}

}  // namespace anomalis::survey
