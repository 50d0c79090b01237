// The laws that the classic formulas obey too. They hold for stations above a body; those that take the
// strike out of the magnetics, lift a station or lose a corner's edges are properties of these formulas and
// are told in docs/reference/formulas.md: a turned, a mirrored and a scaled world, and continuity near a top,
// are none of theirs.

#include <cmath>

#include "core/body_parameters.h"
#include "forward/laws/random_world.h"
#include "forward/line.h"

namespace anomalis::forward::laws {
namespace {

constexpr int stations = 61;
constexpr double spacing = 16;

ModelBody& add_random(Line& line, Chance& chance, BodyType type) {
    ModelBody& body = line.add(type);
    const ModelBody chosen = random_body(chance, type, 100);
    for (const BodyParameter& row : body_parameters())
        if (row.code != param_distance) body.*row.slot = chosen.*row.slot;
    body.slope.value = body.plunge.value = 0;
    body.top.value = -300;
    body.distance.value = static_cast<float>(16 * (10 + chance.below(40)));
    // The first calculation gives a sphere its strike.
    line.calculate();
    return body;
}

double largest_of(const std::vector<double>& one, const std::vector<double>& other) {
    return std::max(peak_of(one), peak_of(other));
}

TEST(ClassicLaws, twice_the_susceptibility_and_the_density_give_twice_the_curves) {
    for_cases(all_types, 6, [](Chance& chance, BodyType type) {
        Line line(stations, spacing, round_number(chance, 0, 360));
        ModelBody& body = add_random(line, chance, type);
        const std::array before{line.response(1), line.response(2)};
        body.susc.value *= 2;
        body.density.value *= 2;
        // The field of a current is added to the earth's as a vector, and only nearly grows with it.
        const double share = type == wire ? 0.2 : 2e-6;
        for (int column : {1, 2}) {
            const auto& once = before[static_cast<std::size_t>(column - 1)];
            const std::vector<double> twice = line.response(column);
            EXPECT_LE(largest_difference(times(once, 2), twice), share * peak_of(twice))
                << "column " << column;
        }
    });
}

TEST(ClassicLaws, a_body_that_is_moved_along_the_line_takes_its_curve_along) {
    for_cases(all_types, 6, [](Chance& chance, BodyType type) {
        // Along an axis, so that stations and bodies are moved without rounding.
        Line line(stations, spacing, 90 * chance.below(4));
        ModelBody& body = add_random(line, chance, type);
        const int steps = 1 + chance.below(5);
        const std::array before{line.response(1), line.response(2)};
        body.distance.value += static_cast<float>(steps * spacing);
        for (int column : {1, 2}) {
            const auto& here = before[static_cast<std::size_t>(column - 1)];
            const std::vector<double> there = line.response(column);
            const double allowed = 1e-4 * largest_of(here, there);
            for (int i = 0; i + steps < stations; ++i)
                ASSERT_NEAR(here[static_cast<std::size_t>(i)], there[static_cast<std::size_t>(i + steps)],
                            allowed)
                    << "column " << column << ", station " << i;
        }
    });
}

TEST(ClassicLaws, a_line_elsewhere_in_the_country_has_the_same_curves) {
    for_cases(all_types, 6, [](Chance& chance, BodyType type) {
        Line line(stations, spacing, round_number(chance, 0, 360));
        add_random(line, chance, type);
        const std::array before{line.response(1), line.response(2)};
        const double east = round_number(chance, -3e5, 5e5), north = round_number(chance, -6e6, 3e6);
        for (int i = 1; i <= stations; ++i) {
            line.workspace.stations(i, column_east) += east;
            line.workspace.stations(i, column_north) += north;
        }
        line.workspace.origin_east += east;
        line.workspace.origin_north += north;
        for (int column : {1, 2}) {
            const auto& here = before[static_cast<std::size_t>(column - 1)];
            EXPECT_LE(largest_difference(here, line.response(column)), 1e-5 * peak_of(here))
                << "column " << column;
        }
    });
}

}  // namespace
}  // namespace anomalis::forward::laws
