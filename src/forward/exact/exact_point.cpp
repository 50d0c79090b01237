#include "forward/exact/exact_point.h"

#include <cmath>

#include "forward/exact/plane_kernel.h"
#include "forward/gravity_constant.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward {

namespace {

/// A station from the reference point, in the axes of the body.
Point3 station_at(const ExactPlace& place, std::size_t i) {
    const BodyFrame& f = place.frame;
    const double east = place.stations.east[i] - f.east;
    const double north = place.stations.north[i] - f.north;
    return {f.cos_strike * east - f.sin_strike * north, f.sin_strike * east + f.cos_strike * north,
            place.stations.sensor[i] - f.top};
}

/// 1 / R^3 from outside; inside the value at the surface, which makes the field of a uniform sphere.
double cubed_inverse(double squared, double radius) {
    const double inside = radius - face_tolerance;
    const double r = squared <= inside * inside ? radius : std::sqrt(squared);
    return 1 / (r * r * r);
}

struct Conductor {
    double x, up, strength;
};

}  // namespace

void fill_sphere_anomaly(const ExactPlace& place, double radius, const ExactField& field,
                         std::span<double> values) {
    const Point3& j = field.magnetisation;
    const Point3& f = field.direction;
    const double volume = 4 * exact_pi / 3 * radius * radius * radius;
    const double surface = radius - face_tolerance;
    for (std::size_t i = 0; i < place.stations.count; ++i) {
        const Point3 r = station_at(place, i);
        const double squared = dot(r, r);
        // Inside, the poles leave a uniform field.
        const double along = squared <= surface * surface ? 0.0 : 3 * dot(j, r) * dot(f, r) / squared;
        values[i] = volume * (along - dot(j, f)) * cubed_inverse(squared, radius);
    }
}

void fill_sphere_gravity(const ExactPlace& place, double radius, double density, std::span<double> values) {
    const double mass = gravity_constant * density * 4 * exact_pi / 3 * radius * radius * radius;
    for (std::size_t i = 0; i < place.stations.count; ++i) {
        const Point3 r = station_at(place, i);
        values[i] = mass * r.z * cubed_inverse(dot(r, r), radius);
    }
}

void fill_wire_anomaly(const ExactPlace& place, const ModelBody& body, const ExactField& field,
                       std::span<double> values) {
    const double strength = body.susc.value * field_of_unit_current;
    const double half = static_cast<double>(body.offset.value) / 2;
    const double rotation = exact_radians(body.dip.value);
    const double x = half * std::sin(rotation);
    const double up = half * std::cos(rotation);
    const Conductor pair[2] = {{x, up, strength}, {-x, -up, -strength}};
    const int count = half != 0 ? 2 : 1;
    const double ambient_x = field.direction.x * field.intensity;
    const double ambient_up = field.direction.z * field.intensity;
    for (std::size_t i = 0; i < place.stations.count; ++i) {
        const Point3 at = station_at(place, i);
        double bx = 0, bup = 0;
        for (int k = 0; k < count; ++k) {
            const double dx = at.x - pair[k].x;
            const double h = at.z - pair[k].up;
            const double squared = std::fmax(dx * dx + h * h, least_corner_distance * least_corner_distance);
            bx += pair[k].strength * h / squared;
            bup -= pair[k].strength * dx / squared;
        }
        const double change = 2 * (ambient_x * bx + ambient_up * bup) + bx * bx + bup * bup;
        const double before = std::abs(field.intensity);
        const double after = std::sqrt(std::fmax(before * before + change, 0.0));
        values[i] = after + before > 0 ? change / (after + before) : 0.0;
    }
}

}  // namespace anomalis::forward
