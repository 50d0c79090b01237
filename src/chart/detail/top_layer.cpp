#include <array>

#include "chart/detail/crosshair.h"
#include "chart/detail/gestures.h"
#include "chart/detail/top_marks.h"

namespace anomalis::chart {

namespace {

// The highlight is one unit wider to the right and above.
constexpr double highlight_low = 56.0;
constexpr double highlight_high = 57.0;
constexpr double highlight_width = 2.0;

void paint_highlight(const GrapherState& state, Canvas& canvas) {
    if (!state.selection_valid()) return;
    const SelectedPoint& chosen = *state.selected;
    const auto position = state.series.position(chosen.group, chosen.series, chosen.point);
    if (!position) return;
    const Point at = state.layout.to_surface(state.x, state.y, *position);
    if (!state.layout.plot.contains(at, 0.5)) return;
    constexpr std::array corners{Point{-highlight_low, -highlight_low}, Point{highlight_high, -highlight_low},
                                 Point{highlight_high, highlight_high},
                                 Point{-highlight_low, highlight_high}};
    MarkerShape box;
    box.radius = highlight_high;
    box.outline = corners;
    box.pen = {black, highlight_width, LineStyle::solid};
    canvas.mark(box, at);
}

void paint_magnifier(const GrapherState& state, Canvas& canvas) {
    const Gesture& gesture = state.gesture;
    if (gesture.mode == GestureMode::magnifier) {
        const Point c = gesture.box_centre;
        const Point half{gesture.box_size.x / 2.0, gesture.box_size.y / 2.0};
        canvas.rectangle({c.x - half.x, c.x + half.x, c.y - half.y, c.y + half.y}, black, no_colour, 1.0);
    }
}

}  // namespace

void paint_top_layer(GrapherState& state, Canvas& canvas) {
    if (!state.displayed || !state.layout.valid) return;
    canvas.set_window(state.layout.plot);
    paint_highlight(state, canvas);
    paint_top_marks(state, canvas);
    paint_magnifier(state, canvas);
    paint_measuring_box(state, canvas);
    paint_crosshair(state, canvas);
}

}  // namespace anomalis::chart
