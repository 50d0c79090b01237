#include <algorithm>
#include <cmath>
#include <string>

#include "chart/detail/gestures.h"
#include "chart/detail/tick_text.h"
#include "chart/detail/top_marks.h"
#include "chart/detail/zoom.h"
#include "core/numbers.h"

namespace anomalis::chart {

namespace {

// The highlight is one unit wider to the right and above.
constexpr double highlight_low = 56.0;
constexpr double highlight_high = 57.0;
constexpr double highlight_width = 2.0;
constexpr Colour crosshair_colour = 0x808080;

void paint_highlight(const GrapherState& state, Canvas& canvas) {
    if (!state.selection_valid()) return;
    const SelectedPoint& chosen = *state.selected;
    const auto position = state.series.position(chosen.group, chosen.series, chosen.point);
    if (!position) return;
    const Point at = state.layout.to_surface(state.x, state.y, *position);
    if (!state.layout.plot.contains(at, 0.5)) return;
    canvas.rectangle(
        {at.x - highlight_low, at.x + highlight_high, at.y - highlight_low, at.y + highlight_high}, black,
        no_colour, highlight_width);
}

void paint_box(const GrapherState& state, Canvas& canvas) {
    const Gesture& gesture = state.gesture;
    if (gesture.mode == GestureMode::box && gesture.corner) {
        const Point a = gesture.press;
        const Point b = *gesture.corner;
        canvas.rectangle({std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)},
                         black, no_colour, 1.0);
    }
    if (gesture.mode == GestureMode::magnifier) {
        const Point c = gesture.box_centre;
        const Point half{gesture.box_size.x / 2.0, gesture.box_size.y / 2.0};
        canvas.rectangle({c.x - half.x, c.x + half.x, c.y - half.y, c.y + half.y}, black, no_colour, 1.0);
    }
}

/// As many digits as a screen pixel can tell apart.
std::string read_out(double value, const AxisTransform& scale, double units_per_world) {
    if (scale.logarithmic()) return significant_text(value, 4);
    const double per_pixel = units_per_screen_pixel / units_per_world;
    const int digits = static_cast<int>(std::clamp(std::ceil(-std::log10(per_pixel)), 0.0, 9.0));
    return format_number(value,
                         digits == 0 ? "0" : "0." + std::string(static_cast<std::size_t>(digits), '0'));
}

void paint_crosshair(const GrapherState& state, Canvas& canvas) {
    if (!state.crosshair || !state.pointer || state.gesture.mode == GestureMode::held) return;
    const WorldPosition world = world_at(state, *state.pointer);
    if (world.outside) return;
    const Point at = *state.pointer;
    const Rect& plot = state.layout.plot;
    const Pen pen{crosshair_colour, 1.0, LineStyle::dot};
    canvas.line({plot.x_low, at.y}, {plot.x_high, at.y}, pen);
    canvas.line({at.x, plot.y_low}, {at.x, plot.y_high}, pen);

    const std::string words = read_out(world.user.x, state.properties.x.scale, state.layout.x_scale) + ", " +
                              read_out(world.user.y, state.properties.y.scale, state.layout.y_scale);
    const TextExtent extent = canvas.measure(words, FontRole::chart);
    const double gap = state.layout.text_height / 2.0;
    // Beside the pointer, on the side where there is room.
    const double left =
        at.x + gap + extent.width + gap <= plot.x_high ? at.x + gap : at.x - gap - extent.width;
    const double bottom =
        at.y + gap + extent.height() + gap <= plot.y_high ? at.y + gap : at.y - gap - extent.height();
    const double edge = gap / 2.0;
    canvas.rectangle({left - edge, left + extent.width + edge, bottom, bottom + extent.height()},
                     crosshair_colour, state.properties.back_colour, 1.0);
    canvas.placed_text({left, bottom}, 0.0, words, FontRole::chart, state.properties.fore_colour);
}

}  // namespace

void paint_top_layer(GrapherState& state, Canvas& canvas) {
    if (!state.displayed || !state.layout.valid) return;
    canvas.set_window(state.layout.plot);
    paint_highlight(state, canvas);
    paint_top_marks(state, canvas);
    paint_box(state, canvas);
    paint_crosshair(state, canvas);
}

}  // namespace anomalis::chart
