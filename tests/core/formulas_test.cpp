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

TEST(Formulas, a_new_workspace_has_the_classic_ones) {
    Workspace workspace;
    ScriptedPrompts prompts;
    workspace.formulas = Formulas::exact;
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
