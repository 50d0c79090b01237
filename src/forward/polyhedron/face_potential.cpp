#include "forward/polyhedron/face_potential.h"

#include <cmath>

#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

/// Legendre polynomial of degree 20 and its derivative.
struct Legendre {
    double value, slope;

    explicit Legendre(double x) {
        constexpr int degree = 20;
        double before = 1;
        value = x;
        for (int k = 2; k <= degree; ++k) {
            const double next = ((2 * k - 1) * x * value - (k - 1) * before) / k;
            before = value;
            value = next;
        }
        slope = degree * (x * value - before) / (x * x - 1);
    }
};

CrowdedNodes make_nodes() {
    CrowdedNodes nodes{};
    for (std::size_t i = 0; i < nodes.place.size(); ++i) {
        double x = std::cos(3.14159265358979323846 * (static_cast<double>(i) + 0.75) / 20.5);
        for (int turn = 0; turn < 8; ++turn) {
            const Legendre at(x);
            x -= at.value / at.slope;
        }
        const double slope = Legendre(x).slope;
        const double t = (1 + x) / 2;
        nodes.place[i] = t * t * (3 - 2 * t);
        nodes.weight[i] = 6 * t * (1 - t) / ((1 - x * x) * slope * slope);
    }
    return nodes;
}

double edge_part(const Point3& from, const Point3& to, const Point3& normal, double height) {
    const Point3 edge = to - from;
    const double size = length(edge);
    if (size == 0) return 0;
    const Point3 along = edge * (1 / size);
    const double aside = dot(cross(along, normal), from);
    const double s1 = dot(from, along), s2 = dot(to, along);
    const double r1 = length(from), r2 = length(to);
    const double from_line = aside * aside + height * height;
    if (from_line == 0) return 0;
    const double h = std::abs(height);
    // Two arc tangents of positive denominators as one, and the logarithm on the side that loses no digits.
    const double x1 = from_line + h * r1, x2 = from_line + h * r2;
    const double y1 = aside * s1, y2 = aside * s2;
    const double turn = std::atan2(y2 * x1 - y1 * x2, x1 * x2 + y1 * y2);
    const double log = s1 + s2 >= 0 ? std::log((r2 + s2) / (r1 + s1)) : std::log((r1 - s1) / (r2 - s2));
    return aside * log - h * turn;
}

}  // namespace

const CrowdedNodes& crowded_nodes() {
    static const CrowdedNodes nodes = make_nodes();
    return nodes;
}

double face_potential(std::span<const Point3> corners, const Point3& normal, const Point3& from) {
    const double height = dot(normal, corners[0] - from);
    double sum = 0;
    for (std::size_t k = 0; k < corners.size(); ++k)
        sum += edge_part(corners[k] - from, corners[(k + 1) % corners.size()] - from, normal, height);
    return std::abs(sum);
}

}  // namespace anomalis::forward
