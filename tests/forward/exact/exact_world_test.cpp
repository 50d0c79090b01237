// What cannot depend on how the survey lies in the world, or on which way the file runs.

#include <gtest/gtest.h>

#include "exact_line.h"

namespace anomalis::forward {
namespace {

void add_all(ExactLine& line) {
    for (const BodySample& sample : body_samples) {
        ModelBody& body = add_sample(line, sample);
        body.rem_q.value = 0.5F;
        body.rem_i.value = 20;
        body.rem_d.value = 130;
        body.include_demagnetisation = 1;
        body.susc.value = 300000;
    }
    ModelBody& cable = line.add(wire, 440, 30);
    cable.susc.value = 3000;
    cable.offset.value = 4;
    cable.dip.value = 35;
}

/// The world turned anticlockwise by `degrees`: stations, field, strikes and remanence together.
ExactLine turned_world(double degrees) {
    ExactLine line;
    add_all(line);
    line.turn(degrees);
    line.workspace.field.declination -= static_cast<float>(degrees);
    for (int number = 1; number <= line.workspace.body_count; ++number) {
        line.body(number).strike.value -= static_cast<float>(degrees);
        line.body(number).rem_d.value -= static_cast<float>(degrees);
    }
    return line;
}

TEST(ExactWorld, turning_the_whole_world_changes_no_curve) {
    ExactLine still = turned_world(0);
    for (const double degrees : {17.0, 50.0, 90.0, 180.0, -75.0, 343.0, -360.0}) {
        ExactLine line = turned_world(degrees);
        for (int number = 1; number <= line.workspace.body_count; ++number)
            for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
                const std::vector<double> before = still.curve(kind, number);
                if (peak_of(before) == 0) continue;
                EXPECT_LT(relative_difference(line.curve(kind, number), before), 1e-9)
                    << degrees << " degrees, body " << number;
            }
    }
}

TEST(ExactWorld, a_file_that_runs_the_other_way_gives_the_curves_backwards) {
    ExactLine forth;
    add_all(forth);
    ExactLine back;
    add_all(back);
    const double end = forth.workspace.distances.last();
    for (int i = 1; i <= 101; ++i)
        for (const int column : {column_east, column_north})
            back.workspace.stations(i, column) = forth.workspace.stations(102 - i, column);
    for (int number = 1; number <= forth.workspace.body_count; ++number) {
        back.body(number).distance.value = static_cast<float>(end - forth.body(number).distance.value);
        for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
            const std::vector<double> curve = forth.curve(kind, number);
            if (peak_of(curve) == 0) continue;
            EXPECT_LT(relative_difference(reversed(back.curve(kind, number)), curve), 1e-9)
                << "body " << number;
        }
    }
}

TEST(ExactWorld, nothing_jumps_as_the_strike_passes_the_direction_of_the_line) {
    for (const BodySample& sample : body_samples)
        for (const Curve kind : {Curve::magnetic, Curve::gravity}) {
            ExactLine line;
            ModelBody& body = add_sample(line, sample);
            const auto at_strike = [&](double strike) {
                body.strike.value = static_cast<float>(strike);
                return line.curve(kind);
            };
            for (const double along : {0.0, 180.0}) {
                const std::vector<double> there = at_strike(along);
                const double near = relative_difference(at_strike(along + 0.01), there);
                const double other = relative_difference(at_strike(along - 0.01), there);
                const double far = relative_difference(at_strike(along + 0.1), there);
                // A hundredth of a degree is a tenth of the step that a tenth of a degree makes.
                EXPECT_LT(near, 0.12 * far + 1e-7) << sample.name;
                EXPECT_LT(other, 0.12 * far + 1e-7) << sample.name;
            }
        }
}

TEST(ExactWorld, a_strike_of_350_is_one_of_minus_10) {
    for (const BodySample& sample : body_samples) {
        ExactLine line;
        ModelBody& body = add_sample(line, sample);
        body.strike.value = 350;
        const std::vector<double> curve = line.curve(Curve::magnetic);
        body.strike.value = -10;
        EXPECT_LT(relative_difference(line.curve(Curve::magnetic), curve), 1e-12) << sample.name;
    }
}

TEST(ExactWorld, where_the_line_is_in_the_country_does_not_matter) {
    for (const BodySample& sample : body_samples) {
        ExactLine line;
        add_sample(line, sample);
        const std::vector<double> curve = line.curve(Curve::magnetic);
        line.turn(0);
        EXPECT_LT(relative_difference(line.curve(Curve::magnetic), curve), 1e-8) << sample.name;
    }
}

}  // namespace
}  // namespace anomalis::forward
