#include "show/survey_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "chart/ax_grapher.h"
#include "chart/tick_rule.h"
#include "intake/survey/survey_index.h"
#include "show/chart_look.h"
#include "show/map_parts.h"

namespace anomalis::show {

namespace {

using chart::units_per_screen_pixel;

constexpr double bar_numbers = 1.0;  // the ramp's own axis runs from 0 to 1 and has no numbers

/// Of all places, m from the origin of the index.
chart::Rect track_box(const intake::SurveyIndex& index) {
    constexpr double far = 1e300;
    chart::Rect extent{far, -far, far, -far};
    for (const intake::SurveyLineInfo& line : index.lines)
        for (const intake::MapPoint& point : line.track) {
            extent.x_low = std::min(extent.x_low, static_cast<double>(point.east));
            extent.x_high = std::max(extent.x_high, static_cast<double>(point.east));
            extent.y_low = std::min(extent.y_low, static_cast<double>(point.north));
            extent.y_high = std::max(extent.y_high, static_cast<double>(point.north));
        }
    return extent.x_low <= extent.x_high ? extent : chart::Rect{0, 0, 0, 0};
}

chart::Rect survey_extent(const intake::SurveyIndex& index) {
    const chart::Rect extent = track_box(index);
    return {extent.x_low + index.origin_east, extent.x_high + index.origin_east,
            extent.y_low + index.origin_north, extent.y_high + index.origin_north};
}

/// From the place before, m.
double step(const intake::SurveyLineInfo& line, std::size_t point) {
    const intake::MapPoint &a = line.track[point - 1], &b = line.track[point];
    return static_cast<double>(std::hypot(b.east - a.east, b.north - a.north));
}

/// A track stays open over more than some typical steps: nobody measured there.
double longest_step(const intake::SurveyLineInfo& line) {
    constexpr double typical_steps = 10;
    std::vector<double> steps;
    for (std::size_t p = 1; p < line.track.size(); ++p) steps.push_back(step(line, p));
    return steps.empty() ? 0 : typical_steps * part_of(steps, 0.5);
}

/// Of all tracks together, m.
double track_length(const intake::SurveyIndex& index) {
    double length = 0;
    for (const intake::SurveyLineInfo& line : index.lines)
        for (std::size_t i = 1; i < line.track.size(); ++i) length += step(line, i);
    return length;
}

/// The points of a track that belong to a piece: tracks are thinned evenly over the stations of a line.
std::array<std::size_t, 2> points_of(const intake::SurveyLineInfo& line, std::optional<std::size_t> piece) {
    const std::size_t count = line.track.size();
    if (!piece || *piece >= line.pieces.size() || line.stations < 2) return {0, count};
    const double a_station = static_cast<double>(count - 1) / static_cast<double>(line.stations - 1);
    const auto at = [&](long station) {
        return static_cast<std::size_t>(std::lround(static_cast<double>(station) * a_station));
    };
    return {std::min(at(line.pieces[*piece].first), count),
            std::min(at(line.pieces[*piece].last) + 1, count)};
}

}  // namespace

void set_up_survey_map(chart::AX_Grapher& map, chart::AX_Grapher& bar) {
    take_map_look(map);
    take_chart_look(bar);
    bar.ChartType(1);
    bar.YAxisLabellingPosition(1);
    bar.ZoomEnabled(false);
    bar.Crosshair(false);
}

SurveyMap::SurveyMap(chart::AX_Grapher& map, chart::AX_Grapher& bar) : map_(map), bar_(bar) {}

void SurveyMap::show(const intake::SurveyIndex* index, std::optional<std::size_t> chosen) {
    index_ = index;
    chosen_ = chosen;
    piece_.reset();
    named_.clear();
    map_.Clear();
    bar_.Clear();
    if (!index_) return;
    colours_ = map_colours(*index_);
    map_.Title(colours_.unit.empty() ? "Survey" : colours_.unit == "nT" ? "Magnetics" : "Gravity");
    frame_map(map_, survey_extent(*index_));
    register_tracks();
    record_overlay();
    map_.DisplayChart();
    draw_bar();
}

void SurveyMap::choose(std::optional<std::size_t> line, std::optional<std::size_t> piece) {
    if (!index_ || (line == chosen_ && piece == piece_)) return;
    chosen_ = line;
    piece_ = piece;
    record_overlay();
    map_.RefreshGraph(1);
}

void SurveyMap::view_changed() {
    if (!index_) return;
    record_overlay();
    map_.RefreshGraph(1);
}

/// Lines that lie close to each other are thin: their colours are the map then.
int SurveyMap::line_width() const {
    const double spacing =
        track_spacing(map_, track_box(*index_), track_length(*index_), index_->lines.size());
    return spacing > 9 ? 3 : spacing > 5 ? 2 : 1;
}

void SurveyMap::register_tracks() {
    struct Columns {
        std::vector<double> east, north;
        std::vector<chart::Colour> colours;
        void leave_open() {
            east.push_back(std::numeric_limits<double>::quiet_NaN());
            north.push_back(std::numeric_limits<double>::quiet_NaN());
            colours.push_back(no_value_grey);
        }
    };
    const int wide = line_width();
    std::vector<Columns> columns(index_->lines.size());
    std::vector<chart::ChartTrack> tracks;
    // Ties first: lines lie on them.
    for (const bool tie : {true, false})
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const intake::SurveyLineInfo& line = index_->lines[i];
            if (line.tie != tie) continue;
            Columns& own = columns[i];
            const double jump = longest_step(line);
            for (std::size_t p = 0; p < line.track.size(); ++p) {
                const chart::Point at = user(i, p);
                if (p > 0 && step(line, p) > jump) own.leave_open();
                own.east.push_back(at.x);
                own.north.push_back(at.y);
                own.colours.push_back(map_colour(line.track[p].value, colours_));
            }
            tracks.push_back({own.east, own.north, own.colours, tie ? 1 : wide});
        }
    map_.RegisterTracks(tracks);
}

