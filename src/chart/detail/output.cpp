#include "chart/detail/output.h"

#include <exception>

#include "chart/detail/display.h"
#include "chart/detail/legend.h"

namespace anomalis::chart {

namespace {

/// What an output may change and the screen wants back.
class ScreenKept {
  public:
    explicit ScreenKept(GrapherState& state)
        : state_(state), x_(state.x), y_(state.y), layout_(state.layout), displayed_(state.displayed) {}
    ~ScreenKept() {
        state_.canvas.capture_into(nullptr);
        state_.canvas.keep_every_point(false);
        state_.x = x_;
        state_.y = y_;
        state_.layout = layout_;
        state_.displayed = displayed_;
    }
    ScreenKept(const ScreenKept&) = delete;
    ScreenKept& operator=(const ScreenKept&) = delete;

  private:
    GrapherState& state_;
    AxisRange x_;
    AxisRange y_;
    ChartLayout layout_;
    bool displayed_;
};

/// A page has no picture that was cleared before: it gets its ground as the first of all shapes.
void fill_ground(GrapherState& state) {
    if (state.properties.back_style == 0) return;
    state.canvas.rectangle({0.0, state.layout.width, 0.0, state.layout.height}, no_colour,
                           state.properties.back_colour, 1.0);
}

/// The start of an output: range steps and layout by the target's text measure, the chart, then the overlay
/// on the same target.
int start_of_output(GrapherState& state, DrawingDevice& target, SurfaceSize size) {
    // Without a screen nothing has taken the limit properties yet.
    const bool take_limits = state.surface == nullptr || !state.displayed;
    if (update_layout(state, target, size.width, size.height, take_limits) != 0) return -1;
    state.canvas.open(target, state.fonts());
    if (!state.canvas.capturing()) fill_ground(state);
    const int status = draw_chart(state);
    if (status == 0) {
        replay_overlay(state);
        frame_on_top(state);
        paint_legend(state, LegendPlace::of_picture);
    }
    return status;
}

template <class Work>
int kept_safe(GrapherState& state, Work&& work) {
    int status = -1;
    try {
        const Busy busy(state.busy_refresh);
        const ScreenKept kept(state);
        status = work();
    } catch (const std::exception& failure) {
        state.notes.add(failure.what());
    }
    tell_failures(state);
    return status;
}

Pen pen_of(const GraphicItem& line) {
    return {line.colour, static_cast<double>(line.width), static_cast<LineStyle>(line.reserved)};
}

bool goes_on(const GraphicItem& line, const GraphicItem& next) {
    return next.kind == ItemKind::line && next.x1 == line.x2 && next.y1 == line.y2 &&
           pen_of(next) == pen_of(line);
}

/// A curve was captured piece by piece: what hangs together is played as one line, so that its joints look as
/// they did. Returns the index after the last piece.
std::size_t play_line(const std::vector<GraphicItem>& items, std::size_t first, Canvas& canvas) {
    std::vector<Point> points{{items[first].x1, items[first].y1}};
    std::size_t i = first;
    for (;; ++i) {
        points.push_back({items[i].x2, items[i].y2});
        if (i + 1 == items.size() || !goes_on(items[i], items[i + 1])) break;
    }
    canvas.polyline(points, pen_of(items[first]));
    return i + 1;
}

void play_item(const GraphicItem& item, Canvas& canvas) {
    const Point at{item.x1, item.y1};
    std::vector<Point> points;
    switch (item.kind) {
        case ItemKind::window:
            canvas.set_window({item.x1, item.x2, item.y1, item.y2});
            break;
        case ItemKind::line:
            break;  // play_line
        case ItemKind::marker:
            canvas.markers(item.marker, item.marker_size, item.colour, item.width, {&at, 1});
            break;
        case ItemKind::polygon:
        case ItemKind::polyline:
            for (std::size_t i = 0; i < item.count(); ++i) points.push_back({item.xs[i], item.ys[i]});
            if (item.kind == ItemKind::polygon)
                canvas.polygon(points, item.pen_colour, item.fill_colour, item.width);
            break;
        case ItemKind::rectangle:
            canvas.rectangle({item.x1, item.x2, item.y1, item.y2}, item.pen_colour, item.fill_colour,
                             item.width);
            break;
        case ItemKind::text:
            canvas.placed_text(at, item.angle, item.text, item.font, item.colour);
            break;
    }
}

}  // namespace

int draw_to(GrapherState& state, DrawingDevice& target, OutputTarget kind, const SurfaceMapping& mapping,
            std::optional<SurfaceSize> size) {
    if (state.busy_refresh) return -1;
    const DrawingDevice& sized_by = state.surface != nullptr ? *state.surface : target;
    const SurfaceSize drawn = size.value_or(SurfaceSize{sized_by.width(), sized_by.height()});
    return kept_safe(state, [&] {
        target.set_mapping(mapping);
        state.canvas.keep_every_point(kind == OutputTarget::metafile || kind == OutputTarget::printer);
        return start_of_output(state, target, drawn);
    });
}

std::optional<std::vector<GraphicItem>> capture_chart(GrapherState& state) {
    if (state.surface == nullptr || state.busy_refresh) return std::nullopt;
    std::vector<GraphicItem> items;
    const int status = kept_safe(state, [&] {
        state.canvas.capture_into(&items);
        return start_of_output(state, *state.surface, {state.surface->width(), state.surface->height()});
    });
    if (status != 0) return std::nullopt;
    return items;
}

void play_items(const GrapherState& state, const std::vector<GraphicItem>& items, DrawingDevice& device,
                const SurfaceMapping& mapping, FailureNotes& notes) {
    device.set_mapping(mapping);
    Canvas canvas(notes);
    canvas.open(device, state.fonts());
    for (std::size_t i = 0; i < items.size();) {
        if (items[i].kind == ItemKind::line)
            i = play_line(items, i, canvas);
        else
            play_item(items[i++], canvas);
    }
    if (&device == state.surface) device.set_mapping(screen_mapping(device.height()));
}

}  // namespace anomalis::chart
