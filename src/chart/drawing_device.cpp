#include "chart/drawing_device.h"

#include <array>
#include <vector>

namespace anomalis::chart {

void DrawingDevice::strokes(std::span<const MarkerShape::Stroke> pieces, const Pen& pen) {
    for (const MarkerShape::Stroke& piece : pieces) {
        const std::array<Point, 2> line{piece.from, piece.to};
        polyline(line, pen);
    }
}

void DrawingDevice::markers(const MarkerShape& shape, std::span<const Point> anchors) {
    std::vector<Point> moved(shape.outline.size());
    for (const Point& anchor : anchors) {
        for (const MarkerShape::Stroke& stroke : shape.strokes) {
            const std::array<Point, 2> line{Point{anchor.x + stroke.from.x, anchor.y + stroke.from.y},
                                            Point{anchor.x + stroke.to.x, anchor.y + stroke.to.y}};
            polyline(line, shape.pen);
        }
        if (moved.empty()) continue;
        for (std::size_t i = 0; i < moved.size(); ++i)
            moved[i] = {anchor.x + shape.outline[i].x, anchor.y + shape.outline[i].y};
        if (shape.filled) polygon_fill(moved, shape.fill == no_colour ? shape.pen.colour : shape.fill);
        if (shape.pen.colour != no_colour) polygon_outline(moved, shape.pen);
    }
}

}  // namespace anomalis::chart
