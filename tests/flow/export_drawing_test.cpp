#include "flow/export_drawing.h"

#include <gtest/gtest.h>

#include "core/paths.h"
#include "edit/workbench.h"
#include "intake/load.h"
#include "output/dxf_samples.h"

namespace anomalis::flow {
namespace {

class ExportDxf : public ::testing::Test {
  protected:
    ExportDxf() {
        session.workspace = output::dxf_workspace();
        session.workspace.model_file = folder.path("sur.vey.axm");
        output::add_dxf_body(session.workspace, pipe, "Pipe");
    }

    TempFolder folder;
    ScriptedPrompts prompts;
    Session session{prompts, Settings()};
    edit::Workbench workbench{session};
};

TEST_F(ExportDxf, asks_for_a_name_beside_the_model_and_tells_when_it_is_done) {
    const CurrentFolder here(folder.folder());
    prompts.save_paths = {folder.path("a.dxf"), folder.path("b.dxf")};
    EXPECT_EQ(export_body_dxf(workbench).path, folder.path("a.dxf"));
    EXPECT_EQ(export_plan_dxf(workbench).outcome, ExportOutcome::written);
    ASSERT_EQ(prompts.save_requests.size(), 2U);
    EXPECT_EQ(prompts.save_requests[0].title, "Enter name of 3D model DXF export file");
    EXPECT_EQ(prompts.save_requests[0].default_name, folder.path("sur.vey_3d.dxf"));
    EXPECT_EQ(prompts.save_requests[1].title, "Enter name of DXF export file");
    EXPECT_EQ(prompts.save_requests[1].default_name, folder.path("sur.vey.dxf"));
    for (const FileRequest& request : prompts.save_requests) {
        EXPECT_EQ(request.filter, "DXF files (*.dxf)|*.dxf|All files (*.*)|*.*");
        EXPECT_EQ(request.default_extension, "dxf");
        EXPECT_TRUE(request.confirm_overwrite);
    }
    EXPECT_TRUE(prompts.messages.empty()) << "who asked for it tells";
    EXPECT_EQ(output::DxfPairs(folder.read("a.dxf")).places("3DFACE").size(), 48U);
    EXPECT_EQ(output::DxfPairs(folder.read("b.dxf")).places("POLYLINE").size(), 1U);
    EXPECT_EQ(current_folder(), folder.folder());
}

TEST_F(ExportDxf, without_a_model_file_no_name_is_proposed) {
    session.workspace.model_file.clear();
    export_plan_dxf(workbench);
    EXPECT_EQ(prompts.save_requests.at(0).default_name, "");
}

TEST_F(ExportDxf, a_cancel_writes_and_says_nothing) {
    EXPECT_EQ(export_body_dxf(workbench).outcome, ExportOutcome::cancelled);
    EXPECT_EQ(export_plan_dxf(workbench).outcome, ExportOutcome::cancelled);
    EXPECT_TRUE(prompts.messages.empty());
    EXPECT_EQ(folder.entries(), 0);
}

TEST_F(ExportDxf, bodies_are_asked_for_only_when_there_are_some) {
    session.workspace.body_count = 0;
    prompts.save_paths = {folder.path("plan.dxf")};
    EXPECT_EQ(export_body_dxf(workbench).outcome, ExportOutcome::nothing);
    EXPECT_TRUE(prompts.save_requests.empty());
    EXPECT_EQ(export_plan_dxf(workbench).outcome, ExportOutcome::written);
}

TEST_F(ExportDxf, a_failure_is_told_alone) {
    prompts.save_paths = {folder.folder()};
    EXPECT_EQ(export_plan_dxf(workbench).outcome, ExportOutcome::failed);
    EXPECT_EQ(prompts.messages, std::vector<std::string>{"An error occurred while exporting the plan to dxf: "
                                                         "Is a directory (" +
                                                         folder.folder() + ")"});
}

TEST_F(ExportDxf, the_body_stands_where_its_distance_says) {
    Workspace& workspace = session.workspace;
    workspace.definition.data_file = folder.write("line.dat", "0 500 5\n100 500 6\n200 500 5\n");
    workspace.definition.first_data_line = workspace.definition.x_column = 1;
    workspace.definition.y_column = 2;
    workspace.definition.mag_column = 3;
    workspace.body_count = 0;
    output::add_dxf_body(workspace, thick_sheet, "moved").distance.value = 150;
    ASSERT_EQ(intake::load_locations(workspace, prompts), 0);
    // No chart has been drawn since.
    prompts.save_paths = {folder.path("a.dxf")};
    export_body_dxf(workbench);
    const output::DxfPairs pairs(folder.read("a.dxf"));
    EXPECT_EQ(pairs.number(pairs.places("3DFACE").front() + 3), 150);
    EXPECT_EQ(pairs.number(pairs.places("3DFACE").front() + 4), 550);
}

TEST_F(ExportDxf, nothing_is_drawn_over_a_file_that_is_open) {
    session.workspace.definition.data_file = folder.write("line.dxf", "data");
    prompts.save_paths = {folder.path("line.dxf"), folder.path("line.dxf")};
    export_plan_dxf(workbench);
    export_body_dxf(workbench);
    EXPECT_EQ(folder.read("line.dxf"), "data");
    EXPECT_EQ(prompts.messages.size(), 2U);
    EXPECT_TRUE(
        prompts.told("The drawing " + folder.path("line.dxf") + " would be written over the data file"));
}

}  // namespace
}  // namespace anomalis::flow
