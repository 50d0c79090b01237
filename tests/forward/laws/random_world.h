#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "core/workspace.h"
#include "forward/exact/exact_notes.h"
#include "forward/polyhedron/polyhedron.h"
#include "support/chance.h"

// Bodies, fields and stations of chance, and the exact curves over them, for the laws that every body obeys.
namespace anomalis::forward::laws {

/// All types that the exact formulas know.
inline constexpr std::array<BodyType, 7> all_types{thin_sheet, thick_sheet, edge, sloping_step,
                                                   sphere,     pipe,        wire};
/// Those of them that are magnetised and have a mass.
inline constexpr std::array<BodyType, 6> rocks{thin_sheet, thick_sheet, edge, sloping_step, sphere, pipe};

/// One body in a field, with its reference point where `body.east` and `body.north` say, and places above it.
struct World {
    EarthField field;
    ModelBody body;
    std::vector<Point3> stations;  ///< east, north, up, m
};

/// Numbers of chance are sixty-fourths, which single precision holds after a shift, a turn or a doubling.
double round_number(Chance& chance, double low, double high);

/// A body of a type, about `size` large; all that its type has may be set. Demagnetised one time in three.
ModelBody random_body(Chance& chance, BodyType type, double size);
/// A world with such a body about the origin and twelve stations above it, from `clearance` on.
World random_world(Chance& chance, BodyType type);

/// No part of the body is higher than this.
double highest_part(const ModelBody& body);
/// The stations stand at least so far above it.
double clearance(const World& world);

/// Anomaly (nT) and attraction (mGal) at the stations by the exact formulas, in double precision.
struct Curves {
    std::vector<double> mag, grav;
};
Curves exact_curves(const World& world);
/// The same of one channel, channel_mag or channel_grav.
std::vector<double> exact_curve(const World& world, int channel);

/// All that is needed to see a case again: the field, every parameter of the body, the first station.
std::string told(const World& world);

/// Calls law(chance, type) for cases of chance of each type, `usual` of them and more where the environment
/// asks for it. A failure tells the case.
template <class Types, class Law>
void for_cases(const Types& types, int usual, const Law& law);

/// Which case a failure is of.
std::string case_text(std::uint32_t seed, int number, BodyType type);

}  // namespace anomalis::forward::laws

#include <gtest/gtest.h>

namespace anomalis::forward::laws {

template <class Types, class Law>
void for_cases(const Types& types, int usual, const Law& law) {
    const std::uint32_t seed = seed_of_chance();
    const Budget budget = Budget::of_environment(std::to_string(usual).c_str());
    for (int number = 0; budget.allows(number) && !testing::Test::HasFailure(); ++number)
        for (const BodyType type : types) {
            SCOPED_TRACE(case_text(seed, number, type));
            Chance chance(seed, static_cast<std::uint32_t>(32 * number + type));
            law(chance, type);
        }
}

}  // namespace anomalis::forward::laws
