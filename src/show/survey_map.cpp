#include "show/survey_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "chart/ax_grapher.h"
#include "chart/tick_rule.h"
#include "intake/survey/survey_index.h"
#include "show/chart_look.h"

namespace anomalis::show {

namespace {

using chart::units_per_screen_pixel;

constexpr chart::Colour chosen_red = 0x2827D6;  // no colour of the ramp
constexpr int chosen_width = 3;                 // screen pixels
constexpr int casing_width = 6;                 // the white about the chosen line
constexpr double name_gap = 4 * units_per_screen_pixel;
constexpr double hit_reach = 12 * units_per_screen_pixel;
constexpr std::size_t most_names = 400;
constexpr double bar_numbers = 1.0;  // the ramp's own axis runs from 0 to 1 and has no numbers

void open_to(double& low, double& high, double span) {
    const double more = (span - (high - low)) / 2;
    low -= more;
    high += more;
}

double part_of(std::vector<double>& values, double part) {
    const auto at = values.begin() +
                    static_cast<std::ptrdiff_t>(std::lround(part * static_cast<double>(values.size() - 1)));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

bool overlap(const chart::Rect& a, const chart::Rect& b) {
    return a.x_low < b.x_high && b.x_low < a.x_high && a.y_low < b.y_high && b.y_low < a.y_high;
}

bool within(const chart::Rect& inner, const chart::Rect& outer) {
    return outer.contains({inner.x_low, inner.y_low}) && outer.contains({inner.x_high, inner.y_high});
}

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
    chart::Rect extent = track_box(index);
    const double margin = std::max({extent.width(), extent.height(), 1.0}) / 10;
    open_to(extent.x_low, extent.x_high, extent.width() + 2 * margin);
    open_to(extent.y_low, extent.y_high, extent.height() + 2 * margin);
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
    constexpr float side_room = 12 * units_per_screen_pixel;
    for (chart::AX_Grapher* chart : {&map, &bar}) {
        take_chart_look(*chart);
        chart->ChartType(1);
    }
    map.XAxisLabel("East (m)");
    map.YAxisLabel("North (m)");
    map.XAxisRightMargin(side_room);
    map.EqualScales(true);
    map.Crosshair(false);
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
    set_limits();
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

void SurveyMap::set_limits() {
    const chart::Rect extent = survey_extent(*index_);
    map_.XAxisMin(extent.x_low);
    map_.XAxisMax(extent.x_high);
    map_.YAxisMin(extent.y_low);
    map_.YAxisMax(extent.y_high);
    // The ticks hang on what is shown, which hangs on the room that their numbers take.
    map_.Layout();
    const chart::Rect shown = map_.FullRange();
    constexpr double pixels_a_number = 90;
    const auto interval = [](double low, double high, double units) {
        const int most =
            std::clamp(static_cast<int>(units / (pixels_a_number * units_per_screen_pixel)), 2, 8);
        return chart::tick_interval(low, high, most);
    };
    map_.XTickInterval(interval(shown.x_low, shown.x_high, map_.PlotRect().width()));
    map_.YTickInterval(interval(shown.y_low, shown.y_high, map_.PlotRect().height() * 1.5));
    map_.Layout();
}

/// Lines that lie close to each other are thin: their colours are the map then.
int SurveyMap::line_width() const {
    const double pixels_a_metre = map_.XAxisScale() / units_per_screen_pixel;
    const double length = track_length(*index_) * pixels_a_metre;
    const chart::Rect extent = track_box(*index_);
    const double area = extent.width() * extent.height() * pixels_a_metre * pixels_a_metre;
    constexpr std::size_t few_lines = 3;
    const double spacing = length > 0 && index_->lines.size() > few_lines ? area / length : 100;
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
    for (const auto& [colour, width] : {std::pair(chart::white, casing_width), {chosen_red, chosen_width}}) {
        std::optional<chart::Point> from, from_surface;
        for (std::size_t i = first; i < last; ++i) {
            const chart::Point to = user(*chosen_, i);
            const chart::Point surface = map_.UserToSurface(to);
            const bool near = from && i + 1 < last &&
                              std::abs(surface.x - from_surface->x) < 2 * units_per_screen_pixel &&
                              std::abs(surface.y - from_surface->y) < 2 * units_per_screen_pixel;
            if (near) continue;
            if (from) map_.DrawLine(from->x, from->y, to.x, to.y, colour, width);
            from = to;
            from_surface = surface;
        }
    }
}

void SurveyMap::record_names() {
    named_.clear();
    std::vector<chart::Rect> taken;
    if (chosen_ && *chosen_ < index_->lines.size() && record_name(*chosen_, taken))
        named_.push_back(*chosen_);
    for (std::size_t i = 0; i < index_->lines.size() && named_.size() < most_names; ++i)
        if (i != chosen_ && record_name(i, taken)) named_.push_back(i);
}

/// Beside the beginning of the line, on the side that the line leaves free.
bool SurveyMap::record_name(std::size_t line, std::vector<chart::Rect>& taken) {
    const intake::SurveyLineInfo& info = index_->lines[line];
    if (info.track.empty() || info.name.empty()) return false;
    const chart::Point begin = map_.UserToSurface(user(line, 0));
    const chart::Point ahead =
        map_.UserToSurface(user(line, std::min<std::size_t>(info.track.size() - 1, 8)));
    const double width = map_.TextWidth(info.name), height = map_.TextHeight();
    const double dx = ahead.x - begin.x, dy = ahead.y - begin.y;
    chart::Point corner{begin.x - width / 2, begin.y - height / 2};
    if (std::abs(dx) >= std::abs(dy))
        corner.x = dx >= 0 ? begin.x - name_gap - width : begin.x + name_gap;
    else
        corner.y = dy >= 0 ? begin.y - name_gap - height : begin.y + name_gap;
    chart::Rect box{corner.x, corner.x + width, corner.y, corner.y + height};
    const chart::Rect plot = map_.PlotRect();
    if (!plot.contains(begin)) return false;
    // At an edge of the plot it moves in beside the line.
    const double right =
        std::max(plot.x_low + name_gap - box.x_low, 0.0) - std::max(box.x_high - plot.x_high + name_gap, 0.0);
    const double up =
        std::max(plot.y_low + name_gap - box.y_low, 0.0) - std::max(box.y_high - plot.y_high + name_gap, 0.0);
    box = {box.x_low + right, box.x_high + right, box.y_low + up, box.y_high + up};
    if (!within(box, plot)) return false;
    if (std::ranges::any_of(taken, [&](const chart::Rect& other) { return overlap(box, other); }))
        return false;
    const chart::Point place = map_.SurfaceToUser({box.x_low, box.y_low});
    map_.DrawText(0, place.x, place.y, info.name);
    taken.push_back(box);
    return true;
}

std::optional<std::size_t> SurveyMap::line_at(chart::Point surface) const {
    if (!index_ || !map_.HasPlotDefined() || !map_.PlotRect().contains(surface)) return std::nullopt;
    const chart::Point at = map_.SurfaceToUser(surface);
    const auto east = static_cast<float>(at.x - index_->origin_east);
    const auto north = static_cast<float>(at.y - index_->origin_north);
    const auto reach = static_cast<float>(hit_reach / map_.XAxisScale());
    float nearest = reach * reach;
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < index_->lines.size(); ++i) {
        const std::vector<intake::MapPoint>& track = index_->lines[i].track;
        for (std::size_t p = 0; p < track.size(); ++p) {
            // The foot on the piece to the next place: thinned places can be far apart.
            const intake::MapPoint &a = track[p], &b = track[std::min(p + 1, track.size() - 1)];
            const float de = b.east - a.east, dn = b.north - a.north;
            const float length = de * de + dn * dn;
            const float t =
                length > 0 ? std::clamp(((east - a.east) * de + (north - a.north) * dn) / length, 0.0F, 1.0F)
                           : 0.0F;
            const float e = east - (a.east + t * de), n = north - (a.north + t * dn);
            const float distance = e * e + n * n;
            if (distance < nearest) {
                nearest = distance;
                found = i;
            }
        }
    }
    return found;
}

}  // namespace anomalis::show
