#include "core/body_parameters.h"

#include <cmath>
#include <gtest/gtest.h>
#include <set>

#include "core/body_fields.h"
#include "core/failure.h"
#include "core/fitting_number.h"
#include "core/numbers.h"
#include "core/susceptibility.h"
#include "core/workspace.h"

namespace anomalis {
namespace {

std::string names_of(const std::vector<ParamCode>& codes) {
    std::string names;
    for (const ParamCode code : codes) names += std::string(param_name(code)) + " ";
    return names;
}

std::vector<ParamCode> codes_where(bool (*holds)(const BodyParameter&)) {
    std::vector<ParamCode> codes;
    for (const BodyParameter& row : body_parameters())
        if (holds(row)) codes.push_back(row.code);
    return codes;
}

TEST(BodyParam, each_code_reaches_its_own_slot) {
    ModelBody body;
    std::set<const BodyParam*> seen;
    for (int code = 4; code <= 18; ++code) seen.insert(&body_param(body, code));
    EXPECT_EQ(seen.size(), 15U);
    EXPECT_EQ(&body_param(body, 4), &body.distance);
    EXPECT_EQ(&body_param(body, 5), &body.strike);
    EXPECT_EQ(&body_param(body, 6), &body.dip);
    EXPECT_EQ(&body_param(body, 7), &body.top);
    EXPECT_EQ(&body_param(body, 8), &body.depth_extent);
    EXPECT_EQ(&body_param(body, 9), &body.width);
    EXPECT_EQ(&body_param(body, 10), &body.length);
    EXPECT_EQ(&body_param(body, 11), &body.susc);
    EXPECT_EQ(&body_param(body, 12), &body.density);
    EXPECT_EQ(&body_param(body, 13), &body.plunge);
    EXPECT_EQ(&body_param(body, 14), &body.slope);
    EXPECT_EQ(&body_param(body, 15), &body.offset);
    EXPECT_EQ(&body_param(body, 16), &body.rem_q);
    EXPECT_EQ(&body_param(body, 17), &body.rem_i);
    EXPECT_EQ(&body_param(body, 18), &body.rem_d);
}

TEST(BodyParam, a_code_without_a_parameter_raises_a_fault) {
    const ModelBody body;
    for (const int code : {-1, 0, 3, 19}) EXPECT_THROW(body_param(body, code), Fault);
}

TEST(BodyParameters, stand_in_the_order_of_the_record) {
    EXPECT_EQ(names_of(codes_where([](const BodyParameter&) { return true; })),
              "distance top strike dip plunge slope width depth_extent length offset susc rem_q rem_d rem_i "
              "density ");
}

TEST(BodyParameters, a_fit_lists_each_once) {
    const auto order = fit_order();
    EXPECT_EQ(std::set<int>(order.begin(), order.end()).size(), body_parameter_count);
}

TEST(BodyParameters, tell_what_a_change_makes_stale) {
    EXPECT_EQ(names_of(codes_where([](const BodyParameter& row) { return !row.stale.mag; })), "density ");
    EXPECT_EQ(names_of(codes_where([](const BodyParameter& row) { return !row.stale.grav; })),
              "susc rem_q rem_d rem_i ");
    EXPECT_EQ(names_of(codes_where([](const BodyParameter& row) { return row.stale.burial_depth; })),
              "distance top width ");
    EXPECT_EQ(names_of(codes_where([](const BodyParameter& row) { return row.stale.place; })), "distance ");
}

TEST(BodyParameters, each_type_has_those_of_its_kind) {
    const auto missing = [](std::int32_t type) {
        std::vector<ParamCode> codes;
        for (const BodyParameter& row : body_parameters())
            if (!has_parameter(type, row.code)) codes.push_back(row.code);
        return names_of(codes);
    };
    for (const auto type : {thin_sheet, thick_sheet, edge, sloping_step, polygon, sphere})
        EXPECT_EQ(missing(type), "");
    EXPECT_EQ(missing(pipe), "plunge slope depth_extent ");
    EXPECT_EQ(missing(wire), "plunge slope depth_extent rem_q rem_d rem_i density ");
}

TEST(BodyParameters, steps_and_limits_of_pipes_are_their_own) {
    Workspace workspace;
    ModelBody body;
    const FitRule& fit = body_parameter(param_width).fit;
    body.type = thick_sheet;
    EXPECT_EQ(fit.step.of(body, workspace), 2.5F);
    EXPECT_EQ(fit.lower.of(body, workspace), 1.0F);
    body.type = pipe;
    EXPECT_EQ(fit.step.of(body, workspace), 0.05F);
    EXPECT_EQ(fit.lower.of(body, workspace), 0.1F);
}

TEST(BodyParameters, a_tip_tells_meaning_unit_and_range) {
    EXPECT_EQ(parameter_tip(wire, param_dip),
              "The rotation of the pair of wires: 0 stands upright, 90 lies level\nDegrees, 0 to 180");
    EXPECT_EQ(parameter_tip(pipe, param_width),
              "The diameter of the cylinder\nm, 0 or more\n"
              "A change of the body type keeps the number, although its meaning changes");
    EXPECT_EQ(parameter_tip(thick_sheet, param_rem_i),
              "The inclination of the remanent direction\nDegrees, down positive; any number");
    EXPECT_EQ(parameter_tip(thick_sheet, param_susc, SusceptibilityUnit::si).find("\nSI (0.05 is 50000 µSI)"),
              std::string("The susceptibility of the  body (SI)").size());
    EXPECT_EQ(parameter_tip(wire, param_susc, SusceptibilityUnit::si), parameter_tip(wire, param_susc));
}

TEST(Susceptibility, in_cgs_is_that_of_si_over_four_pi) {
    EXPECT_DOUBLE_EQ(50000 * of_micro_si(SusceptibilityUnit::si), 0.05);
    EXPECT_NEAR(50000 * of_micro_si(SusceptibilityUnit::cgs), 0.05 / 12.566370614359172, 1e-15);
    EXPECT_EQ(of_micro_si(SusceptibilityUnit::micro_si), 1);
}

TEST(FittingNumber, takes_the_first_form_that_fits_and_cuts_none) {
    const auto in = [](std::string_view text, std::size_t room) {
        return fitting_number(text, [=](const std::string& shorter) { return shorter.size() <= room; });
    };
    EXPECT_EQ(in("73445.25", 8), "73445.25");
    EXPECT_EQ(in("73445.00", 7), "73445");
    EXPECT_EQ(in("73445.25", 7), "73445.3");
    EXPECT_EQ(in("73445.25", 5), "73445");
    EXPECT_EQ(in("7344525", 6), "7.34e6");
    EXPECT_EQ(in("99996", 4), "1e5");
    EXPECT_EQ(in("0.0512345", 7), "0.05123");
    EXPECT_EQ(in("0.0512345", 6), "5.1e-2");
    EXPECT_EQ(in("-7344525", 5), "-7e6");
    EXPECT_EQ(in("1.25E+12", 6), "1.3e12");
    EXPECT_EQ(in("0.000", 2), "0.000") << "nothing is shorter";
    EXPECT_EQ(in("Thick Sheet", 3), "Thick Sheet");
    for (std::size_t room = 4; room <= 9; ++room)
        for (const double value : {7344525.75, -56000.125, 0.000123456, 999999.5, 12.5}) {
            const std::string text = in(shortest_text(value), room);
            EXPECT_NEAR(prefix_number(text), value, std::abs(value) * 0.5) << text;
        }
}

}  // namespace
}  // namespace anomalis
