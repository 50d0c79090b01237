#pragma once

#include <algorithm>
#include <vector>

#include "core/model_body.h"

namespace anomalis::forward {

/// The centre of gravity of all corners.
inline Point3 middle(const std::vector<Point3>& points) {
    Point3 sum;
    for (const Point3& p : points) sum = {sum.x + p.x, sum.y + p.y, sum.z + p.z};
    const auto n = static_cast<double>(points.size());
    return {sum.x / n, sum.y / n, sum.z / n};
}

/// How far the points reach along one axis.
inline double span_of(const std::vector<Point3>& points, double Point3::*axis) {
    double low = points[0].*axis, high = low;
    for (const Point3& p : points) {
        low = std::min(low, p.*axis);
        high = std::max(high, p.*axis);
    }
    return high - low;
}

}  // namespace anomalis::forward
