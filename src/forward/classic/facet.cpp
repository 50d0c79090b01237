#include "forward/classic/facet.h"

#include <cmath>
#include <utility>

#include "core/angles.h"
#include "core/faults.h"
#include "forward/station_columns.h"

namespace anomalis::forward {

namespace {

constexpr int most_attempts = 10;

NedVector scaled(const NedVector& v, double by) {
    return {v.north * by, v.east * by, v.down * by};
}

NedVector sum_of(const NedVector& a, const NedVector& b) {
    return {a.north + b.north, a.east + b.east, a.down + b.down};
}

std::size_t after(const PlaneFace& face, std::size_t i) {
    return i + 1 == face.corners.size() ? 0 : i + 1;
}

/// Solid angle of the face with the sign of its side.
double solid_angle(const PlaneFace& face, const NedVector& observer, double distance) {
    if (distance == 0) return 0;
    const std::size_t n = face.corners.size();
    double angles = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const std::size_t middle = after(face, i);
        const std::size_t last = after(face, middle);
        double sign = 1;
        angles += solid_angle_corner(face.corners[i] - observer, face.corners[middle] - observer,
                                     face.corners[last] - observer, face.normal, sign);
    }
    const double excess = angles - (static_cast<double>(n) - 2) * pi;
    return distance < 0 ? excess : -excess;
}

/// The logarithm of an edge over its length: the integral of 1 / r along it.
double edge_integral(const NedVector& a, double r1, const NedVector& edge, double edge_length) {
    double t = dot(a, edge) / edge_length;
    double u = 2 * dot(a, edge);
    double sign = 1;
    if (r1 + t == 0) {
        sign = -1;
        u = -u;
        t = -t;
    }
    if (r1 + t == 0) return 0;
    const double squared = edge_length * edge_length + u + r1 * r1;
    if (squared < 0) throw Fault(FaultKind::invalid_call);
    const double argument = (std::sqrt(squared) + edge_length + t) / (r1 + t);
    if (argument <= 0) throw Fault(FaultKind::invalid_call);
    return sign * std::log(argument) / edge_length;
}

/// Sum of the edges times their integrals. False when the observer was too close to an edge and was moved.
bool edge_sum(const PlaneFace& face, NedVector& observer, int attempt, NedVector& sum) {
    sum = {};
    for (std::size_t i = 0; i < face.corners.size(); ++i) {
        const NedVector& from = face.corners[i];
        const NedVector& to = face.corners[after(face, i)];
        const NedVector edge = to - from;
        const double edge_length = length(edge);
        if (edge_length == 0) continue;  // two corners in one place: no edge, and nothing to be close to
        NedVector a = from - observer;
        NedVector b = to - observer;
        const double r1 = length(a);
        const double r2 = length(b);
        const NedVector product = cross_product(a, b);
        const double close = r1 * r2 == 0 ? 0 : std::sqrt(dot(product, product) / (r1 * r2));
        if (close < near_edge) {
            if (std::abs(edge.down) < 0.1) {
                // North takes the east component and east the north: the step leads away from the edge.
                observer.north += edge.east / 10 * attempt;
                observer.east += edge.north / 10 * attempt;
            }
            observer.down -= 1.0;
            if (attempt < most_attempts) return false;
            if (r1 > r2) std::swap(a, b);
        }
        sum = sum_of(sum, scaled(edge, edge_integral(a, r1, edge, edge_length)));
    }
    return true;
}

}  // namespace

NedVector operator-(const NedVector& a, const NedVector& b) {
    return {a.north - b.north, a.east - b.east, a.down - b.down};
}

double dot(const NedVector& a, const NedVector& b) {
    return a.north * b.north + a.east * b.east + a.down * b.down;
}

NedVector cross_product(const NedVector& a, const NedVector& b) {
    return {a.east * b.down - a.down * b.east, a.down * b.north - a.north * b.down,
            a.north * b.east - a.east * b.north};
}

double length(const NedVector& v) {
    return std::sqrt(dot(v, v));
}

double solid_angle_corner(const NedVector& a, const NedVector& b, const NedVector& c, const NedVector& normal,
                          double& sign) {
    sign = 1;
    const double side = dot(normal, a);
    if (side == 0) return 0;
    const NedVector& u = side > 0 ? c : a;
    const NedVector& v = side > 0 ? a : c;
    const NedVector first = cross_product(b, u);
    const NedVector second = cross_product(v, b);
    const double first_length = length(first);
    const double second_length = length(second);
    if (first_length == 0 || second_length == 0) return 0;
    const NedVector n1 = scaled(first, 1 / first_length);
    const NedVector n2 = scaled(second, -1 / second_length);
    const double angle = guarded_acos(dot(n1, n2));
    if (dot(v, n1) >= 0) return angle;
    sign = -1;
    return 2 * pi - angle;
}

PlaneFace make_face(std::span<const NedVector> corners, const NedVector& magnetisation) {
    PlaneFace face;
    face.corners = corners;
    NedVector sum;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i)
        sum = sum_of(sum, cross_product(corners[i] - corners[0], corners[i + 1] - corners[0]));
    const double area = length(sum);
    if (area == 0) return face;
    face.normal = scaled(sum, 1 / area);
    face.pole = dot(magnetisation, face.normal);
    face.has_normal = true;
    return face;
}

FacetTerms facet_terms(const PlaneFace& face, NedVector observer) {
    const NedVector& n = face.normal;
    for (int attempt = 1;; ++attempt) {
        const double distance = dot(face.corners[0] - observer, n);
        const double angle = solid_angle(face, observer, distance);
        NedVector p;
        if (!edge_sum(face, observer, attempt, p)) continue;
        return {{n.north * angle + n.down * p.east - n.east * p.down,
                 n.east * angle + n.north * p.down - n.down * p.north,
                 n.down * angle + n.east * p.north - n.north * p.east},
                distance};
    }
}

void calculate_facet_response(const Workspace& workspace, ModelBody& body, const FacetWanted& wanted,
                              const NedVector& magnetisation, std::span<const NedVector> corners,
                              Faults& faults) {
    report_failure(faults, "An error occurred calculating the facet response: ", [&] {
        const PlaneFace face = make_face(corners, magnetisation);
        if (!face.has_normal) return;
        if (wanted.magnetic && std::abs(face.pole) < least_pole) return;
        const StationView stations = station_view(workspace);
        const auto column = [&](bool is_wanted, int number) {
            return is_wanted ? response_column(workspace, body, number) : nullptr;
        };
        float* const gravity = column(wanted.gravity, 2);
        float* const north = column(wanted.magnetic, 3);
        float* const east = column(wanted.magnetic, 4);
        float* const down = column(wanted.magnetic, 5);
        const auto add = [](float& to, double value) { to = static_cast<float>(to + value); };
        for (std::size_t i = 0; i < stations.count; ++i) {
            const NedVector observer{stations.north[i] - stations.north[0],
                                     stations.east[i] - stations.east[0],
                                     -(stations.sensor[i] - stations.sensor[0])};
            const FacetTerms terms = facet_terms(face, observer);
            if (wanted.magnetic) {
                add(north[i], terms.field.north * face.pole);
                add(east[i], terms.field.east * face.pole);
                add(down[i], terms.field.down * face.pole);
            }
            if (wanted.gravity && terms.distance != 0) add(gravity[i], -terms.field.down * terms.distance);
        }
    });
}

}  // namespace anomalis::forward
