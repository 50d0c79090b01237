#include "show/survey_map.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "chart/ax_grapher.h"
#include "chart/tick_rule.h"
#include "edit/colour_ramp.h"
#include "intake/survey/survey_index.h"
#include "show/chart_look.h"

namespace anomalis::show {

namespace {

using chart::units_per_screen_pixel;

constexpr int shades = 64;                         // of the ramp that are told apart
constexpr chart::Colour no_value_grey = 0xB4B4B4;  // a place without a reading
constexpr chart::Colour chosen_red = 0x2827D6;     // no colour of the ramp
constexpr int chosen_width = 3;                    // screen pixels
constexpr int casing_width = 6;                    // the white about the chosen line
constexpr double name_gap = 4 * units_per_screen_pixel;
constexpr double hit_reach = 12 * units_per_screen_pixel;
constexpr std::size_t most_names = 400;
constexpr double bar_numbers = 1.0;  // the ramp's own axis runs from 0 to 1 and has no numbers

std::vector<double> values_of(const intake::SurveyIndex& index) {
    std::vector<double> values;
    for (const intake::SurveyLineInfo& line : index.lines)
        for (const intake::MapPoint& point : line.track)
            if (std::isfinite(point.value)) values.push_back(static_cast<double>(point.value));
    return values;
}

double part_of(std::vector<double>& values, double part) {
    const auto at = values.begin() +
                    static_cast<std::ptrdiff_t>(std::lround(part * static_cast<double>(values.size() - 1)));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

std::string unit_of(const intake::SurveyIndex& index) {
    const bool magnetic = std::ranges::any_of(
        index.lines, [](const intake::SurveyLineInfo& line) { return line.mag_nT.has_value(); });
    return magnetic ? "nT" : "mGal";
}

chart::Colour colour_of(float value, const MapColours& colours) {
    if (!std::isfinite(value)) return no_value_grey;
    const double part = (static_cast<double>(value) - colours.low) / (colours.high - colours.low);
    const double shade = std::floor(std::clamp(part, 0.0, 1.0) * (shades - 1) + 0.5);
    return edit::ramp_colour(shade / (shades - 1));
}

void open_to(double& low, double& high, double span) {
    const double more = (span - (high - low)) / 2;
    low -= more;
    high += more;
}

bool overlap(const chart::Rect& a, const chart::Rect& b) {
    return a.x_low < b.x_high && b.x_low < a.x_high && a.y_low < b.y_high && b.y_low < a.y_high;
}

bool within(const chart::Rect& inner, const chart::Rect& outer) {
    return outer.contains({inner.x_low, inner.y_low}) && outer.contains({inner.x_high, inner.y_high});
}

chart::Rect survey_extent(const intake::SurveyIndex& index) {
    constexpr double far = 1e300;
    chart::Rect extent{far, -far, far, -far};
    for (const intake::SurveyLineInfo& line : index.lines)
        for (const intake::MapPoint& point : line.track) {
            extent.x_low = std::min(extent.x_low, static_cast<double>(point.east));
            extent.x_high = std::max(extent.x_high, static_cast<double>(point.east));
            extent.y_low = std::min(extent.y_low, static_cast<double>(point.north));
            extent.y_high = std::max(extent.y_high, static_cast<double>(point.north));
        }
    if (!(extent.x_low <= extent.x_high)) extent = {0, 0, 0, 0};
    const double margin = std::max({extent.width(), extent.height(), 1.0}) / 25;
    open_to(extent.x_low, extent.x_high, extent.width() + 2 * margin);
    open_to(extent.y_low, extent.y_high, extent.height() + 2 * margin);
    return {extent.x_low + index.origin_east, extent.x_high + index.origin_east,
            extent.y_low + index.origin_north, extent.y_high + index.origin_north};
}

/// Of all tracks together, m.
double track_length(const intake::SurveyIndex& index) {
    double length = 0;
    for (const intake::SurveyLineInfo& line : index.lines)
        for (std::size_t i = 1; i < line.track.size(); ++i)
            length += static_cast<double>(std::hypot(line.track[i].east - line.track[i - 1].east,
                                                     line.track[i].north - line.track[i - 1].north));
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

MapColours map_colours(const intake::SurveyIndex& index) {
    constexpr double low_part = 0.02, high_part = 0.98;
    MapColours colours;
    std::vector<double> values = values_of(index);
    if (values.empty()) return colours;
    colours.unit = unit_of(index);
    const auto [least, greatest] = std::ranges::minmax(values);
    colours.low = part_of(values, low_part);
    colours.high = part_of(values, high_part);
    if (!(colours.high > colours.low)) {
        colours.low = least;
        colours.high = greatest;
    }
    if (!(colours.high > colours.low)) open_to(colours.low, colours.high, 1.0);
    colours.cut = least < colours.low || greatest > colours.high;
    return colours;
}

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
    const chart::Rect extent = survey_extent(*index_);
    const double area = extent.width() * extent.height() * pixels_a_metre * pixels_a_metre;
    const double spacing = length > 0 ? area / length : 100;
    return spacing > 9 ? 3 : spacing > 5 ? 2 : 1;
}

void SurveyMap::register_tracks() {
    struct Columns {
        std::vector<double> east, north;
        std::vector<chart::Colour> colours;
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
            for (std::size_t p = 0; p < line.track.size(); ++p) {
                const chart::Point at = user(i, p);
                own.east.push_back(at.x);
                own.north.push_back(at.y);
                own.colours.push_back(colour_of(line.track[p].value, colours_));
            }
            tracks.push_back({own.east, own.north, own.colours, tie ? 1 : wide});
        }
    map_.RegisterTracks(tracks);
}

void SurveyMap::draw_bar() {
    if (colours_.unit.empty()) return;
    bar_.Title(colours_.unit);
    bar_.XAxisMin(0.1 * bar_numbers);
    bar_.XAxisMax(0.9 * bar_numbers);
    bar_.XTickInterval(10 * bar_numbers);
    bar_.YAxisMin(colours_.low);
    bar_.YAxisMax(colours_.high);
    bar_.YTickInterval(chart::tick_interval(colours_.low, colours_.high));
    for (int i = 0; i < shades; ++i) {
        const auto at = [&](int step) {
            return std::lerp(colours_.low, colours_.high, static_cast<double>(step) / shades);
        };
        bar_.DrawRectangle(0, at(i), bar_numbers, at(i + 1), chart::no_colour,
                           edit::ramp_colour(static_cast<double>(i) / (shades - 1)), 1);
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
