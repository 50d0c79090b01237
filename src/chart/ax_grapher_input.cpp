#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "chart/ax_grapher.h"
#include "chart/detail/display.h"
#include "chart/detail/gestures.h"
#include "chart/detail/grapher_state.h"
#include "chart/detail/zoom.h"

// Mouse, wheel and keyboard as the widget tells them, zoom and selection as the host sets them.
namespace anomalis::chart {

namespace {

constexpr double no_delta = -1e32;
constexpr int wheel_step = 120;
constexpr int most_wheel_delta = 100 * wheel_step;
constexpr double key_pan_share = 0.1;

enum Key {
    escape_key = 27,
    home_key = 36,
    left_key = 37,
    up_key = 38,
    right_key = 39,
    down_key = 40,
    zero_key = 48,
    menu_key = 93,
    numpad_zero_key = 96,
    numpad_plus_key = 107,
    numpad_minus_key = 109,
    plus_key = 187,
    minus_key = 189
};

bool deaf(const GrapherState& state) {
    return state.busy_event || !state.properties.enabled;
}

Point surface_point(const GrapherState& state, float x, float y) {
    const double height = state.surface != nullptr ? state.surface->height() : state.layout.height;
    return {x, height - y};
}

/// Runs the chart's own part of an event. True, and ViewChanged raised, if it has moved the view.
template <class Work>
bool handle(GrapherState& state, Work&& work) {
    const Interval x = state.x.view;
    const Interval y = state.y.view;
    work();
    if ((state.x.view == x && state.y.view == y) || state.gesture.mode == GestureMode::magnifier)
        return false;
    if (state.events != nullptr) state.events->ViewChanged();
    return true;
}

void show_top_layer(GrapherState& state) {
    if (state.surface != nullptr) state.surface->present();
}

void raise_move(GrapherState& state, int buttons, int shift, float x, float y, Point at) {
    if (state.events == nullptr) return;
    const WorldPosition world = world_at(state, at);
    double delta_x = no_delta;
    double delta_y = no_delta;
    if (!world.outside && state.gesture.mode == GestureMode::box) {
        delta_x = world.user.x - state.gesture.press_user.x;
        delta_y = world.user.y - state.gesture.press_user.y;
    }
    // Outside the plot the transformed position is told: ChartInput.outside_the_plot_values_are_transformed.
    const Point told = world.outside ? world.transformed : world.user;
    state.events->MouseMove(buttons, shift, x, y, world.outside ? 1 : 0, told.x, told.y, delta_x, delta_y);
}

/// Another view lies under the pointer, which has not moved: the host's read-out follows.
void tell_place(GrapherState& state, int shift) {
    if (!state.pointer) return;
    const Point at = *state.pointer;
    const double height = state.surface != nullptr ? state.surface->height() : state.layout.height;
    raise_move(state, 0, shift, static_cast<float>(at.x), static_cast<float>(height - at.y), at);
}

/// A release that was lost lets go where the pointer was last.
void carry_hold(GrapherState& state, int buttons, int shift, float x, float y) {
    if ((buttons & state.gesture.held_button) == 0) return end_hold(state, false);
    state.events->HeldMoved(shift, x, y);
}

/// Plus is a shifted key on many keyboards, and with Control the arrows are the chart's where a host has
/// taken the plain ones; any other key with Control or Alt is a command of the window.
bool is_plain(int key, int shift) {
    const bool arrow = key >= left_key && key <= down_key;
    return (shift & ~(shift_mark | (arrow ? control_mark : 0))) == 0;
}

/// True when the key was the chart's.
bool obey_key(GrapherState& state, int key) {
    const double right = state.layout.plot.width() * key_pan_share;
    const double up = state.layout.plot.height() * key_pan_share;
    switch (key) {
        case left_key:
            pan_by(state, -right, 0.0);
            return true;
        case right_key:
            pan_by(state, right, 0.0);
            return true;
        case up_key:
            pan_by(state, 0.0, up);
            return true;
        case down_key:
            pan_by(state, 0.0, -up);
            return true;
        case plus_key:
        case numpad_plus_key:
            zoom_step(state, -1, view_middle(state));
            return true;
        case minus_key:
        case numpad_minus_key:
            zoom_step(state, 1, view_middle(state));
            return true;
        case zero_key:
        case numpad_zero_key:
        case home_key:
            clear_zoom(state);
            return true;
        default:
            return false;
    }
}

void request_menu(GrapherState& state) {
    if (state.events == nullptr) return;
    const Rect& plot = state.layout.plot;
    const double height = state.surface != nullptr ? state.surface->height() : state.layout.height;
    const Point at =
        state.pointer.value_or(Point{(plot.x_low + plot.x_high) / 2.0, (plot.y_low + plot.y_high) / 2.0});
    state.events->MenuRequested(static_cast<float>(at.x), static_cast<float>(height - at.y));
}

}  // namespace

void AX_Grapher::HandleMouseDown(int button, int shift, float x, float y) {
    GrapherState& state = *state_;
    if (deaf(state) || !std::isfinite(x) || !std::isfinite(y)) return;
    const Busy busy(state.busy_event);
    if (is_held(state)) return end_hold(state, true);
    if (hold(state, button, shift, x, y)) return;
    handle(state, [&] { press(state, button, shift, surface_point(state, x, y)); });
    if (state.events != nullptr) state.events->MouseDown(button, shift, x, y);
}

void AX_Grapher::HandleMouseMove(int buttons, int shift, float x, float y) {
    GrapherState& state = *state_;
    if (deaf(state) || !std::isfinite(x) || !std::isfinite(y)) return;
    const Busy busy(state.busy_event);
    const Point at = surface_point(state, x, y);
    state.pointer = at;
    if (is_held(state)) {
        carry_hold(state, buttons, shift, x, y);
    } else {
        handle(state, [&] { move(state, buttons, at); });
    }
    if (state.crosshair || state.gesture.mode == GestureMode::box ||
        state.gesture.mode == GestureMode::magnifier)
        show_top_layer(state);
    raise_move(state, buttons, shift, x, y, at);
}

void AX_Grapher::HandleMouseUp(int button, int shift, float x, float y) {
    GrapherState& state = *state_;
    if (deaf(state) || !std::isfinite(x) || !std::isfinite(y)) return;
    const bool had_box = state.gesture.mode == GestureMode::box;
    const bool clicked = button == right_button && state.gesture.right_click;
    {
        const Busy busy(state.busy_event);
        if (is_held(state)) {
            if (button == state.gesture.held_button) end_hold(state, false);
            return;
        }
        state.gesture.right_click = false;
        const Point at = surface_point(state, x, y);
        const bool moved = handle(state, [&] { release(state, at); });
        if (moved) state.pointer = at;
        if (had_box) show_top_layer(state);
        if (state.events == nullptr) return;
        state.events->MouseUp(button, shift, x, y);
        if (button == left_button) state.events->Click();
        if (moved) tell_place(state, shift);
    }
    // A menu runs a loop of its own, so it opens when the event is over.
    if (clicked) state.events->MenuRequested(x, y);
}

void AX_Grapher::HandleMouseLeave() {
    state_->pointer.reset();
    if (state_->crosshair) show_top_layer(*state_);
    if (deaf(*state_) || state_->events == nullptr) return;
    const Busy busy(state_->busy_event);
    state_->events->PointerLeft();
}

bool AX_Grapher::HandleHold(int button, int shift, float x, float y) {
    GrapherState& state = *state_;
    if (deaf(state) || !std::isfinite(x) || !std::isfinite(y)) return false;
    const Busy busy(state.busy_event);
    end_hold(state, false);
    return hold(state, button, shift, x, y);
}

void AX_Grapher::LetGo() {
    if (is_held(*state_)) state_->gesture.mode = GestureMode::none;
}

int AX_Grapher::PolygonUnder(float x, float y) const {
    return std::isfinite(x) && std::isfinite(y) ? polygon_under(*state_, surface_point(*state_, x, y)) : 0;
}

const TopMarks& AX_Grapher::ShownTopMarks() const {
    return state_->top_marks;
}
void AX_Grapher::ShowTopMarks(TopMarks marks) {
    if (marks == state_->top_marks) return;
    state_->top_marks = std::move(marks);
    show_top_layer(*state_);
}
PointerShape AX_Grapher::Pointer() const {
    return state_->pointer_shape;
}
void AX_Grapher::Pointer(PointerShape shape) {
    state_->pointer_shape = shape;
}

void AX_Grapher::HandleDoubleClick(int button) {
    GrapherState& state = *state_;
    if (deaf(state) || !state.displayed || button != left_button) return;
    const Busy busy(state.busy_event);
    end_hold(state, false);
    const bool moved = handle(state, [&] {
        cancel_gesture(state);
        clear_zoom(state);
        refresh_graph(state, 0);
    });
    if (state.events != nullptr) state.events->ZoomCleared();
    if (moved) tell_place(state, 0);
}

void AX_Grapher::HandleWheel(int keys, int delta, float x, float y) {
    GrapherState& state = *state_;
    if (deaf(state) || delta == 0 || !std::isfinite(x) || !std::isfinite(y)) return;
    const Busy busy(state.busy_event);
    const Point at = surface_point(state, x, y);
    state.pointer = at;
    const WorldPosition world = world_at(state, at);
    bool moved = false;
    if (!world.outside && state.properties.zoom_enabled && state.gesture.mode == GestureMode::none) {
        // A touchpad sends many small turns; those of another direction start anew.
        if ((state.wheel_sum > 0) != (delta > 0)) state.wheel_sum = 0;
        state.wheel_sum += std::clamp(delta, -most_wheel_delta, most_wheel_delta);
        const int steps = state.wheel_sum / wheel_step;
        state.wheel_sum -= steps * wheel_step;
        if (steps != 0)
            moved = handle(state, [&] {
                for (int i = 0; i < std::abs(steps); ++i)
                    zoom_step(state, steps > 0 ? -1 : 1, world.transformed);
                hold_place(state, world.transformed, at);
                refresh_graph(state, 0);
            });
    }
    if (moved) tell_place(state, keys);
    if (state.events != nullptr)
        state.events->MouseWheel(keys, delta, static_cast<int>(std::lround(x)),
                                 static_cast<int>(std::lround(y)));
}

void AX_Grapher::HandlePinch(double factor, float x, float y) {
    GrapherState& state = *state_;
    if (deaf(state) || !(factor > 0.0) || !std::isfinite(factor) || !std::isfinite(x) || !std::isfinite(y))
        return;
    const Busy busy(state.busy_event);
    const Point at = surface_point(state, x, y);
    const WorldPosition world = world_at(state, at);
    if (world.outside || !state.properties.zoom_enabled) return;
    end_hold(state, true);
    handle(state, [&] {
        // On a touch screen the first finger has begun a drag, which the second one ends.
        cancel_gesture(state);
        zoom_by(state, 1.0 / factor, world.transformed);
        hold_place(state, world.transformed, at);
        refresh_graph(state, 0);
    });
}

void AX_Grapher::PanBy(double dx, double dy) {
    GrapherState& state = *state_;
    if (deaf(state) || !state.displayed || !state.layout.valid || !state.zoomed() || is_held(state)) return;
    if (!std::isfinite(dx) || !std::isfinite(dy)) return;
    const Busy busy(state.busy_event);
    handle(state, [&] {
        pan_by(state, dx, dy);
        refresh_graph(state, 0);
    });
}

bool AX_Grapher::HandleKeyDown(int key_code, int shift) {
    GrapherState& state = *state_;
    if (deaf(state)) return false;
    int key = key_code;
    bool used = false;
    {
        const Busy busy(state.busy_event);
        if (state.events != nullptr) state.events->KeyDown(key, shift);
        used = key != key_code || key == escape_key || key == menu_key;
        if (key == escape_key) end_hold(state, true);
        bool moved = false;
        if (state.displayed && state.layout.valid)
            moved = handle(state, [&] {
                if (key == escape_key) {
                    cancel_gesture(state);
                    show_top_layer(state);
                } else if (is_plain(key, shift) && state.gesture.mode == GestureMode::none &&
                           obey_key(state, key)) {
                    used = true;
                    refresh_graph(state, 0);
                }
            });
        if (moved) tell_place(state, shift);
    }
    if (key == menu_key) request_menu(state);
    return used;
}

bool AX_Grapher::HandleKeyPress(int key_ascii) {
    if (deaf(*state_) || state_->events == nullptr) return false;
    const Busy busy(state_->busy_event);
    int key = key_ascii;
    state_->events->KeyPress(key);
    return key != key_ascii;
}

bool AX_Grapher::HandleKeyUp(int key_code, int shift) {
    if (deaf(*state_) || state_->events == nullptr) return false;
    const Busy busy(state_->busy_event);
    int key = key_code;
    state_->events->KeyUp(key, shift);
    return key != key_code;
}

}  // namespace anomalis::chart
