#include "chart/detail/crosshair.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "chart/detail/tick_text.h"
#include "chart/detail/top_marks.h"
#include "chart/detail/zoom.h"
#include "core/numbers.h"

namespace anomalis::chart {

namespace {

constexpr Colour crosshair_colour = 0x808080;
constexpr Pen crosshair_pen{crosshair_colour, 1.0, LineStyle::dot};

std::string with_unit(const std::string& number, const std::string& unit) {
    return unit.empty() ? number : number + " " + unit;
}

/// As many digits as a screen pixel can tell apart.
std::string read_out(double value, const AxisTransform& scale, double units_per_world) {
    if (scale.logarithmic()) return significant_text(value, 4);
    return value_text(value, units_per_screen_pixel / units_per_world);
}

std::string x_read_out(const GrapherState& state, double value) {
    return with_unit(read_out(value, state.properties.x.scale, state.layout.x_scale), state.x_unit);
}
std::string y_read_out(const GrapherState& state, double value) {
    return with_unit(read_out(value, state.properties.y.scale, state.layout.y_scale), state.y_unit);
}

void paint_words(const GrapherState& state, Canvas& canvas, Point at, std::vector<std::string> lines) {
    if (lines.empty()) return;
    paint_note(state, canvas, at,
               {{},
                state.layout.text_height / 2.0,
                std::move(lines),
                crosshair_colour,
                state.properties.back_colour,
                state.properties.fore_colour});
}

/// The upright line alone, told of at the top.
void paint_linked(const GrapherState& state, Canvas& canvas) {
    const Rect& plot = state.layout.plot;
    const double x =
        state.layout.to_surface(state.x, state.y, {state.properties.x.scale.forward(state.linked->x), 0.0}).x;
    if (!(x >= plot.x_low && x <= plot.x_high)) return;
    canvas.line({x, plot.y_low}, {x, plot.y_high}, crosshair_pen);
    paint_words(state, canvas, {x, plot.y_high}, state.linked->lines);
}

/// "nT" over "m" is "nT/m"; a unit of several words is not divided by a stroke.
std::string slope_unit(const std::string& y, const std::string& x) {
    if (y.empty() || x.empty() || y == x) return {};
    return y.find(' ') == std::string::npos ? y + "/" + x : y + " per " + x;
}

/// Three significant digits, without the zeros behind them.
std::string slope_text(const GrapherState& state, double dx, double dy) {
    constexpr double degree = 180.0 / std::numbers::pi;
    const double slope = dy / dx;
    const std::string text = with_unit(significant_text(slope, 3), slope_unit(state.y_unit, state.x_unit));
    // Lengths on both axes: the slope of a line in the ground.
    if (state.y_unit.empty() || state.y_unit != state.x_unit) return "slope " + text;
    return "slope " + text + " (" + format_number(std::atan2(dy, std::abs(dx)) * degree, "0.0") + " degrees)";
}

}  // namespace

std::string value_text(double value, double step) {
    const double places = step > 0.0 ? std::ceil(-std::log10(step)) : 0.0;
    const int digits = static_cast<int>(std::clamp(places, 0.0, 9.0));
    return format_number(value,
                         digits == 0 ? "0" : "0." + std::string(static_cast<std::size_t>(digits), '0'));
}

void paint_crosshair(const GrapherState& state, Canvas& canvas) {
    const Gesture& gesture = state.gesture;
    const bool boxing = gesture.mode == GestureMode::box && gesture.corner;
    if (!state.crosshair || gesture.mode == GestureMode::held || boxing) return;
    const bool pointed = state.pointer && !world_at(state, *state.pointer).outside;
    if (!pointed) {
        if (state.linked) paint_linked(state, canvas);
        return;
    }
    const WorldPosition world = world_at(state, *state.pointer);
    const Point at = *state.pointer;
    const Rect& plot = state.layout.plot;
    canvas.line({plot.x_low, at.y}, {plot.x_high, at.y}, crosshair_pen);
    canvas.line({at.x, plot.y_low}, {at.x, plot.y_high}, crosshair_pen);
    const bool told = state.linked && !state.linked->lines.empty();
    paint_words(state, canvas, at,
                told ? state.linked->lines
                     : std::vector{x_read_out(state, world.user.x) + ", " + y_read_out(state, world.user.y)});
}

void paint_measuring_box(const GrapherState& state, Canvas& canvas) {
    const Gesture& gesture = state.gesture;
    if (gesture.mode != GestureMode::box || !gesture.corner) return;
    const Point a = gesture.press, b = *gesture.corner;
    canvas.rectangle({std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)}, black,
                     no_colour, 1.0);
    const Rect& plot = state.layout.plot;
    const Point end{std::clamp(b.x, plot.x_low, plot.x_high), std::clamp(b.y, plot.y_low, plot.y_high)};
    const WorldPosition world = world_at(state, end);
    const double dx = world.user.x - gesture.press_user.x;
    const double dy = world.user.y - gesture.press_user.y;
    std::vector<std::string> lines{"dx " + x_read_out(state, dx), "dy " + y_read_out(state, dy)};
    if (dx != 0.0) lines.push_back(slope_text(state, dx, dy));
    paint_words(state, canvas, end, std::move(lines));
}

}  // namespace anomalis::chart
