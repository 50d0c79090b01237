#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "support/example_results.h"

namespace anomalis::batch {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(Joined, each_file_asked_for_is_written_and_told) {
    const TempFolder folder;
    write_example_results(folder, example_results());
    const BatchRun run =
        batch({"joined", folder.folder(), "--table", folder.path("a.csv"), "--geojson",
               folder.path("a.geojson"), "--geopackage", folder.path("a.gpkg"), "--dxf", folder.path("a.dxf"),
               "--vtk", folder.path("a.vtk"), "--obj", folder.path("a.obj")});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "2 bodies are joined from 17 of the 17 bodies of 12 lines\n");
    for (const char* name : {"a.csv", "a.geojson", "a.gpkg", "a.dxf", "a.vtk", "a.obj"})
        EXPECT_GT(std::filesystem::file_size(folder.path(name)), 100U) << name;
    const BatchRun table = batch({"joined", folder.folder(), "--table", "-"});
    EXPECT_EQ(table.status, 0);
    EXPECT_EQ(table.out, folder.read("a.csv"));
}

TEST(Joined, the_same_results_give_the_same_bits) {
    const TempFolder folder;
    write_example_results(folder, example_results());
    for (const char* name : {"a.gpkg", "b.gpkg"})
        ASSERT_EQ(batch({"joined", folder.folder(), "--geopackage", folder.path(name)}).status, 0);
    EXPECT_EQ(folder.read("a.gpkg"), folder.read("b.gpkg"));
}

TEST(Joined, a_folder_without_a_survey_and_no_output_are_refused) {
    const TempFolder folder;
    const BatchRun run = batch({"joined", folder.folder(), "--table", folder.path("a.csv")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("holds no results of a survey"));
    EXPECT_FALSE(std::filesystem::exists(folder.path("a.csv")));
    EXPECT_EQ(batch({"joined", folder.folder()}).status, 2);
}

TEST(Joined, the_survey_itself_is_never_written_over) {
    const TempFolder folder;
    write_example_results(folder, example_results());
    const std::string before = folder.read("survey.json");
    EXPECT_EQ(batch({"joined", folder.folder(), "--table", folder.path("survey.json")}).status, 2);
    EXPECT_EQ(folder.read("survey.json"), before);
}

TEST(Joined, an_output_that_cannot_be_written_does_not_keep_the_others) {
    const TempFolder folder;
    write_example_results(folder, example_results());
    const BatchRun run = batch(
        {"joined", folder.folder(), "--table", folder.path("none/a.csv"), "--obj", folder.path("a.obj")});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("a.csv was not written: "));
    EXPECT_THAT(folder.read("a.obj"), StartsWith("# Anomalis survey example, joined bodies"));
}

}  // namespace
}  // namespace anomalis::batch
