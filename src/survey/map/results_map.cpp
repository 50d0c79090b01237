#include "survey/map/results_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <utility>

#include "chart/ax_grapher.h"
#include "show/chart_look.h"
#include "show/map_colours.h"
#include "show/map_parts.h"
#include "survey/map/results_map_key.h"
#include "survey/map/results_map_looks.h"

namespace anomalis::survey {

namespace {

constexpr double dot_reach = 4 * map_pixel;  // beyond the edge of a dot
constexpr double ring_gap = 3 * map_pixel;
constexpr double open_place = std::numeric_limits<double>::quiet_NaN();

/// Tracks of one colour and width.
struct Strokes {
    std::vector<double> east, north;
    std::vector<chart::Colour> colours;

    void point(double e, double n) {
        east.push_back(e);
        north.push_back(n);
    }
    void line(chart::Point from, chart::Point to) {
        point(from.x, from.y);
        point(to.x, to.y);
        point(open_place, open_place);
    }
    chart::ChartTrack track(chart::Colour colour, int width) {
        colours.assign(east.size(), colour);
        return {east, north, colours, width};
    }
};

chart::Point track_place(const TrackPoint& point) {
    return {point.east, point.north};
}

}  // namespace

std::vector<StrikeTrace> strike_traces(const std::vector<JoinedBody>& joined) {
    std::vector<StrikeTrace> traces;
    for (const JoinedBody& body : joined) traces.push_back({body.start, body.end, body.coordinate_system});
    return traces;
}

void set_up_results_map(chart::AX_Grapher& map, chart::AX_Grapher& key) {
    show::take_map_look(map);
    show::take_chart_look(key);
    key.DisplayAxes(false);
    key.DisplayBorder(false);
    key.ZoomEnabled(false);
    key.Crosshair(false);
}

ResultsMap::ResultsMap(chart::AX_Grapher& map, chart::AX_Grapher& key) : map_(map), key_(key) {}

void ResultsMap::show(const SurveyResults* results, ResultsMapMarks marks, bool keep_view) {
    const chart::ZoomValues zoom = map_.CurrentZoom();
    results_ = results;
    marks_ = std::move(marks);
    named_.clear();
    tops_ = {};
    map_.Clear();
    key_.Clear();
    if (!results_) return;
    if (line_ && *line_ >= results_->lines.size()) line_.reset();
    if (!line_ || (body_ && *body_ >= results_->lines[*line_].bodies.size())) body_.reset();
    tops_ = map_tops(*results_);
    std::vector<double> depths, amounts;
    for (const MapTop& top : tops_.tops) {
        depths.push_back(top.depth);
        amounts.push_back(top.amount);
    }
    depths_ = depth_scale(std::move(depths));
    sizes_ = size_scale(std::move(amounts));
    map_.Title(results_->identity.name);
    frame();
    take_room();
    register_tracks();
    register_dots();
    record_overlay();
    map_.DisplayChart();
    if (keep_view && zoom != chart::ZoomValues{}) {
        map_.SetZoomValues(zoom.zoom_x, zoom.centre_x, zoom.zoom_y, zoom.centre_y);
        view_changed();
    } else {
        draw_key();
    }
}

/// Names stand beside the lines, not on them, where the map is wide enough for both.
void ResultsMap::frame() {
    constexpr double most_of_plot = 0.25, gaps = 12 * map_pixel;
    chart::Rect extent = marks_.area.value_or(tops_.extent);
    show::frame_map(map_, extent);
    if (marks_.area) return;
    double widest = 0;
    for (const std::size_t i : tops_.lines) widest = std::max(widest, map_.TextWidth(name_of(i)));
    const double room = std::min(widest + gaps, most_of_plot * map_.PlotRect().width());
    const double before = (map_.UserToSurface({extent.x_low, extent.y_low}).x - map_.PlotRect().x_low);
    if (!(before < room) || !(map_.XAxisScale() > 0)) return;
    const double inner = map_.PlotRect().width() - 2 * room;
    const double more = (room - before) * extent.width() / inner;
    extent.x_low -= more;
    extent.x_high += more;
    show::frame_map(map_, extent);
}

/// Dots of neighbouring lines leave each other room.
void ResultsMap::take_room() {
    constexpr double least = 2.5, most = 9, of_spacing = 0.45;
    const double spacing = show::track_spacing(map_, tops_.extent, tops_.length_m, tops_.lines.size());
    greatest_ = std::round(2 * std::clamp(of_spacing * spacing, least, most)) / 2 * map_pixel;
}

void ResultsMap::register_tracks() {
    Strokes lines, failed, strikes, intervals;
    for (const std::size_t i : tops_.lines) {
        const LineResult& line = results_->lines[i];
        Strokes& own = line.status == LineStatus::failed ? failed : lines;
        for (const TrackPoint& point : line.track) own.point(point.east, point.north);
        own.point(open_place, open_place);
    }
    for (const StrikeTrace& trace : marks_.strikes)
        if (trace.coordinate_system == tops_.system)
            strikes.line(track_place(trace.from), track_place(trace.to));
    for (const MapTop& top : tops_.tops)
        if (top.interval) intervals.line(top.interval->front(), top.interval->back());
    const StrokeLooks looks = stroke_looks(greatest_);
    const std::array tracks{lines.track(looks.line, line_width), failed.track(failed_orange, failed_width),
                            strikes.track(strike_black, strike_width),
                            intervals.track(interval_grey, looks.interval)};
    map_.RegisterTracks(tracks);
}

double ResultsMap::radius_of(const MapTop& top) const {
    const double part = tops_.amount == MapAmount::none ? 0.7 : sizes_.part(top.amount);
    return greatest_ * part;
}

chart::ChartDot ResultsMap::dot_of(const MapTop& top) const {
    return edged_dot(radius_of(top), depth_colour(top.depth, depths_),
                     greatest_ < least_with_holes ? 0 : hole_of(top.doubt));
}

/// Large ones below, so that a small one is not hidden.
void ResultsMap::register_dots() {
    std::vector<chart::ChartDot> dots;
    dots.reserve(tops_.tops.size());
    const bool both = tops_.below_ground > 0;
    for (const MapTop& top : tops_.tops) {
        chart::ChartDot& dot = dots.emplace_back(dot_of(top));
        dot.x = top.place.x;
        dot.y = top.place.y;
        if (flag_of(top.line) == LineFlag::reject)
            dot.shape = chart::DotShape::cross;
        else if (both && top.below_sensor)
            dot.shape = chart::DotShape::square;
    }
    std::ranges::stable_sort(
        dots, [](const chart::ChartDot& a, const chart::ChartDot& b) { return a.radius > b.radius; });
    map_.RegisterDots(dots);
}

void ResultsMap::choose(std::optional<std::size_t> line, std::optional<std::size_t> body) {
    if (!results_ || (line == line_ && body == body_)) return;
    if (line && *line >= results_->lines.size()) line.reset();
    line_ = line;
    body_ = line ? body : std::nullopt;
    record_overlay();
    map_.RefreshGraph(1);
}

void ResultsMap::view_changed() {
    if (!results_) return;
    const double before = greatest_;
    take_room();
    const bool other_dots = greatest_ != before;
    if (other_dots) {
        register_tracks();
        register_dots();
    }
    record_overlay();
    map_.RefreshGraph(other_dots ? 0 : 1);
    draw_key();
}

void ResultsMap::draw_key() {
    ResultsKey key{tops_, depths_, sizes_, greatest_, !marks_.strikes.empty(), {}};
    for (const LineFlag flag : {LineFlag::accept, LineFlag::look_again, LineFlag::reject})
        if (flagged(flag)) key.flags.push_back(flag);
    draw_results_key(key_, key);
}

void ResultsMap::record_overlay() {
    map_.ClearSavedGraphics();
    if (line_) record_chosen();
    record_flags();
    record_names();
}

/// The line with its bodies over it, and a ring about the chosen one.
void ResultsMap::record_chosen() {
    constexpr int corners = 24;
    std::vector<chart::Point> track;
    if (std::ranges::binary_search(tops_.lines, *line_))
        for (const TrackPoint& point : results_->lines[*line_].track) track.push_back(track_place(point));
    show::draw_chosen_track(map_, track);
    const auto ring = [&](const MapTop& top, double radius, chart::Colour pen, chart::Colour fill,
                          int width) {
        std::array<double, corners> east{}, north{};
        for (std::size_t i = 0; i < corners; ++i) {
            const double angle = 2 * std::numbers::pi * static_cast<double>(i) / corners;
            east.at(i) = top.place.x + radius / map_.XAxisScale() * std::cos(angle);
            north.at(i) = top.place.y + radius / map_.YAxisScale() * std::sin(angle);
        }
        map_.DrawPolygon(corners, east.data(), north.data(), pen, fill, width);
    };
    for (const MapTop& top : tops_.tops) {
        if (top.line != *line_) continue;
        const double radius = radius_of(top);
        if (top.body == body_) {
            ring(top, radius + ring_gap, chart::white, chart::white, 1);
            ring(top, radius + ring_gap, show::chosen_red, chart::no_colour, 2);
        }
        const chart::ChartDot dot = dot_of(top);
        ring(top, dot.radius, dot.edge, dot.fill, 1);
        if (dot.hole > 0) ring(top, dot.hole * dot.radius, chart::no_colour, chart::white, 1);
    }
}

bool ResultsMap::flagged(LineFlag flag) const {
    return std::ranges::any_of(tops_.lines, [&](std::size_t line) { return flag_of(line) == flag; });
}

/// Beyond the last place of a line; its name stands before the first.
void ResultsMap::record_flags() {
    constexpr double beyond = 10 * map_pixel;
    map_.MarkerSize(flag_size);
    for (const std::size_t i : tops_.lines) {
        const LineFlag flag = flag_of(i);
        if (flag == LineFlag::none) continue;
        const std::vector<TrackPoint>& track = results_->lines[i].track;
        const std::size_t last = track.size() - 1;
        chart::Point at = map_.UserToSurface(track_place(track[last]));
        const chart::Point before =
            map_.UserToSurface(track_place(track[std::max<std::size_t>(last, 1) - 1]));
        const double length = std::hypot(at.x - before.x, at.y - before.y);
        if (length > 0)
            at = {at.x + beyond * (at.x - before.x) / length, at.y + beyond * (at.y - before.y) / length};
        const chart::Point place = map_.SurfaceToUser(at);
        map_.DrawMarker(place.x, place.y, flag_marker(flag), flag_colour(flag), flag_width);
    }
}

void ResultsMap::record_names() {
    named_.clear();
    show::MapNames names(map_);
    if (line_ && std::ranges::binary_search(tops_.lines, *line_)) record_name(*line_, names);
    for (const LineStatus status : {LineStatus::failed, LineStatus::done})
        for (const std::size_t i : tops_.lines)
            if (i != line_ && results_->lines[i].status == status && !names.full()) record_name(i, names);
}

std::string ResultsMap::name_of(std::size_t line) const {
    const LineResult& own = results_->lines[line];
    return own.status == LineStatus::failed ? own.line + " failed" : own.line;
}

void ResultsMap::record_name(std::size_t line, show::MapNames& names) {
    const LineResult& own = results_->lines[line];
    const chart::Rect view = map_.ViewLimits();
    for (std::size_t p = 0; p < own.track.size(); ++p) {
        const chart::Point from = track_place(own.track[p]);
        const chart::Point to = track_place(own.track[std::min(p + 1, own.track.size() - 1)]);
        const std::optional<chart::Point> entry = show::entry_into(view, from, to);
        if (!entry) continue;
        if (names.place(name_of(line), *entry, to)) named_.push_back(line);
        return;
    }
}

std::optional<ResultsMap::Hit> ResultsMap::hit(chart::Point surface) const {
    if (!results_ || !map_.HasPlotDefined() || !map_.PlotRect().contains(surface)) return std::nullopt;
    const chart::Point at = map_.SurfaceToUser(surface);
    const double scale = map_.XAxisScale();
    std::optional<Hit> found;
    double nearest = std::numeric_limits<double>::infinity();
    for (const MapTop& top : tops_.tops) {
        const double distance = std::hypot(at.x - top.place.x, at.y - top.place.y);
        if (distance < nearest && distance * scale <= radius_of(top) + dot_reach) {
            nearest = distance;
            found = Hit{top.line, top.body};
        }
    }
    if (found) return found;
    nearest = std::pow(show::track_reach / scale, 2);
    for (const std::size_t i : tops_.lines) {
        const std::vector<TrackPoint>& track = results_->lines[i].track;
        for (std::size_t p = 0; p < track.size(); ++p) {
            const double distance = show::squared_distance(
                at, track_place(track[p]), track_place(track[std::min(p + 1, track.size() - 1)]));
            if (distance >= nearest) continue;
            nearest = distance;
            found = Hit{i, {}};
        }
    }
    return found;
}

}  // namespace anomalis::survey
