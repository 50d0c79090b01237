// What a body is the sum of: its halves, the step at its near side less the one at its far side; what a model
// is: its bodies. And what it is a multiple of.

#include <algorithm>
#include <cmath>

#include "forward/exact/exact_axes.h"
#include "forward/laws/random_world.h"
#include "forward/line.h"
#include "forward/shape/exact_shape.h"

namespace anomalis::forward::laws {
namespace {

World undisturbed(Chance& chance, BodyType type) {
    World world = random_world(chance, type);
    world.body.include_demagnetisation = 0;
    return world;
}

/// The curves of the parts add up to those of the whole, each part with a sign.
void expect_sum(const World& whole, const std::vector<ModelBody>& parts, const std::vector<double>& signs) {
    for (const int channel : {channel_mag, channel_grav}) {
        const std::vector<double> of_whole = exact_curve(whole, channel);
        std::vector<double> sum(of_whole.size()), sizes(of_whole.size());
        for (std::size_t k = 0; k < parts.size(); ++k) {
            World world = whole;
            world.body = parts[k];
            const std::vector<double> of_part = exact_curve(world, channel);
            for (std::size_t i = 0; i < sum.size(); ++i) {
                sum[i] += signs[k] * of_part[i];
                sizes[i] = std::max(sizes[i], std::abs(of_part[i]));
            }
        }
        const double largest = *std::max_element(sizes.begin(), sizes.end());
        for (std::size_t i = 0; i < sum.size(); ++i)
            ASSERT_NEAR(sum[i], of_whole[i], 2e-6 * largest + 1e-9)
                << "channel " << channel << ", station " << i << ", " << told(whole);
    }
}

/// Moves a body in its own axes: to the right of its strike and up.
void move(ModelBody& body, double across, double up) {
    const double strike = exact_radians(body.strike.value);
    body.east += across * std::cos(strike);
    body.north -= across * std::sin(strike);
    body.top.value += static_cast<float>(up);
}

TEST(SumLaws, a_sheet_is_its_upper_part_and_its_lower_part) {
    for_cases(std::array{thin_sheet, thick_sheet}, 8, [](Chance& chance, BodyType type) {
        const World whole = undisturbed(chance, type);
        const float depth = whole.body.depth_extent.value;
        const auto cut = static_cast<float>(round_number(chance, 1, depth == 0 ? 200 : depth));
        ModelBody upper = whole.body, lower = whole.body;
        upper.depth_extent.value = cut;
        lower.depth_extent.value = depth == 0 ? 0 : depth - cut;
        if (depth != 0 && cut >= depth) return;
        move(lower, sheet_shape(whole.body).cotangent * cut, -cut);
        // Without ends along strike the level of a sheet without lower end lies below its own top.
        if (depth == 0 && whole.body.length.value == 0) upper.density.value = lower.density.value = 0;
        World weightless = whole;
        weightless.body.density.value = upper.density.value;
        expect_sum(weightless, {upper, lower}, {1, 1});
    });
}

TEST(SumLaws, a_sheet_is_its_near_part_and_its_far_part) {
    for_cases(std::array{thin_sheet, thick_sheet}, 8, [](Chance& chance, BodyType type) {
        const World whole = undisturbed(chance, type);
        const float share = static_cast<float>(1 + chance.below(7)) / 8;
        ModelBody near = whole.body, far = whole.body;
        near.width.value *= share;
        far.width.value *= 1 - share;
        const SheetShape shape = sheet_shape(near);
        // The elevation of a top is kept in single precision: no slope, or a part of a metre goes astray.
        const double up = shape.rise;
        move(far, shape.width, up);
        const double lost = std::abs(static_cast<double>(far.top.value) - (whole.body.top.value + up));
        if (lost > 1e-7 * clearance(whole)) return;
        expect_sum(whole, {near, far}, {1, 1});
    });
}

TEST(SumLaws, a_body_with_ends_is_its_two_ends) {
    for_cases(std::array{thin_sheet, thick_sheet, pipe}, 8, [](Chance& chance, BodyType type) {
        World whole = undisturbed(chance, type);
        ModelBody& body = whole.body;
        body.end_thickness = 0;
        if (body.length.value == 0) return;
        const float share = static_cast<float>(1 + chance.below(7)) / 8;
        ModelBody back = body, front = body;
        back.length.value = share * body.length.value;
        front.length.value = body.length.value - back.length.value;
        back.offset.value = body.offset.value - body.length.value / 2 + back.length.value / 2;
        front.offset.value = body.offset.value + body.length.value / 2 - front.length.value / 2;
        expect_sum(whole, {back, front}, {1, 1});
    });
}

TEST(SumLaws, a_sheet_without_ends_is_a_step_less_the_next_step) {
    for_cases(std::array{thick_sheet}, 12, [](Chance& chance, BodyType type) {
        World whole = undisturbed(chance, type);
        ModelBody& body = whole.body;
        body.length.value = body.slope.value = 0;
        if (body.depth_extent.value == 0) body.depth_extent.value = 128;
        ModelBody near = body, far = body;
        near.type = far.type = chance.one_in(2) ? edge : sloping_step;
        move(far, body.width.value, 0);
        expect_sum(whole, {near, far}, {1, -1});
    });
}

TEST(SumLaws, a_thin_sheet_is_a_thick_one_of_its_thickness) {
    for_cases(std::array{thin_sheet}, 12, [](Chance& chance, BodyType type) {
        World whole = undisturbed(chance, type);
        whole.body.dip.value = std::array{30.0F, 90.0F, 150.0F}[static_cast<std::size_t>(chance.below(3))];
        whole.body.slope.value = 0;
        ModelBody thick = whole.body;
        thick.type = thick_sheet;
        if (whole.body.dip.value != 90) thick.width.value *= 2;
        expect_sum(whole, {thick}, {1});
    });
}

TEST(SumLaws, twice_the_susceptibility_and_the_density_give_twice_the_curves) {
    for_cases(rocks, 8, [](Chance& chance, BodyType type) {
        World whole = undisturbed(chance, type);
        ModelBody half = whole.body;
        whole.body.susc.value *= 2;
        whole.body.density.value *= 2;
        expect_sum(whole, {half, half}, {1, 1});
    });
}

TEST(SumLaws, magnetisations_add) {
    for_cases(rocks, 8, [](Chance& chance, BodyType type) {
        World whole = undisturbed(chance, type);
        whole.body.susc.value = std::abs(whole.body.susc.value);
        // Remanences along three axes, each with the induced part once, less the induced part twice.
        ModelBody north = whole.body, east = whole.body, induced = whole.body;
        north.rem_q.value = 2;
        north.rem_i.value = north.rem_d.value = 0;
        east.rem_q.value = 2;
        east.rem_i.value = 0;
        east.rem_d.value = 90;
        induced.rem_q.value = 0;
        whole.body.rem_q.value = std::sqrt(8.0F);
        whole.body.rem_i.value = 0;
        whole.body.rem_d.value = 45;
        induced.density.value = east.density.value;
        expect_sum(whole, {north, east, induced}, {1, 1, -1});
    });
}

void add_bodies(Line& line, Chance& chance) {
    for (int count = 1 + chance.below(6); count > 0; --count) {
        const BodyType type = all_types[static_cast<std::size_t>(chance.below(all_types.size()))];
        ModelBody& body = line.add(type);
        const ModelBody chosen = random_body(chance, type, 100);
        for (BodyParam ModelBody::*slot :
             {&ModelBody::strike, &ModelBody::dip, &ModelBody::width, &ModelBody::depth_extent,
              &ModelBody::length, &ModelBody::offset, &ModelBody::susc, &ModelBody::density})
            body.*slot = chosen.*slot;
        body.top.value = -250;
        body.distance.value = static_cast<float>(round_number(chance, -100, 1100));
    }
}

TEST(SumLaws, the_curve_of_a_model_is_the_sum_of_its_bodies_by_both_formulas) {
    for_cases(std::array{thick_sheet}, 12, [](Chance& chance, BodyType) {
        Line line(41, 25, round_number(chance, 0, 360));
        add_bodies(line, chance);
        for (const Formulas formulas : {Formulas::classic, Formulas::exact}) {
            line.use(formulas);
            line.calculate();
            std::array<std::vector<double>, 2> sums, sizes;
            for (int channel : {0, 1}) {
                auto& sum = sums[static_cast<std::size_t>(channel)];
                sum.assign(41, 0.0);
                double largest = 0;
                for (int number = 1; number <= line.workspace.body_count; ++number) {
                    const auto values = line.body(number).response.column(channel + 1);
                    for (std::size_t i = 0; i < sum.size(); ++i) {
                        sum[i] += values[i];
                        largest = std::max(largest, std::abs(static_cast<double>(values[i])));
                    }
                }
                const ChannelTable& data = (channel == 0 ? line.workspace.mag : line.workspace.grav).data;
                for (std::size_t i = 0; i < sum.size(); ++i)
                    ASSERT_NEAR(sum[i], data.row(row_raw, stage_calculated)[i], 1e-6 * largest)
                        << "channel " << channel << ", station " << i;
            }
        }
    });
}

}  // namespace
}  // namespace anomalis::forward::laws
