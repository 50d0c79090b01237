#include "chart/detail/zoom.h"

#include <cmath>

#include "chart/detail/clip.h"

namespace anomalis::chart {

WorldPosition world_at(const GrapherState& state, Point surface) {
    WorldPosition world;
    if (!state.displayed || !state.layout.valid) return world;
    world.outside = out_code(state.layout.plot, surface) != 0;
    world.transformed = state.layout.to_world(state.x, state.y, surface);
    world.user = {state.properties.x.scale.inverse(world.transformed.x),
                  state.properties.y.scale.inverse(world.transformed.y)};
    return world;
}

void set_centre(GrapherState& state, double span_factor, Point middle) {
    if (!state.properties.zoom_enabled) {
        clear_zoom(state);
        return;
    }
    const bool zooms = span_factor != 1.0;
    // With equal scales neither axis can zoom without the other.
    const bool both_locked = state.equal_scales && (state.lock_x || state.lock_y);
    if (!zooms || !(state.lock_x || both_locked)) state.x.place(span_factor, middle.x);
    if (!zooms || !(state.lock_y || both_locked)) state.y.place(span_factor, middle.y);
}

void zoom_by(GrapherState& state, double span_factor, Point anchor) {
    const auto middle = [&](const AxisRange& axis, double at) {
        const double offset = (at - axis.full.low) / axis.full.span() - axis.centre;
        return at - axis.full.span() * offset * span_factor;
    };
    set_centre(state, span_factor, {middle(state.x, anchor.x), middle(state.y, anchor.y)});
}

void zoom_step(GrapherState& state, int direction, Point anchor) {
    zoom_by(state, direction < 0 ? 1.0 / zoom_step_factor : zoom_step_factor, anchor);
}

void pan_by(GrapherState& state, double dx, double dy) {
    const Point middle = view_middle(state);
    set_centre(state, 1.0, {middle.x + dx / state.layout.x_scale, middle.y + dy / state.layout.y_scale});
}

void clear_zoom(GrapherState& state) {
    state.x.clear_zoom();
    state.y.clear_zoom();
}

ZoomValues current_zoom(const GrapherState& state) {
    return {state.x.zoom, state.x.centre, state.y.zoom, state.y.centre};
}

int apply_zoom(GrapherState& state, const ZoomValues& values) {
    for (const double value : {values.zoom_x, values.centre_x, values.zoom_y, values.centre_y})
        if (!std::isfinite(value)) return -1;
    if (!state.properties.zoom_enabled) {
        clear_zoom(state);
        return 0;
    }
    state.x.set_zoom(values.zoom_x, values.centre_x);
    state.y.set_zoom(values.zoom_y, values.centre_y);
    return 0;
}

Point view_middle(const GrapherState& state) {
    return {(state.x.view.low + state.x.view.high) / 2.0, (state.y.view.low + state.y.view.high) / 2.0};
}

}  // namespace anomalis::chart
