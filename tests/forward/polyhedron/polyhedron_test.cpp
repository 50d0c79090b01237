#include "forward/polyhedron/polyhedron.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

#include "forward/polyhedron/polyhedron_asking.h"
#include "forward/polyhedron/polyhedron_shapes.h"
#include "forward/polyhedron/vector3.h"

// The laws that the field of any uniform body obeys.

namespace anomalis::forward {
namespace {

using namespace shapes;

constexpr double pi = std::numbers::pi;
const Point3 magnetisation{120, -340, 250};
const Point3 direction{-0.03, 0.42, -0.907};

/// Places round a body of about a kilometre, some of them inside.
Stations places(double reach, int count = 200) {
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> at(-reach, reach);
    Stations stations;
    for (int i = 0; i < count; ++i) stations.add({at(random), at(random), at(random)});
    return stations;
}

double largest(const std::vector<double>& values) {
    double most = 0;
    for (double value : values) most = std::max(most, std::fabs(value));
    return most;
}

void expect_same(const std::vector<double>& got, const std::vector<double>& want, double tolerance) {
    ASSERT_EQ(got.size(), want.size());
    const double scale = largest(want);
    ASSERT_GT(scale, 0);
    for (std::size_t i = 0; i < got.size(); ++i) ASSERT_NEAR(got[i], want[i], tolerance * scale) << i;
}

std::vector<double> sum_of(std::vector<double> a, const std::vector<double>& b) {
    for (std::size_t i = 0; i < a.size(); ++i) a[i] += b[i];
    return a;
}

TEST(Polyhedron, two_bodies_in_one_mesh_are_the_sum_of_both) {
    const Solid first = box_solid({-900, -500, -700}, {-200, 300, -100});
    Solid both = first;
    const Solid second = pipe_solid({400, 200, -50}, 300, 800, 12, 2);
    for (const Facet& f : second.facets) both.facets.push_back({f[0] + 8, f[1] + 8, f[2] + 8});
    both.points.insert(both.points.end(), second.points.begin(), second.points.end());
    Polyhedron one = polyhedron_of(first), two = polyhedron_of(second), all = polyhedron_of(both);
    const Stations at = places(1500);
    expect_same(gravities(all, at), sum_of(gravities(one, at), gravities(two, at)), 1e-11);
    expect_same(total_fields(all, at, magnetisation, direction),
                sum_of(total_fields(one, at, magnetisation, direction),
                       total_fields(two, at, magnetisation, direction)),
                1e-11);
    EXPECT_NEAR(all.volume(), one.volume() + two.volume(), 1e-9 * all.volume());
}

TEST(Polyhedron, a_body_cut_in_two_equals_the_whole) {
    Polyhedron whole = polyhedron_of(box_solid({-500, -400, -900}, {600, 300, -50}));
    Polyhedron west = polyhedron_of(box_solid({-500, -400, -900}, {123, 300, -50}));
    Polyhedron east = polyhedron_of(box_solid({123, -400, -900}, {600, 300, -50}));
    const Stations at = places(2000);
    expect_same(sum_of(gravities(west, at), gravities(east, at)), gravities(whole, at), 1e-11);
    expect_same(sum_of(total_fields(west, at, magnetisation, direction),
                       total_fields(east, at, magnetisation, direction)),
                total_fields(whole, at, magnetisation, direction), 1e-11);
}

TEST(Polyhedron, moving_body_and_stations_together_changes_nothing) {
    Solid solid = sphere_solid({0, 0, -400}, 300, 2);
    Polyhedron here = polyhedron_of(solid);
    Stations at = places(1500);
    const auto gravity = gravities(here, at);
    const auto field = total_fields(here, at, magnetisation, direction);
    const Point3 shift{612345.25, 7234567.5, 128};
    for (Point3& p : solid.points) p = p + shift;
    for (std::size_t i = 0; i < at.size(); ++i) {
        at.east[i] += shift.x;
        at.north[i] += shift.y;
        at.up[i] += shift.z;
    }
    Polyhedron there = polyhedron_of(solid);
    expect_same(gravities(there, at), gravity, 1e-10);
    expect_same(total_fields(there, at, magnetisation, direction), field, 1e-10);
}

TEST(Polyhedron, turning_everything_about_the_vertical_changes_nothing) {
    Solid solid = pipe_solid({100, -200, -30}, 150, 700, 8, 3);
    Polyhedron before = polyhedron_of(solid);
    Stations at = places(1000);
    const auto gravity = gravities(before, at);
    const auto field = total_fields(before, at, magnetisation, direction);
    const double c = std::cos(0.7), s = std::sin(0.7);
    const auto turned = [&](const Point3& p) { return Point3{c * p.x - s * p.y, s * p.x + c * p.y, p.z}; };
    for (Point3& p : solid.points) p = turned(p);
    Stations round;
    for (std::size_t i = 0; i < at.size(); ++i) round.add(turned({at.east[i], at.north[i], at.up[i]}));
    Polyhedron after = polyhedron_of(solid);
    expect_same(gravities(after, round), gravity, 1e-11);
    expect_same(total_fields(after, round, turned(magnetisation), turned(direction)), field, 1e-11);
}

TEST(Polyhedron, reversed_faces_give_the_same_field) {
    Solid solid = sphere_solid({0, 100, -400}, 350, 2);
    Polyhedron outward = polyhedron_of(solid);
    for (Facet& facet : solid.facets) std::swap(facet[0], facet[2]);
    Polyhedron inward = polyhedron_of(solid);
    const Stations at = places(1000);
    expect_same(gravities(inward, at), gravities(outward, at), 1e-13);
    expect_same(total_fields(inward, at, magnetisation, direction),
                total_fields(outward, at, magnetisation, direction), 1e-13);
    EXPECT_GT(inward.volume(), 0);
    EXPECT_GT(gravity_at(inward, {0, 100, 50}), 0);
}

TEST(Polyhedron, the_trace_tells_inside_from_outside) {
    const double density = 2.67;
    const double inside = -4 * pi * gravity_constant * density;
    Polyhedron body = polyhedron_of(box_solid({-500, -400, -900}, {600, 300, -50}));
    const Stations at = places(1000, 500);
    const auto tensors = gradients(body, at, density);
    int found_inside = 0;
    for (std::size_t i = 0; i < at.size(); ++i) {
        const bool in = at.east[i] > -500 && at.east[i] < 600 && at.north[i] > -400 && at.north[i] < 300 &&
                        at.up[i] > -900 && at.up[i] < -50;
        found_inside += in ? 1 : 0;
        EXPECT_NEAR(tensors[i].trace(), in ? inside : 0, 1e-12);
    }
    EXPECT_GT(found_inside, 20);
}

TEST(Polyhedron, the_gradient_is_the_derivative_of_the_attraction) {
    Polyhedron body = polyhedron_of(pipe_solid({0, 0, -50}, 200, 600, 12, 1));
    const double step = 0.01;
    const Stations at = places(600, 50);
    const auto tensors = gradients(body, at, 1);
    for (std::size_t i = 0; i < at.size(); ++i) {
        const Point3 p{at.east[i], at.north[i], at.up[i]};
        const auto slope = [&](const Point3& along) {  // of the upward attraction
            return -(gravity_at(body, p + along * step) - gravity_at(body, p - along * step)) / (2 * step);
        };
        EXPECT_NEAR(slope({1, 0, 0}), tensors[i].xz, 1e-7);
        EXPECT_NEAR(slope({0, 1, 0}), tensors[i].yz, 1e-7);
        EXPECT_NEAR(slope({0, 0, 1}), tensors[i].zz, 1e-7);
    }
}

TEST(Polyhedron, the_magnetic_field_follows_the_gravity_gradient) {
    Polyhedron body = polyhedron_of(sphere_solid({0, 0, -400}, 300, 1));
    const Stations at = places(900, 60);
    const auto tensors = gradients(body, at, 1 / gravity_constant);
    const auto fields = magnetic_fields(body, at, magnetisation);
    const auto anomaly = total_fields(body, at, magnetisation, direction);
    const auto exchanged = total_fields(body, at, direction, magnetisation);
    for (std::size_t i = 0; i < at.size(); ++i) {
        const Tensor3& t = tensors[i];
        const Point3& m = magnetisation;
        EXPECT_NEAR(fields[i].x, t.xx * m.x + t.xy * m.y + t.xz * m.z, 1e-9);
        EXPECT_NEAR(fields[i].y, t.xy * m.x + t.yy * m.y + t.yz * m.z, 1e-9);
        EXPECT_NEAR(fields[i].z, t.xz * m.x + t.yz * m.y + t.zz * m.z, 1e-9);
        EXPECT_NEAR(anomaly[i], dot(fields[i], direction), 1e-9);
        EXPECT_NEAR(anomaly[i], exchanged[i], 1e-9);
    }
}

TEST(Polyhedron, one_pass_for_both_gives_what_two_passes_give) {
    Polyhedron body = polyhedron_of(pipe_solid({0, 0, -50}, 200, 600, 12, 1));
    const Stations at = places(5000, 300);  // near and far
    std::vector<double> anomaly(at.size()), attraction(at.size());
    body.total_field_and_gravity(at.spans(), magnetisation, direction, 2.9, anomaly, attraction);
    EXPECT_EQ(anomaly, total_fields(body, at, magnetisation, direction));
    EXPECT_EQ(attraction, gravities(body, at, 2.9));
}

TEST(Polyhedron, a_fine_sphere_attracts_like_a_point) {
    const Point3 centre{50, -30, -500};
    const Point3 station{200, 100, 10};
    const Point3 off = station - centre;
    const double r = length(off);
    const double volume = 4 * pi / 3 * 300 * 300 * 300;
    const double point = gravity_constant * volume * off.z / (r * r * r);
    double previous = 1;
    for (int levels = 2; levels <= 5; ++levels) {
        Polyhedron ball = polyhedron_of(sphere_solid(centre, 300, levels));
        const double error = std::fabs(gravity_at(ball, station) / point - 1);
        EXPECT_LT(error, previous / 3.5) << levels;  // the surface is approached quadratically
        previous = error;
        const double of_its_volume = gravity_at(ball, station) / (point * ball.volume() / volume);
        EXPECT_NEAR(of_its_volume, 1, 8e-3 / std::pow(4, levels));
    }
}

TEST(Polyhedron, a_fine_sphere_has_the_field_of_a_dipole) {
    const Point3 centre{0, 0, -500};
    Polyhedron ball = polyhedron_of(sphere_solid(centre, 200, 5));
    for (const Point3& station : {Point3{0, 0, 0}, Point3{300, -200, 20}, Point3{-1000, 50, 0}}) {
        const Point3 off = station - centre;
        const double r = length(off);
        const Point3 m = magnetisation * ball.volume();
        const Point3 dipole = off * (3 * dot(m, off) / std::pow(r, 5)) - m * (1 / (r * r * r));
        const Point3 field = magnetic_fields(ball, stations_at({station}), magnetisation)[0];
        EXPECT_LT(length(field - dipole), 1e-4 * length(dipole));
    }
}

TEST(Polyhedron, a_wide_slab_attracts_by_its_thickness_alone) {
    Polyhedron slab = polyhedron_of(box_solid({-1e7, -1e7, -150}, {1e7, 1e7, -50}));
    for (double height : {0.0, 10.0, 100.0}) EXPECT_NEAR(gravity_at(slab, {0, 0, height}), 4.1909, 1e-3);
    EXPECT_NEAR(gravity_at(slab, {0, 0, -100}), 0, 1e-6);
    EXPECT_NEAR(gravity_at(slab, {0, 0, -200}), -4.1909, 1e-3);
}

TEST(Polyhedron, the_demagnetising_tensor_has_its_known_values) {
    Polyhedron cube = polyhedron_of(box_solid({10, 20, -30}, {110, 120, 70}));
    const Tensor3 middle = cube.demagnetising_tensor(cube.centroid());
    EXPECT_NEAR(middle.xx, 1.0 / 3, 1e-12);
    EXPECT_NEAR(middle.yy, 1.0 / 3, 1e-12);
    EXPECT_NEAR(middle.zz, 1.0 / 3, 1e-12);
    EXPECT_NEAR(middle.xy, 0, 1e-12);
    Polyhedron plate = polyhedron_of(box_solid({-1000, -1000, 0}, {1000, 1000, 1}));
    EXPECT_NEAR(plate.demagnetising_tensor({0, 0, 0.5}).zz, 1, 1e-3);
    Polyhedron rod = polyhedron_of(box_solid({-1, -1, 0}, {1, 1, 2000}));
    const Tensor3 along = rod.demagnetising_tensor({0, 0, 1000});
    EXPECT_NEAR(along.zz, 0, 1e-5);
    EXPECT_NEAR(along.xx, 0.5, 1e-5);
    EXPECT_NEAR(cube.demagnetising_tensor({40, 25, 60}).trace(), 1, 1e-12);
    EXPECT_NEAR(cube.demagnetising_tensor({0, 0, 0}).trace(), 0, 1e-12);
    EXPECT_NEAR(cube.demagnetising_tensor({1e6, 0, 0}).trace(), 0, 1e-12);
}

TEST(Polyhedron, density_and_magnetisation_count_in_proportion) {
    Polyhedron body = polyhedron_of(sphere_solid({0, 0, -400}, 300, 1));
    const Point3 place{100, 50, 0};
    EXPECT_NEAR(gravity_at(body, place, -3), -3 * gravity_at(body, place), 1e-12);
    EXPECT_EQ(gravity_at(body, place, 0), 0);
    const Stations at = stations_at({place});
    EXPECT_NEAR(total_fields(body, at, magnetisation * 5, direction)[0],
                5 * total_fields(body, at, magnetisation, direction)[0], 1e-9);
    EXPECT_EQ(total_fields(body, at, {}, direction)[0], 0);
}

}  // namespace
}  // namespace anomalis::forward
