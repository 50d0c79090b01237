#pragma once

#include <cmath>

#include "core/model_body.h"

namespace anomalis::forward {

inline Point3 operator+(const Point3& a, const Point3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Point3 operator-(const Point3& a, const Point3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Point3 operator*(const Point3& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}

inline double dot(const Point3& a, const Point3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Point3 cross(const Point3& a, const Point3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Point3& a) {
    return std::sqrt(dot(a, a));
}

}  // namespace anomalis::forward
