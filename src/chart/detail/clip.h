#pragma once

#include <span>
#include <vector>

#include "chart/drawing_types.h"

namespace anomalis::chart {

/// Where a point lies against a rectangle: 1 left, 2 right, 4 below, 8 above, summed; 0 inside.
int out_code(const Rect& window, Point p);

/// Cuts a segment at a window (Cohen and Sutherland). False when nothing is left, and for ends that are not
/// finite. Ends inside stay as they are, to the bit.
bool clip_segment(const Rect& window, Point& a, Point& b);

/// Cuts a filled polygon at a window (Sutherland and Hodgman 1974) into `cut`, which keeps its storage; fewer
/// than 3 points: nothing is left. `scratch` is working storage.
void clip_polygon(const Rect& window, std::span<const Point> points, std::vector<Point>& cut,
                  std::vector<Point>& scratch);

}  // namespace anomalis::chart
