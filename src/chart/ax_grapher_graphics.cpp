#include <cmath>
#include <exception>

#include "chart/ax_grapher.h"
#include "chart/detail/display.h"
#include "chart/detail/grapher_state.h"
#include "chart/detail/graphic_stream.h"
#include "chart/detail/output.h"

// The retained drawings: recording, replay and streams.
namespace anomalis::chart {

namespace {

constexpr const char* saving_failed = "An error occurred in saving the graphic item: ";

/// Runs an append; an item that cannot be kept is dropped and the host told.
template <class Work>
void keep(GrapherState& state, Work&& append) {
    try {
        append();
    } catch (const std::exception& failure) {
        tell_failure(state, saving_failed + std::string(failure.what()));
    }
}

GraphicItem item_of(ItemKind kind, double x1, double y1, double x2, double y2) {
    GraphicItem item;
    item.kind = kind;
    item.x1 = x1;
    item.y1 = y1;
    item.x2 = x2;
    item.y2 = y2;
    return item;
}

}  // namespace

void AX_Grapher::DrawMarker(double x, double y, int style, Colour colour, int width) {
    GraphicItem item = item_of(ItemKind::marker, x, y, 0.0, 0.0);
    item.marker = style;
    item.colour = colour;
    item.width = width;
    item.marker_size = state_->properties.marker_size;
    keep(*state_, [&] { state_->overlay.add(item); });
}

void AX_Grapher::DrawText(double angle, double x, double y, const std::string& text) {
    keep(*state_, [&] {
        GraphicItem item = item_of(ItemKind::text, x, y, 0.0, 0.0);
        item.angle = static_cast<float>(angle);
        item.text = text;
        state_->overlay.add(std::move(item));
    });
}

void AX_Grapher::DrawRectangle(double x1, double y1, double x2, double y2, Colour pen, Colour fill,
                               int width) {
    GraphicItem item = item_of(ItemKind::rectangle, x1, y1, x2, y2);
    item.pen_colour = pen;
    item.fill_colour = fill;
    item.width = width;
    keep(*state_, [&] { state_->overlay.add(item); });
}

int AX_Grapher::DrawPolygon(int count, const double* xs, const double* ys, Colour pen, Colour fill,
                            int width) {
    int number = 0;
    keep(*state_, [&] {
        GraphicItem item;
        item.kind = ItemKind::polygon;
        item.pen_colour = pen;
        item.fill_colour = fill;
        item.width = width;
        number = state_->overlay.add_points(std::move(item), count, xs, ys);
    });
    return number;
}

void AX_Grapher::DrawPolyLine(int count, const double* xs, const double* ys, Colour colour, int width) {
    keep(*state_, [&] {
        GraphicItem item;
        item.kind = ItemKind::polyline;
        item.colour = colour;
        item.width = width;
        state_->overlay.add_points(std::move(item), count, xs, ys);
    });
}

void AX_Grapher::DrawLine(double x1, double y1, double x2, double y2, Colour colour, int width, int style) {
    GraphicItem item = item_of(ItemKind::line, x1, y1, x2, y2);
    item.colour = colour;
    item.width = width;
    item.reserved = style;
    keep(*state_, [&] { state_->overlay.add(item); });
}

void AX_Grapher::DrawXLine(double x, Colour colour, int width) {
    GraphicItem item = item_of(ItemKind::line, x, 0.0, x, 0.0);
    item.colour = colour;
    item.width = width;
    item.extent = LineExtent::full_y;
    keep(*state_, [&] { state_->overlay.add(item); });
}

void AX_Grapher::DrawYLine(double y, Colour colour, int width) {
    GraphicItem item = item_of(ItemKind::line, 0.0, y, 0.0, y);
    item.colour = colour;
    item.width = width;
    item.extent = LineExtent::full_x;
    keep(*state_, [&] { state_->overlay.add(item); });
}

void AX_Grapher::ClearSavedGraphics() {
    state_->overlay.clear();
}
void AX_Grapher::DrawGraphics() {
    draw_graphics(*state_);
}
int AX_Grapher::SavedCount() const {
    return static_cast<int>(state_->overlay.items().size());
}
int AX_Grapher::PolygonCount() const {
    return state_->overlay.polygon_count();
}

void AX_Grapher::GraphicsStream(int& mode, GraphicBytes& stream) {
    mode = 0;
    stream.clear();
    try {
        const auto items = capture_chart(*state_);
        if (!items) return;
        stream = pack_items(*items);
        mode = static_cast<int>(items->size());
    } catch (const std::exception& failure) {
        tell_failure(*state_, failure.what());
    }
}

int AX_Grapher::DrawGraphicsStream(DrawingDevice* device, int count, const GraphicBytes& stream,
                                   bool landscape, double page_width, double page_height, double scale,
                                   double offset_x, double offset_y) {
    if (device == nullptr || count <= 0 || stream.empty() || state_->busy_refresh) return -1;
    constexpr double farthest = 1e9;  // device units: a place beyond fits no device's whole numbers
    const double reach =
        std::abs(offset_x) + std::abs(offset_y) + std::abs(page_width) + std::abs(page_height);
    if (!(scale > 0.0) || !(scale * largest_surface + reach <= farthest)) return -1;
    int status = -1;
    try {
        const auto items = unpack_items(stream);
        if (!items || items->size() != static_cast<std::size_t>(count)) return -1;
        SurfaceMapping mapping = screen_mapping(0.0, scale);
        mapping.device_offset_x = offset_x;
        // Told as the row of pixels at the bottom edge, so the edge itself is one further.
        mapping.device_offset_y = offset_y + 1.0;
        mapping.landscape = landscape;
        mapping.page_width = landscape ? page_height : page_width;
        const Busy busy(state_->busy_refresh);
        play_items(*state_, *items, *device, mapping, state_->notes);
        status = 0;
    } catch (const std::exception& failure) {
        state_->notes.add(failure.what());
    }
    tell_failures(*state_);
    return status;
}

}  // namespace anomalis::chart
