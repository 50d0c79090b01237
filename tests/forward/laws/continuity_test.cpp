// Nothing jumps that the body does not: over a small walk through stations and parameters, the largest of
// many small changes halves as the steps do.

#include <algorithm>
#include <cmath>
#include <functional>

#include "core/body_parameters.h"
#include "forward/laws/random_world.h"
#include "forward/line.h"

namespace anomalis::forward::laws {
namespace {

using Values = std::vector<double>;

double largest_change(const Values& one, const Values& other) {
    double largest = 0;
    for (std::size_t i = 0; i < one.size(); ++i) largest = std::max(largest, std::abs(one[i] - other[i]));
    return largest;
}

double largest_value(const Values& values) {
    return largest_change(values, Values(values.size()));
}

struct Walk {
    double first = 0;  ///< the largest change between neighbours of eight steps
    double last =
        0;          ///< what is left of it when its step was halved twelve times, always for the larger half
    double at = 0;  ///< where
    double size = 0;  ///< of the values
};

Walk walk_into_the_largest_change(const std::function<Values(double)>& values_at) {
    constexpr int steps = 8, halvings = 12;
    Walk walk;
    double low = 0, high = 1;
    Values at_low, at_high, before = values_at(0);
    for (int i = 1; i <= steps; ++i) {
        const Values now = values_at(static_cast<double>(i) / steps);
        walk.size = std::max(walk.size, largest_value(now));
        if (largest_change(before, now) >= walk.first) {
            walk.first = largest_change(before, now);
            low = (i - 1.0) / steps, high = static_cast<double>(i) / steps;
            at_low = before, at_high = now;
        }
        before = now;
    }
    for (int i = 0; i < halvings; ++i) {
        const double middle = (low + high) / 2;
        const Values at_middle = values_at(middle);
        const bool lower = largest_change(at_low, at_middle) > largest_change(at_middle, at_high);
        (lower ? high : low) = middle;
        (lower ? at_high : at_low) = at_middle;
    }
    walk.last = largest_change(at_low, at_high);
    walk.at = low;
    return walk;
}

/// Twelve halvings make a change 4096 times smaller; single precision of the parameters and a bend on the way
/// have room in a share of it.
void expect_no_jump(const Walk& walk, const std::string& text) {
    EXPECT_LE(walk.last, 0.02 * walk.first + 1e-6 * walk.size + 1e-9)
        << "at " << walk.at << " of the walk, " << walk.first << " fell to " << walk.last << ": " << text;
}

/// Values where forms of a formula meet: a walk passes through one of them in its middle.
bool pass_through(Chance& chance, const World& world, int code, float& middle) {
    switch (code) {
        case param_dip:
            middle = world.body.type == pipe ? 0.0F : 90.0F;
            return world.body.type != wire;
        case param_strike:
            middle = static_cast<float>(90 * (chance.below(7) - 3));
            return true;
        case param_slope:
        case param_plunge:
        case param_rem_q:
        case param_rem_i:
        case param_susc:
        case param_density:
            middle = 0;
            return world.body.include_demagnetisation == 0 || code != param_susc;
        case param_offset:
            // A separation of 0 makes one wire of a pair.
            middle = 0;
            return world.body.type != wire;
        default:
            return false;
    }
}

/// Where a walk through the parameters begins and ends.
std::array<ModelBody, 2> choose_ends(Chance& chance, const World& world) {
    std::array<ModelBody, 2> ends{world.body, world.body};
    for (const BodyParameter& row : body_parameters()) {
        const float value = (world.body.*row.slot).value;
        float middle = value, special = value;
        const bool through = chance.one_in(4) && pass_through(chance, world, row.code, special);
        if (through) middle = special;
        // What is 0 may stand for something without end.
        if (value == 0 && !through) continue;
        const bool angle = row.range.of(world.body.type).bounded();
        const auto reach =
            static_cast<float>((angle ? 2.0 : 0.05 * std::abs(value) + 0.01) * chance.between(-1, 1));
        (ends[0].*row.slot).value = middle - reach;
        (ends[1].*row.slot).value = middle + reach;
    }
    return ends;
}

ModelBody between(const std::array<ModelBody, 2>& ends, double share) {
    ModelBody body = ends[0];
    for (const BodyParameter& row : body_parameters()) {
        const double from = (ends[0].*row.slot).value, to = (ends[1].*row.slot).value;
        (body.*row.slot).value = static_cast<float>(from + share * (to - from));
    }
    return body;
}

TEST(ContinuityLaws, nothing_jumps_under_small_changes_of_parameters) {
    for_cases(all_types, 6, [](Chance& chance, BodyType type) {
        World world = random_world(chance, type);
        const auto ends = choose_ends(chance, world);
        const double highest = std::max(highest_part(ends[0]), highest_part(ends[1]));
        for (Point3& at : world.stations)
            at.z = std::max(at.z, highest + 0.2 * std::abs(world.body.width.value));
        for (const int channel : {channel_mag, channel_grav}) {
            const Walk walk = walk_into_the_largest_change([&](double share) {
                World there = world;
                there.body = between(ends, share);
                return exact_curve(there, channel);
            });
            World first = world, last = world;
            first.body = ends[0];
            last.body = ends[1];
            expect_no_jump(
                walk, "channel " + std::to_string(channel) + ", from " + told(first) + " to " + told(last));
        }
    });
}

Walk walk_of_stations(const World& world, int channel, const Point3& along) {
    return walk_into_the_largest_change([&](double share) {
        World there = world;
        for (Point3& at : there.stations)
            at = {at.x + share * along.x, at.y + share * along.y, at.z + share * along.z};
        return exact_curve(there, channel);
    });
}

TEST(ContinuityLaws, nothing_jumps_on_the_way_of_a_sensor) {
    for_cases(all_types, 6, [](Chance& chance, BodyType type) {
        const World world = random_world(chance, type);
        const double far = 4 * clearance(world);
        const Point3 along{chance.between(-far, far), chance.between(-far, far),
                           chance.one_in(2) ? 0.0 : chance.between(0, far)};
        for (const int channel : {channel_mag, channel_grav})
            expect_no_jump(walk_of_stations(world, channel, along),
                           "channel " + std::to_string(channel) + ", " + told(world));
    });
}

TEST(ContinuityLaws, gravity_jumps_nowhere_on_a_way_through_the_body) {
    for_cases(rocks, 6, [](Chance& chance, BodyType type) {
        World world = random_world(chance, type);
        const double size = world.body.width.value;
        const auto near = [&] { return chance.between(-2 * size, 2 * size); };
        for (Point3& at : world.stations) at = {near(), near(), world.body.top.value + near()};
        const Point3 along{near(), near(), near()};
        expect_no_jump(walk_of_stations(world, channel_grav, along), told(world));
    });
}

}  // namespace
}  // namespace anomalis::forward::laws
