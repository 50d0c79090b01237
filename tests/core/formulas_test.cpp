#include "core/formulas.h"

#include <gtest/gtest.h>

#include "core/workspace.h"
#include "support/scripted_prompts.h"

namespace anomalis {
namespace {

TEST(Formulas, a_name_reads_back_in_any_case) {
    EXPECT_EQ(formulas_of_name("classic"), Formulas::classic);
    EXPECT_EQ(formulas_of_name("EXACT"), Formulas::exact);
    EXPECT_EQ(formulas_of_name("exactly"), std::nullopt);
    EXPECT_EQ(formulas_of_name(""), std::nullopt);
    EXPECT_EQ(formulas_name(Formulas::exact), "exact");
}

TEST(Formulas, changing_over_recalculates_every_body_and_staying_none) {
    Workspace workspace;
    ScriptedPrompts prompts;
    initialise_workspace(workspace, prompts);
    workspace.body_count = 1;
    ModelBody& body = workspace.body(1);
    body.mag_response_valid = body.grav_response_valid = true;
    set_formulas(workspace, Formulas::classic, prompts);
    EXPECT_TRUE(body.mag_response_valid);
    set_formulas(workspace, Formulas::exact, prompts);
    EXPECT_EQ(workspace.formulas, Formulas::exact);
    EXPECT_FALSE(body.mag_response_valid || body.grav_response_valid);
    initialise_workspace(workspace, prompts);
    EXPECT_EQ(workspace.formulas, Formulas::classic);
}

TEST(Formulas, edge_step_and_sphere_are_offered_with_the_exact_formulas_alone) {
    Workspace workspace;
    EXPECT_EQ(body_types_offered(workspace).size(), offered_body_types.size());
    workspace.formulas = Formulas::exact;
    const auto offered = body_types_offered(workspace);
    const std::vector<BodyType> types(offered.begin(), offered.end());
    EXPECT_EQ(types,
              (std::vector<BodyType>{thin_sheet, thick_sheet, edge, sloping_step, sphere, pipe, wire}));
}

}  // namespace
}  // namespace anomalis
