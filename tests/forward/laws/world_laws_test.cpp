// What cannot depend on where the world lies, how it is turned, seen in a mirror or how large it is.

#include <algorithm>
#include <cmath>

#include "forward/exact/exact_axes.h"
#include "forward/laws/random_world.h"

namespace anomalis::forward::laws {
namespace {

double peak(const std::vector<double>& values) {
    double highest = 0;
    for (const double v : values) highest = std::max(highest, std::abs(v));
    return highest;
}

/// `factor` times the curve of one world is the curve of the other, but for `share` of its peak.
void expect_same(const std::vector<double>& one, const std::vector<double>& other, double factor,
                 double share, const World& world, double least = 1e-12) {
    ASSERT_EQ(one.size(), other.size());
    const double allowed = share * std::max(factor * peak(one), peak(other)) + least;
    for (std::size_t i = 0; i < one.size(); ++i)
        ASSERT_NEAR(factor * one[i], other[i], allowed) << "station " << i << ", " << told(world);
}

void expect_same_curves(const World& one, const World& other, double share) {
    const Curves first = exact_curves(one), second = exact_curves(other);
    expect_same(first.mag, second.mag, 1, share, one);
    expect_same(first.grav, second.grav, 1, share, one);
}

TEST(WorldLaws, a_world_that_is_moved_has_the_same_curves) {
    for_cases(all_types, 8, [](Chance& chance, BodyType type) {
        const World here = random_world(chance, type);
        World there = here;
        const double east = round_number(chance, 1e5, 1e6), north = round_number(chance, 0, 1e7);
        const double up = round_number(chance, -1000, 4000);
        there.body.east += east;
        there.body.north += north;
        there.body.top.value += static_cast<float>(up);
        for (Point3& at : there.stations) at = {at.x + east, at.y + north, at.z + up};
        // Places of ten million metres are known to some nanometres, and so are the corners of a body.
        const double share = 1e-9 + 30 * 4e-9 / clearance(here);
        const double magnetisation = std::abs(here.body.susc.value) * 1e-6 * (1 + here.body.rem_q.value);
        const Curves first = exact_curves(here), second = exact_curves(there);
        expect_same(first.mag, second.mag, 1, share, here, 1e-8 * magnetisation * here.field.intensity);
        expect_same(first.grav, second.grav, 1, share, here, 1e-8 * std::abs(here.body.density.value));
    });
}

TEST(WorldLaws, a_world_that_is_turned_has_the_same_curves) {
    for_cases(all_types, 8, [](Chance& chance, BodyType type) {
        const World here = random_world(chance, type);
        World turned = here;
        const double degrees = round_number(chance, -360, 360);
        const double c = std::cos(exact_radians(degrees)), s = std::sin(exact_radians(degrees));
        for (Point3& at : turned.stations) at = {c * at.x + s * at.y, c * at.y - s * at.x, at.z};
        for (float* angle : {&turned.field.declination, &turned.body.strike.value, &turned.body.rem_d.value})
            *angle += static_cast<float>(degrees);
        expect_same_curves(here, turned, 1e-9);
    });
}

TEST(WorldLaws, the_mirror_image_of_a_world_has_the_same_curves) {
    for_cases(all_types, 8, [](Chance& chance, BodyType type) {
        const World here = random_world(chance, type);
        World mirrored = here;
        for (Point3& at : mirrored.stations) at.x = -at.x;
        // What falls to the right of the strike does so in the mirror when the strike goes the other way.
        ModelBody& body = mirrored.body;
        body.strike.value = 180 - body.strike.value;
        for (BodyParam* along : {&body.offset, &body.plunge})
            if (type != wire) along->value = -along->value;
        if (type == pipe) body.dip.value = -body.dip.value;
        mirrored.field.declination = -mirrored.field.declination;
        body.rem_d.value = -body.rem_d.value;
        expect_same_curves(here, mirrored, 1e-9);
    });
}

void scale_body(ModelBody& body, float by) {
    for (BodyParam* length : {&body.top, &body.width, &body.depth_extent, &body.length, &body.offset})
        length->value *= by;
    body.shell_thickness *= by;
    body.end_thickness *= by;
}

/// A sheet without lower end and without ends along strike has a level that lies at a fixed depth.
bool has_own_level(const ModelBody& body) {
    return !is_sheet(body.type) || body.depth_extent.value != 0 || body.length.value != 0;
}

std::vector<double> from_the_first(std::vector<double> values) {
    const double first = values.at(0);
    for (double& v : values) v -= first;
    return values;
}

TEST(WorldLaws, a_world_that_is_scaled_keeps_its_magnetics_and_scales_its_gravity) {
    for_cases(rocks, 8, [](Chance& chance, BodyType type) {
        const World here = random_world(chance, type);
        World scaled = here;
        const float by = std::array{0.125F, 0.5F, 3.0F, 16.0F}[static_cast<std::size_t>(chance.below(4))];
        scale_body(scaled.body, by);
        for (Point3& at : scaled.stations) at = {by * at.x, by * at.y, by * at.z};
        const Curves small = exact_curves(here), large = exact_curves(scaled);
        expect_same(small.mag, large.mag, 1, 1e-8, here);
        if (has_own_level(here.body)) return expect_same(small.grav, large.grav, by, 1e-8, here);
        const double level = peak(large.grav) / std::max(1e-9, peak(from_the_first(large.grav)));
        expect_same(from_the_first(small.grav), from_the_first(large.grav), by, 1e-9 + 1e-12 * level, here);
    });
}

TEST(WorldLaws, a_wire_at_twice_the_distance_takes_twice_the_current) {
    for_cases(std::array{wire}, 8, [](Chance& chance, BodyType type) {
        const World here = random_world(chance, type);
        World scaled = here;
        scale_body(scaled.body, 2);
        scaled.body.susc.value *= 2;
        for (Point3& at : scaled.stations) at = {2 * at.x, 2 * at.y, 2 * at.z};
        expect_same_curves(here, scaled, 1e-9);
    });
}

TEST(WorldLaws, along_a_body_without_ends_nothing_changes) {
    for_cases(all_types, 8, [](Chance& chance, BodyType type) {
        World here = random_world(chance, type);
        if (type == sphere) return;
        here.body.length.value = 0;
        here.body.plunge.value = 0;
        World along = here;
        const double strike = exact_radians(here.body.strike.value), by = chance.between(-1000, 1000);
        for (Point3& at : along.stations)
            at = {at.x + by * std::sin(strike), at.y + by * std::cos(strike), at.z};
        expect_same_curves(here, along, 1e-9);
    });
}

}  // namespace
}  // namespace anomalis::forward::laws
