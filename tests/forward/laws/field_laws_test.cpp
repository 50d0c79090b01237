// What the equations of the field ask of every body: no sources in the air, Poisson's relation between
// gravity and magnetics, and the look of a small body from far away.

#include <cmath>

#include "forward/exact/exact_axes.h"
#include "forward/laws/random_world.h"
#include "forward/polyhedron/vector3.h"

namespace anomalis::forward::laws {
namespace {

constexpr double newton = 0.00667;

struct WeightedPlace {
    Point3 at;
    double weight;
};

/// Corners of an icosahedron and a dodecahedron on the unit sphere: the mean over them is that over the
/// sphere for all polynomials up to the ninth degree (McLaren, 1963).
std::vector<WeightedPlace> places_on_sphere() {
    const double golden = (1 + std::sqrt(5.0)) / 2;
    std::vector<WeightedPlace> places;
    const auto add = [&](const Point3& p, double weight) { places.push_back({p * (1 / length(p)), weight}); };
    for (const double s : {-1.0, 1.0})
        for (const double t : {-1.0, 1.0}) {
            for (const Point3& p :
                 {Point3{0, s, t * golden}, Point3{s, t * golden, 0}, Point3{t * golden, 0, s}})
                add(p, 25.0 / 840);
            for (const Point3& p : {Point3{s / golden, 0, t * golden}, Point3{t * golden, s / golden, 0},
                                    Point3{0, t * golden, s / golden}, Point3{1, s, t}, Point3{-1, s, t}})
                add(p, 27.0 / 840);
        }
    return places;
}

TEST(FieldLaws, in_the_air_every_value_is_the_mean_of_those_about_it) {
    const std::vector<WeightedPlace> sphere_places = places_on_sphere();
    for_cases(rocks, 4, [&](Chance& chance, BodyType type) {
        World world = random_world(chance, type);
        const Point3 centre = world.stations[0];
        // What the mean over the places leaves, the tenth power of radius over distance, is below 1e-7.
        const double radius = 0.15 * (centre.z - highest_part(world.body));
        world.stations = {centre};
        for (const WeightedPlace& place : sphere_places) world.stations.push_back(centre + place.at * radius);
        for (const int channel : {channel_mag, channel_grav}) {
            const std::vector<double> values = exact_curve(world, channel);
            double mean = 0, largest = 0;
            for (std::size_t i = 0; i < sphere_places.size(); ++i) {
                mean += sphere_places[i].weight * values[i + 1];
                largest = std::max(largest, std::abs(values[i + 1]));
            }
            ASSERT_NEAR(values[0], mean, 1e-6 * largest + 1e-10)
                << "channel " << channel << ", " << told(world);
        }
    });
}

/// Induced and remanent magnetisation, nT with 4 pi divided out; the field is straight down.
Point3 magnetisation(const World& world) {
    const ModelBody& body = world.body;
    const double induced = body.susc.value * 1e-6 * world.field.intensity / (4 * exact_pi);
    const double i = exact_radians(body.rem_i.value), d = exact_radians(body.rem_d.value);
    const double remanent = body.rem_q.value * std::abs(induced);
    return {remanent * std::cos(i) * std::sin(d), remanent * std::cos(i) * std::cos(d),
            -induced - remanent * std::sin(i)};
}

/// The slope of the gravity along a vector at each station, from eight places about it.
std::vector<double> gravity_along(const World& world, const Point3& vector) {
    constexpr std::array<double, 4> weights{4.0 / 5, -1.0 / 5, 4.0 / 105, -1.0 / 280};
    const Point3 along = vector * (1 / length(vector));
    const double step = 0.05 * clearance(world);
    std::vector<double> slope(world.stations.size());
    for (int k = 1; k <= 4; ++k)
        for (const double side : {-1.0, 1.0}) {
            World moved = world;
            for (Point3& at : moved.stations) at = at + along * (side * k * step);
            const std::vector<double> there = exact_curve(moved, channel_grav);
            for (std::size_t i = 0; i < slope.size(); ++i)
                slope[i] +=
                    side * weights[static_cast<std::size_t>(k - 1)] * there[i] * length(vector) / step;
        }
    return slope;
}

TEST(FieldLaws, magnetics_are_the_slope_of_gravity_along_the_magnetisation) {
    for_cases(rocks, 4, [](Chance& chance, BodyType type) {
        World world = random_world(chance, type);
        world.field.inclination = 90;
        world.body.include_demagnetisation = 0;
        if (world.body.susc.value == 0) return;
        // Whichever way a remanence is turned for a susceptibility below zero is no matter of this law.
        world.body.susc.value = std::abs(world.body.susc.value);
        const std::vector<double> magnetic = exact_curve(world, channel_mag);
        const std::vector<double> slope = gravity_along(world, magnetisation(world));
        double largest = 0, weight = 0;
        for (const double v : magnetic) largest = std::max(largest, std::abs(v));
        for (const double v : exact_curve(world, channel_grav)) weight = std::max(weight, std::abs(v));
        const double factor = 1 / (newton * world.body.density.value);
        // What the differences of the gravity lose.
        const double lost =
            1e-14 * weight * std::abs(factor) * length(magnetisation(world)) / clearance(world);
        for (std::size_t i = 0; i < magnetic.size(); ++i)
            ASSERT_NEAR(slope[i] * factor, magnetic[i], 1e-6 * largest + 100 * lost + 1e-9) << told(world);
    });
}

/// A body that ends on all sides.
World compact_world(Chance& chance, BodyType type) {
    World world = random_world(chance, type);
    ModelBody& body = world.body;
    body.include_demagnetisation = 0;
    body.susc.value = std::abs(body.susc.value) + 1;
    if (type != sphere && body.length.value == 0) body.length.value = 2 * body.width.value;
    if (is_sheet(type) && body.depth_extent.value == 0) body.depth_extent.value = body.width.value;
    return world;
}

double size_of(const ModelBody& body) {
    return std::abs(body.offset.value) + body.length.value + 30 * body.depth_extent.value +
           15 * body.width.value;
}

TEST(FieldLaws, from_far_away_a_body_is_a_mass_and_a_dipole) {
    for_cases(std::array{thin_sheet, thick_sheet, sphere, pipe}, 6, [](Chance& chance, BodyType type) {
        World world = compact_world(chance, type);
        world.field.inclination = 90;
        const double distance = 1000 * size_of(world.body);
        std::vector<Point3> ways;
        for (Point3& at : world.stations) {
            const double turn = chance.between(0, 2 * exact_pi), up = chance.between(0.3, 1);
            const double level = std::sqrt(1 - up * up);
            ways.push_back({level * std::cos(turn), level * std::sin(turn), up});
            at = ways.back() * distance + Point3{0, 0, world.body.top.value};
        }
        const Curves far = exact_curves(world);
        // One direction weighs the body; its volume is what the moment needs.
        const double mass = far.grav[0] * distance * distance / (newton * ways[0].z);
        const double volume = mass / world.body.density.value;
        const Point3 moment = magnetisation(world) * volume;
        const double strength = length(moment) / (distance * distance * distance);
        ASSERT_GT(volume, 0) << told(world);
        for (std::size_t i = 0; i < ways.size(); ++i) {
            const Point3 down{0, 0, -1};
            const double dipole = (3 * dot(moment, ways[i]) * dot(down, ways[i]) - dot(moment, down)) /
                                  (distance * distance * distance);
            ASSERT_NEAR(far.grav[i], newton * mass * ways[i].z / (distance * distance),
                        0.01 * std::abs(far.grav[0]))
                << told(world);
            ASSERT_NEAR(far.mag[i], dipole, 0.01 * strength) << told(world);
        }
    });
}

TEST(FieldLaws, from_far_away_a_body_without_ends_is_a_line_of_mass_and_of_dipoles) {
    for_cases(std::array{thin_sheet, thick_sheet, pipe}, 6, [](Chance& chance, BodyType type) {
        World world = compact_world(chance, type);
        world.body.length.value = 0;
        const double size = size_of(world.body), strike = exact_radians(world.body.strike.value);
        const double turn = chance.between(0.2, exact_pi - 0.2);
        const Point3 way{std::cos(turn) * std::cos(strike), -std::cos(turn) * std::sin(strike),
                         std::sin(turn)};
        world.stations.clear();
        for (const double distance : {1000 * size, 2000 * size})
            world.stations.push_back(way * distance + Point3{0, 0, world.body.top.value});
        const Curves far = exact_curves(world);
        ASSERT_NEAR(far.grav[0] / far.grav[1], 2, 0.02) << told(world);
        // At right angles to the moment there is none of that power; the next one is a thousandth.
        const double least = 0.01 * world.body.susc.value * 1e-6 * world.field.intensity;
        const double area = far.grav[0] * 1000 * size / (2 * newton * world.body.density.value * way.z);
        ASSERT_NEAR(far.mag[0], 4 * far.mag[1], least * std::abs(area) / (1e6 * size * size)) << told(world);
    });
}

}  // namespace
}  // namespace anomalis::forward::laws
