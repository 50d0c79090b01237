#include "output/ensemble_table.h"

#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "core/ensemble.h"
#include "output/dxf_samples.h"

namespace anomalis::output {
namespace {

Workspace sheet_and_wire() {
    Workspace workspace = dxf_workspace();
    workspace.definition.mag_column = 3;
    workspace.definition.grav_column = 0;
    add_dxf_body(workspace, thick_sheet, "dyke");
    add_dxf_body(workspace, wire, "cable");
    return workspace;
}

Ensemble two_models() {
    Ensemble ensemble;
    ensemble.parameters = {{.body = 1, .param_code = param_top},
                           {.body = 1, .param_code = param_rem_q},
                           {.body = 2, .param_code = param_susc}};
    ensemble.samples = {
        {.values = {81.5F, 0.25F, 3}, .mag_degree = 1, .mag_rms = 2.5},
        {.values = {79, 0, static_cast<float>(EnsembleParameter::open)}, .mag_degree = -1, .mag_rms = 2.75}};
    return ensemble;
}

TEST(EnsembleTable, is_a_row_a_model_and_a_column_a_parameter) {
    EXPECT_EQ(ensemble_table_text(sheet_and_wire(), two_models()),
              "sample,mag_regional_degree,mag_rms_nT,body_1_top_elevation_m,body_1_" +
                  std::string(body_parameter(param_rem_q).name) + ",body_2_" +
                  std::string(body_parameter(param_susc).column.wire) +
                  "\n1,1,2.5,81.5,0.25,3.0\n"
                  "2,,2.75,79.0,0.0,\n");
}

TEST(EnsembleTable, has_the_channels_of_the_line) {
    Workspace workspace = sheet_and_wire();
    workspace.definition.grav_column = 4;
    Ensemble ensemble = two_models();
    ensemble.samples.resize(1);
    ensemble.samples[0].grav_degree = 0;
    EXPECT_NE(ensemble_table_text(workspace, ensemble)
                  .find(",mag_rms_nT,grav_regional_degree,grav_rms_mGal,body_1_"),
              std::string::npos);
    EXPECT_NE(ensemble_table_text(workspace, ensemble).find("\n1,1,2.5,0,,81.5,"), std::string::npos)
        << "gravity was not fitted";
    workspace.definition.mag_column = 0;
    EXPECT_EQ(ensemble_table_text(workspace, ensemble).find("mag_"), std::string::npos);
}

TEST(EnsembleTable, is_written_whole_or_not_at_all) {
    const TempFolder folder;
    ScriptedPrompts prompts;
    const Workspace workspace = sheet_and_wire();
    EXPECT_EQ(write_ensemble_table(folder.path("e.csv"), workspace, two_models(), prompts), 0);
    EXPECT_EQ(folder.read("e.csv"), ensemble_table_text(workspace, two_models()));
    EXPECT_EQ(write_ensemble_table(folder.path("no/e.csv"), workspace, two_models(), prompts), -1);
    EXPECT_TRUE(prompts.told("An error occurred while writing the file: "));
}

}  // namespace
}  // namespace anomalis::output
