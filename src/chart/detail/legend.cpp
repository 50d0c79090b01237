#include "chart/detail/legend.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "chart/detail/legend_cover.h"
#include "chart/detail/series_line.h"

namespace anomalis::chart {

namespace {

constexpr double screen_pixel = units_per_screen_pixel;
constexpr double box_inset = 6.0 * screen_pixel;  // between frame and box
constexpr double box_edge = 5.0 * screen_pixel;   // between box and what is in it
constexpr double sample_length = 24.0 * screen_pixel;
constexpr double name_gap = 6.0 * screen_pixel;    // between sample and name
constexpr double entry_gap = 14.0 * screen_pixel;  // between entries side by side
constexpr double row_height = 1.2;                 // of the text
constexpr Colour box_grey = 0xC8C8C8;
constexpr double ramp_length = 130.0 * screen_pixel;
constexpr double ramp_height = 9.0 * screen_pixel;

/// What a legend may take of the plot.
constexpr double most_width = 0.9;
constexpr double most_rows = 0.5;
constexpr double most_height = 0.9;

bool is_blank(std::string_view name) {
    return name.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool has_values(const SeriesGroup& group, const SeriesData& data) {
    for (std::size_t i = 0; i < data.y.size() && i < group.x.size(); ++i)
        if (!is_null(data.y[i]) && !is_null(group.x[i])) return true;
    return false;
}

struct Entry {
    int series = 0;
    SeriesStyle style;
    double name_width = 0.0;
};

std::vector<Entry> entries_of(const GrapherState& state, Canvas& canvas) {
    std::vector<Entry> entries;
    const SeriesTable& table = state.series;
    for (int g = 1; g <= table.group_count(); ++g)
        for (int s = table.group(g).first; s <= table.group(g).last; ++s) {
            const SeriesData& data = table.series(s);
            const std::string& name = table.options(s).name;
            if (is_blank(name) || !has_values(table.group(g), data)) continue;
            entries.push_back(
                {s, series_style(data.code, state.properties.chart_type, state.properties.plot_points),
                 canvas.measure(name, FontRole::chart).width});
        }
    return entries;
}

/// Entries below each other, or side by side in a plot too low for that.
struct LegendForm {
    double row = 0.0;
    double width = 0.0;
    double height = 0.0;
    bool in_row = false;
};

double entry_width(const Entry& entry) {
    return sample_length + name_gap + entry.name_width;
}

LegendForm form_of(const std::vector<Entry>& entries, const ChartLayout& layout) {
    LegendForm form;
    form.row = row_height * layout.text_height;
    double widest = 0.0, sum = 0.0;
    for (const Entry& entry : entries) {
        widest = std::max(widest, entry_width(entry));
        sum += entry_width(entry) + (sum > 0.0 ? entry_gap : 0.0);
    }
    form.width = widest + 2.0 * box_edge;
    form.height = form.row * static_cast<double>(entries.size()) + box_edge;
    if (form.height > most_rows * layout.plot.height()) {
        form = {form.row, sum + 2.0 * box_edge, form.row + box_edge, true};
    }
    return form;
}

bool fits(double width, double height, const Rect& plot) {
    return width <= most_width * plot.width() && height + 2.0 * box_inset <= most_height * plot.height();
}

/// Corners by number: right above, left above, right below, left below.
Rect box_in_corner(const Rect& plot, int corner, double width, double height) {
    const double x = corner % 2 == 0 ? plot.x_high - box_inset - width : plot.x_low + box_inset;
    const double y = corner < 2 ? plot.y_high - box_inset - height : plot.y_low + box_inset;
    return {x, x + width, y, y + height};
}

/// The corner that is covered least, of those that are free. One that was taken before stays unless another
/// is clearly better: a legend that jumps while a body is moved is in the way.
int best_corner(const LegendCover& cover, const Rect& plot, double width, double height, int before,
                int taken) {
    constexpr int few = 4;
    constexpr int worth_a_move = 2;
    int best = -1, least = 0;
    std::array<int, 4> covered{};
    for (int corner = 0; corner < 4; ++corner) {
        covered.at(static_cast<std::size_t>(corner)) = cover.of(box_in_corner(plot, corner, width, height));
        if (corner == taken) continue;
        const int own = covered.at(static_cast<std::size_t>(corner));
        if (best < 0 || own < least) {
            best = corner;
            least = own;
        }
    }
    if (before < 0 || before == taken) return best;
    return covered.at(static_cast<std::size_t>(before)) <= worth_a_move * least + few ? before : best;
}

void paint_box(const GrapherState& state, Canvas& canvas, const Rect& box) {
    canvas.rectangle(box, box_grey, state.properties.back_colour, 1.0);
}

void paint_name(const GrapherState& state, Canvas& canvas, Point at, const std::string& words) {
    canvas.placed_text(at, 0.0, Canvas::clean_text(words), FontRole::chart, state.properties.fore_colour);
}

void paint_sample(const GrapherState& state, Canvas& canvas, const Entry& entry, double x, double y) {
    const SeriesOptions& options = state.series.options(entry.series);
    const SeriesData& data = state.series.series(entry.series);
    if (entry.style.bars) {
        const double half = 4.0 * screen_pixel;
        canvas.rectangle({x, x + sample_length, y - half, y + half}, options.colour, options.colour, 1.0);
    }
    if (entry.style.line) {
        const std::array points{Point{x, y}, Point{x + sample_length, y}};
        draw_series_line(canvas, points, options, state.properties.back_colour);
    }
    if (entry.style.markers) {
        const bool own = !data.markers.empty() && data.markers.front() != 0;
        const Point middle{x + sample_length / 2.0, y};
        canvas.markers(own ? data.markers.front() : options.marker, state.properties.marker_size,
                       options.colour, options.width, {&middle, 1});
    }
}

void paint_entries(const GrapherState& state, Canvas& canvas, const std::vector<Entry>& entries,
                   const LegendForm& form, const Rect& box) {
    paint_box(state, canvas, box);
    double x = box.x_low + box_edge;
    double y = box.y_high - box_edge / 2.0 - form.row / 2.0;
    for (const Entry& entry : entries) {
        paint_sample(state, canvas, entry, x, y);
        const std::string& name = state.series.options(entry.series).name;
        const double below = canvas.measure(name, FontRole::chart).height() / 2.0;
        paint_name(state, canvas, {x + sample_length + name_gap, y - below}, name);
        form.in_row ? x += entry_width(entry) + entry_gap : y -= form.row;
    }
}

/// Returns the corner that was taken, -1 for none.
int paint_series(GrapherState& state, LegendPlace place, const LegendCover& cover) {
    Canvas& canvas = state.canvas;
    const std::vector<Entry> entries = entries_of(state, canvas);
    if (entries.empty()) return -1;
    const LegendForm form = form_of(entries, state.layout);
    const Rect& plot = state.layout.plot;
    if (!fits(form.width, form.height, plot)) return -1;
    const bool on_screen = place == LegendPlace::of_screen;
    const int corner =
        best_corner(cover, plot, form.width, form.height, on_screen ? state.legend_corner : -1, -1);
    if (on_screen) state.legend_corner = corner;
    paint_entries(state, canvas, entries, form, box_in_corner(plot, corner, form.width, form.height));
    return corner;
}

/// Each reaches to the end below those that follow: between two edges the ground would show.
void paint_ramp(Canvas& canvas, const ColourKey& key, Point at) {
    const double step = ramp_length / static_cast<double>(key.colours.size());
    double x = at.x;
    for (const Colour colour : key.colours) {
        canvas.swatch({x, at.x + ramp_length, at.y, at.y + ramp_height}, colour);
        x += step;
    }
}

void paint_key(const GrapherState& state, Canvas& canvas, const LegendCover& cover, int taken) {
    const ColourKey& key = *state.colour_key;
    if (key.colours.empty()) return;
    const double row = row_height * state.layout.text_height;
    const double title = canvas.measure(key.title, FontRole::chart).width;
    const double low = canvas.measure(key.low, FontRole::chart).width;
    const double high = canvas.measure(key.high, FontRole::chart).width;
    const double inner = std::max({ramp_length, title, low + entry_gap + high});
    const double width = inner + 2.0 * box_edge;
    const double height = 2.0 * row + ramp_height + 2.0 * box_edge;
    const Rect& plot = state.layout.plot;
    if (!fits(width, height, plot)) return;
    const Rect box = box_in_corner(plot, best_corner(cover, plot, width, height, -1, taken), width, height);
    paint_box(state, canvas, box);
    const double left = box.x_low + box_edge;
    const double ramp = box.y_low + box_edge / 2.0 + row;
    paint_name(state, canvas, {left, box.y_high - box_edge / 2.0 - row}, key.title);
    paint_ramp(canvas, key, {left, ramp});
    paint_name(state, canvas, {left, box.y_low + box_edge / 2.0}, key.low);
    paint_name(state, canvas, {left + std::max(inner, ramp_length) - high, box.y_low + box_edge / 2.0},
               key.high);
}

}  // namespace

void paint_legend(GrapherState& state, LegendPlace place) {
    // A captured chart is the picture on screen.
    if (state.canvas.capturing()) place = LegendPlace::of_screen;
    const bool picture = place == LegendPlace::of_picture && state.picture_legend;
    const bool legend = state.properties.display_legend || picture;
    if (!(legend || state.colour_key) || !state.layout.valid || state.gesture.overlay_suspended) return;
    state.canvas.set_window(state.layout.plot);
    const LegendCover cover(state);
    const int corner = legend ? paint_series(state, place, cover) : -1;
    if (state.colour_key) paint_key(state, state.canvas, cover, corner);
}

}  // namespace anomalis::chart