void SurveyMap::draw_bar() {
    if (colours_.unit.empty()) return;
    bar_.Title(colours_.unit);
    bar_.XAxisLabel(" ");  // its room, so that both plots end at one height
    bar_.XAxisMin(0.1 * bar_numbers);
    bar_.XAxisMax(0.9 * bar_numbers);
    bar_.XTickInterval(10 * bar_numbers);
    bar_.YAxisMin(colours_.low);
    bar_.YAxisMax(colours_.high);
    bar_.YTickInterval(chart::tick_interval(colours_.low, colours_.high));
    for (int i = 0; i < ramp_shades; ++i) {
        const auto at = [&](int step) {
            return std::lerp(colours_.low, colours_.high, static_cast<double>(step) / ramp_shades);
        };
        // Each reaches to the end below those that follow: between two edges the ground would show.
        bar_.DrawRectangle(0, at(i), bar_numbers, colours_.high, chart::no_colour, ramp_shade(i), 1);
    }
    bar_.DisplayChart();
}

chart::Point SurveyMap::user(std::size_t line, std::size_t point) const {
    const intake::MapPoint& at = index_->lines[line].track[point];
    return {static_cast<double>(at.east) + index_->origin_east,
            static_cast<double>(at.north) + index_->origin_north};
}

void SurveyMap::record_overlay() {
    map_.ClearSavedGraphics();
    if (chosen_ && *chosen_ < index_->lines.size()) record_chosen();
    record_names();
}

void SurveyMap::record_chosen() {
    const auto [first, last] = points_of(index_->lines[*chosen_], piece_);
    std::vector<chart::Point> track;
    for (std::size_t i = first; i < last; ++i) track.push_back(user(*chosen_, i));
    draw_chosen_track(map_, track);
}

void SurveyMap::record_names() {
    named_.clear();
    MapNames names(map_);
    if (chosen_ && *chosen_ < index_->lines.size()) record_name(*chosen_, names);
    for (std::size_t i = 0; i < index_->lines.size() && !names.full(); ++i)
        if (i != chosen_) record_name(i, names);
}

void SurveyMap::record_name(std::size_t line, MapNames& names) {
    const intake::SurveyLineInfo& info = index_->lines[line];
    if (info.track.empty()) return;
    const std::size_t ahead = std::min<std::size_t>(info.track.size() - 1, 8);
    if (names.place(info.name, user(line, 0), user(line, ahead))) named_.push_back(line);
}

std::optional<std::size_t> SurveyMap::line_at(chart::Point surface) const {
    if (!index_ || !map_.HasPlotDefined() || !map_.PlotRect().contains(surface)) return std::nullopt;
    const chart::Point at = map_.SurfaceToUser(surface);
    const chart::Point place{at.x - index_->origin_east, at.y - index_->origin_north};
    const auto point = [](const intake::MapPoint& p) {
        return chart::Point{static_cast<double>(p.east), static_cast<double>(p.north)};
    };
    const double reach = track_reach / map_.XAxisScale();
    double nearest = reach * reach;
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < index_->lines.size(); ++i) {
        const std::vector<intake::MapPoint>& track = index_->lines[i].track;
        for (std::size_t p = 0; p < track.size(); ++p) {
            // To the foot on the piece to the next place: thinned places can be far apart.
            const double distance =
                squared_distance(place, point(track[p]), point(track[std::min(p + 1, track.size() - 1)]));
            if (distance < nearest) {
                nearest = distance;
                found = i;
            }
        }
    }
    return found;
}

}  // namespace anomalis::show
