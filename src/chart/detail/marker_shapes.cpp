#include "chart/detail/marker_shapes.h"

#include <algorithm>

namespace anomalis::chart {

bool is_letter_marker(int style) {
    return style >= -26 && style <= -1;
}

char marker_letter(int style) {
    return static_cast<char>('A' - 1 - style);
}

MarkerGeometry::MarkerGeometry(int style, double radius, Colour colour, double width) {
    shape_.style = style;
    radius = std::min(radius, largest_marker);
    shape_.radius = radius;
    shape_.pen = {colour, drawn_width(width), LineStyle::solid};
    if (!(radius > 0.0)) return;
    switch (style) {
        case 1:
            shape_.pen.width = 1.0;
            set_square(radius);
            break;
        case 2:
            shape_.filled = true;
            set_square(radius);
            break;
        case 3:
            set_square(radius);
            break;
        case 4:
            add_diagonals(radius);
            break;
        case 5:
            add_cross(radius);
            break;
        case 6:
            add_diagonals(radius + 1.0);
            add_cross(radius + 1.0);
            break;
        case 7:
            shape_.filled = true;
            set_diamond(radius);
            break;
        case 8:
            set_diamond(radius);
            break;
        default:
            break;
    }
    shape_.strokes = {strokes_.data(), stroke_count_};
}

void MarkerGeometry::add_diagonals(double r) {
    strokes_[stroke_count_++] = {{-r, -r}, {r, r}};
    strokes_[stroke_count_++] = {{-r, r}, {r, -r}};
}

void MarkerGeometry::add_cross(double r) {
    strokes_[stroke_count_++] = {{-r, 0.0}, {r, 0.0}};
    strokes_[stroke_count_++] = {{0.0, -r}, {0.0, r}};
}

void MarkerGeometry::set_square(double r) {
    outline_ = {Point{-r, -r}, Point{r, -r}, Point{r, r}, Point{-r, r}};
    shape_.outline = outline_;
}

void MarkerGeometry::set_diamond(double r) {
    outline_ = {Point{0.0, -r}, Point{r, 0.0}, Point{0.0, r}, Point{-r, 0.0}};
    shape_.outline = outline_;
}

}  // namespace anomalis::chart
