#include "core/body_parameters.h"

#include <gtest/gtest.h>
#include <set>

#include "core/body_fields.h"
#include "core/failure.h"
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
}

}  // namespace
}  // namespace anomalis
