#include "chart/detail/gestures.h"

#include <algorithm>
#include <cmath>

#include "chart/detail/display.h"
#include "chart/detail/hit_test.h"
#include "chart/detail/zoom.h"

namespace anomalis::chart {

namespace {

/// A drag zooms one step for each whole 5 pixels, however many events they come in.
constexpr double drag_step = 75.0;
/// More than lie between the whole chart and the deepest zoom.
constexpr double most_drag_steps = 200.0;
/// A right button that moves less than 4 pixels is a click.
constexpr double click_reach = 4.0 * units_per_screen_pixel;

int button_of(GestureMode mode) {
    switch (mode) {
        case GestureMode::pan:
            return right_button;
        case GestureMode::magnifier:
            return middle_button;
        case GestureMode::none:
            return 0;
        default:
            return left_button;
    }
}

/// True when the press has hit something and no gesture begins.
bool select_at(GrapherState& state, int button, Point at) {
    if (!state.layout.valid) return false;
    if (const auto hit = hit_point(state.series, state.frame(), at)) {
        state.selected = hit;
        if (state.surface != nullptr) state.surface->present();
        if (state.events != nullptr) state.events->PointSelected(button, hit->group, hit->series, hit->point);
        return true;
    }
    const WorldPosition world = world_at(state, at);
    const int number = world.outside ? 0 : hit_polygon(state.overlay, state.frame(), at);
    if (number == 0) return false;
    // Everything the event tells is copied: its handler may clear the drawings.
    if (state.events != nullptr) state.events->GraphicSelected(button, number, world.user.x, world.user.y);
    return true;
}

Point centre_of(const AxisRange& x, const AxisRange& y) {
    return {(x.view.low + x.view.high) / 2.0, (y.view.low + y.view.high) / 2.0};
}

/// Shows the whole chart with a box of the present view's size on it, first where that view was.
void begin_magnifier(GrapherState& state) {
    Gesture& gesture = state.gesture;
    gesture.mode = GestureMode::magnifier;
    gesture.zoom = current_zoom(state);
    gesture.overlay_suspended = true;
    gesture.box_moved = false;
    const Point middle = centre_of(state.x, state.y);
    const Point span{state.x.view.span(), state.y.view.span()};
    clear_zoom(state);
    refresh_graph(state, 0);
    gesture.box_size = {span.x * state.layout.x_scale, span.y * state.layout.y_scale};
    gesture.box_centre = state.layout.to_surface(state.x, state.y, middle);
    gesture.press = gesture.box_centre;
}

void end_magnifier(GrapherState& state, bool keep_place) {
    Gesture& gesture = state.gesture;
    gesture.mode = GestureMode::none;
    gesture.overlay_suspended = false;
    ZoomValues zoom = gesture.zoom;
    if (keep_place && state.layout.valid) {
        const Point middle = state.layout.to_world(state.x, state.y, gesture.box_centre);
        zoom.centre_x = (middle.x - state.x.full.low) / state.x.full.span();
        zoom.centre_y = (middle.y - state.y.full.low) / state.y.full.span();
    }
    apply_zoom(state, zoom);
    refresh_graph(state, 0);
}

void move_pan(GrapherState& state, Point at) {
    Gesture& gesture = state.gesture;
    if (gesture.right_click) return;
    pan_by(state, gesture.press.x - at.x, gesture.press.y - at.y);
    gesture.press = at;
    refresh_graph(state, 0);
}

void move_drag_zoom(GrapherState& state, Point at) {
    Gesture& gesture = state.gesture;
    const double travelled = at.y - gesture.press.y;
    const double steps = std::trunc(travelled / drag_step);
    if (steps == 0.0) return;
    gesture.mode = GestureMode::drag_zooming;
    const int direction = steps > 0.0 ? 1 : -1;
    const int count = static_cast<int>(std::min(std::abs(steps), most_drag_steps));
    // The anchor stays that of the button press; moving it with the press would drift.
    for (int i = 0; i < count; ++i) zoom_step(state, direction, gesture.press_world);
    gesture.press.y += steps * drag_step;
    refresh_graph(state, 0);
    gesture.mode = GestureMode::drag_zoom;
}

}  // namespace

bool hold(GrapherState& state, int button, int shift, float x, float y) {
    if (!state.displayed || !state.layout.valid || state.events == nullptr) return false;
    if (!state.events->HoldPress(button, shift, x, y)) return false;
    cancel_gesture(state);
    state.gesture.mode = GestureMode::held;
    state.gesture.held_button = button;
    return true;
}

bool is_held(const GrapherState& state) {
    return state.gesture.mode == GestureMode::held;
}

void end_hold(GrapherState& state, bool given_up) {
    if (!is_held(state)) return;
    state.gesture.mode = GestureMode::none;
    if (state.events != nullptr) state.events->HeldEnded(given_up);
}

int polygon_under(const GrapherState& state, Point at) {
    if (!state.displayed || !state.layout.valid || world_at(state, at).outside) return 0;
    if (hit_point(state.series, state.frame(), at)) return 0;
    return hit_polygon(state.overlay, state.frame(), at);
}

void press(GrapherState& state, int button, int shift, Point at) {
    if (!state.displayed) return;
    cancel_gesture(state);
    Gesture& gesture = state.gesture;
    gesture.right_click = button == right_button;
    gesture.button_press = at;
    const bool boxing = (shift & shift_mark) != 0;
    if (button == left_button && !boxing && select_at(state, button, at)) return;
    if (!state.properties.zoom_enabled || (button != left_button && !state.zoomed())) return;

    const WorldPosition world = world_at(state, at);
    gesture.press = at;
    gesture.press_world = world.transformed;
    gesture.press_user = world.user;
    gesture.corner.reset();
    if (button == right_button) {
        gesture.mode = GestureMode::pan;
    } else if (button == middle_button) {
        begin_magnifier(state);
    } else if (button == left_button && !world.outside) {
        gesture.mode = boxing ? GestureMode::box : GestureMode::drag_zoom;
    }
}

void move(GrapherState& state, int buttons, Point at) {
    Gesture& gesture = state.gesture;
    if (std::hypot(at.x - gesture.button_press.x, at.y - gesture.button_press.y) >= click_reach)
        gesture.right_click = false;
    if (!state.displayed || gesture.mode == GestureMode::none) return;
    // A release that was lost ends every gesture.
    if ((buttons & button_of(gesture.mode)) == 0) {
        cancel_gesture(state);
        return;
    }
    switch (gesture.mode) {
        case GestureMode::pan:
            move_pan(state, at);
            break;
        case GestureMode::drag_zoom:
            move_drag_zoom(state, at);
            break;
        case GestureMode::box:
            gesture.corner = at;
            break;
        case GestureMode::magnifier:
            gesture.box_centre = at;
            gesture.box_moved = true;
            gesture.press = at;
            break;
        default:
            break;
    }
}

void release(GrapherState& state, Point at) {
    Gesture& gesture = state.gesture;
    if (gesture.mode == GestureMode::magnifier) {
        // The box begins about the view, not about the pointer, and stays there until that moves.
        if (gesture.box_moved || !(at == gesture.button_press)) gesture.box_centre = at;
        end_magnifier(state, true);
    }
    state.gesture.mode = GestureMode::none;
    state.gesture.corner.reset();
}

void cancel_gesture(GrapherState& state) {
    if (state.gesture.mode == GestureMode::magnifier) end_magnifier(state, false);
    state.gesture.mode = GestureMode::none;
    state.gesture.corner.reset();
    state.gesture.right_click = false;
}

}  // namespace anomalis::chart
