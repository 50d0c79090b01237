#include "forward/formula_difference.h"

#include <gtest/gtest.h>

#include "forward/line.h"

namespace anomalis::forward {
namespace {

/// A line across a sheet that is endless along strike, 60 m below the sensor.
struct Compared : Line {
    Compared(double bearing, double strike) : Line(401, 5, bearing, 60) {
        workspace.definition.grav_column = 0;
        ModelBody& body = add(thick_sheet, 1003, strike);
        body.dip.value = 70;
        body.length.value = body.depth_extent.value = 0;
    }
    FormulaDifference difference() {
        calculate();
        return formula_difference(workspace, 1, faults);
    }
};

TEST(FormulaDifference, is_none_where_the_classic_formulas_are_right) {
    Compared line(0, 90);
    line.workspace.field.declination = 0;
    EXPECT_LT(line.difference().largest(), 1e-5);
}

TEST(FormulaDifference, of_a_dyke_that_strikes_north_is_more_than_four_fifths_of_the_peak) {
    Compared line(90, 0);
    EXPECT_NEAR(line.difference().magnetic, 0.83, 0.01);
    EXPECT_EQ(line.difference().gravity, 0);
}

TEST(FormulaDifference, of_the_gravity_of_an_endless_sheet_is_half) {
    Compared line(0, 90);
    line.workspace.definition.grav_column = 4;
    line.body().depth_extent.value = 300;
    EXPECT_NEAR(line.difference().gravity, 0.5, 0.01);
}

TEST(FormulaDifference, a_sphere_without_classic_gravity_differs_by_all_of_it) {
    Compared line(0, 90);
    line.workspace.definition.grav_column = 4;
    line.body().type = sphere;
    EXPECT_NEAR(line.difference().gravity, 1, 1e-6);
}

TEST(FormulaDifference, a_curve_without_an_exact_one_is_beyond_measure) {
    Compared line(0, 90);
    line.body().slope.value = -80;
    line.body().length.value = 200;
    line.body().dip.value = 45;
    line.body().depth_extent.value = 100;
    EXPECT_EQ(line.difference().magnetic, no_common_measure);
}

TEST(FormulaDifference, is_none_with_the_exact_formulas_and_for_a_body_switched_off) {
    Compared line(90, 0);
    line.workspace.formulas = Formulas::exact;
    EXPECT_EQ(line.difference().largest(), 0);
    line.use(Formulas::classic);
    line.body().turned_off = 1;
    EXPECT_EQ(line.difference().largest(), 0);
}

TEST(FormulaDifference, changes_no_response) {
    Compared line(90, 0);
    const std::vector<double> before = line.response();
    line.difference();
    const auto after = line.body().response.column(1);
    EXPECT_EQ(before, std::vector<double>(after.begin(), after.end()));
    EXPECT_TRUE(line.body().mag_response_valid);
}

TEST(FormulaDifference, is_found_in_pieces_as_in_one_go) {
    Compared line(90, 20);
    line.workspace.definition.grav_column = 4;
    ModelBody& body = line.body();
    body.type = pipe;
    body.width.value = 80;
    body.length.value = 300;
    body.plunge.value = 60;
    body.num_sectors = 24;
    body.density.value = 0.3F;
    line.calculate();
    FormulaComparison comparison(line.workspace, 1, 1000);
    int pieces = 1;
    for (; comparison.advance(line.faults); ++pieces) EXPECT_EQ(comparison.found().gravity, 0);
    EXPECT_EQ(pieces, 14) << "seven for each channel";
    EXPECT_FALSE(comparison.advance(line.faults));
    // The same by the responses of both, which are rounded to single precision.
    const auto share = [&](int column) {
        line.use(Formulas::classic);
        const std::vector<double> classic = line.response(column);
        line.use(Formulas::exact);
        const std::vector<double> exact = line.response(column);
        return largest_difference(classic, exact) / peak_of(exact);
    };
    EXPECT_NEAR(comparison.found().magnetic, share(1), 1e-6);
    EXPECT_NEAR(comparison.found().gravity, share(2), 1e-6);
    EXPECT_TRUE(line.faults.entries().empty());
}

}  // namespace
}  // namespace anomalis::forward
