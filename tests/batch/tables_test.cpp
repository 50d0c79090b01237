#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

#include "batch/batch_runs.h"

namespace anomalis::batch {
namespace {

TEST(Forward, the_profile_table_has_filtered_and_calculated_values) {
    const BatchFolder files;
    const BatchRun run = batch({"forward", files.model});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_TRUE(
        run.out.starts_with("#Profile model data for " + files.folder.path("survey.dat") + "\r\nEast, "));
    EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 43);
    const std::string first_station = run.out.substr(run.out.find("\r\n500000.000, ") + 2);
    // Sensor elevation and residual come from the steps after the reading.
    EXPECT_TRUE(first_station.starts_with("500000.000, 6500000.000, 10.00, 0.000, 56000.00, 56000.00, -2"))
        << first_station.substr(0, 120);
}

TEST(Forward, the_table_goes_to_a_file_when_one_is_named) {
    const BatchFolder files;
    const BatchRun run = batch({"forward", files.model, "--output", files.folder.path("profile.csv")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(files.folder.read("profile.csv"), batch({"forward", files.model}).out);
}

TEST(Export, each_file_asked_for_is_written_and_no_other) {
    const BatchFolder files;
    const BatchRun run =
        batch({"export", files.model, "--profile-table", files.folder.path("p.csv"), "--model-table",
               files.folder.path("m.csv"), "--mesh", files.folder.path("m.msh")});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(files.folder.read("p.csv"), batch({"forward", files.model}).out);
    EXPECT_NE(files.folder.read("m.csv").find(
                  ",,,500513.700,6500000.000,0.000,100.000,0,8050000.3,,0,0,250,0, *,Sheet"),
              std::string::npos)
        << files.folder.read("m.csv");
    EXPECT_TRUE(
        files.folder.read("m.msh").starts_with(" 42  10  10 \r\n 500000  6500000  0 \r\n42*24.00\r\n"));
    EXPECT_EQ(batch({"export", files.model, "--mesh", files.folder.path("only.msh")}).status, 0);
    EXPECT_EQ(files.folder.entries(), 6);
}

TEST(Export, clean_tables_and_drawings_are_of_the_same_model) {
    const BatchFolder files;
    const auto path = [&](const char* name) { return files.folder.path(name); };
    const BatchRun run = batch({"export", files.model, "--clean-profile", path("p.csv"), "--clean-model",
                                path("m.csv"), "--dxf-3d", path("b.dxf"), "--dxf-plan", path("p.dxf")});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string profile = files.folder.read("p.csv");
    EXPECT_EQ(std::count(profile.begin(), profile.end(), '\n'), 42);
    EXPECT_NE(files.folder.read("m.csv").find("\n1,Sheet,Thick Sheet,1,463.7,500513.7"), std::string::npos);
    EXPECT_NE(files.folder.read("b.dxf").find("3DFACE\r\n  8\r\nSheet\r\n"), std::string::npos);
    EXPECT_NE(files.folder.read("p.dxf").find("POLYLINE\r\n  0\r\nVERTEX\r\n 10\r\n 500000 \r\n"),
              std::string::npos);
}

TEST(Export, bodies_are_drawn_where_the_file_says_when_there_is_no_line) {
    const BatchFolder files;
    files.folder.write("survey.dat", "");
    const std::vector<std::string> drawn{"export", files.model, "--dxf-3d", files.folder.path("b.dxf")};
    EXPECT_EQ(batch(drawn).status, 1)
        << "they stand where the last save saw them, not where the line puts them";
    std::vector<std::string> kept = drawn;
    kept.emplace_back("--keep-going");
    EXPECT_EQ(batch(kept).status, 0);
    EXPECT_NE(files.folder.read("b.dxf").find("3DFACE\r\n  8\r\nSheet\r\n"), std::string::npos);
    EXPECT_EQ(batch({"export", files.model, "--clean-profile", files.folder.path("p.csv")}).status, 1);
}

TEST(Export, bodies_are_listed_without_a_line) {
    const BatchFolder files;
    const auto path = [&](const char* name) { return files.folder.path(name); };
    const std::string unnamed = files.folder.write("unnamed.axm", model_text(""));
    std::filesystem::remove(path("survey.dat"));
    for (const std::string& model : {files.model, unnamed}) {
        const BatchRun run =
            batch({"export", model, "--model-table", path("m.csv"), "--clean-model", path("c.csv")});
        EXPECT_EQ(run.status, 1) << "east and north are those of no line";
        EXPECT_NE(files.folder.read("m.csv").find(" [WITH FAILURES: Could not find profile data file"),
                  std::string::npos)
            << files.folder.read("m.csv");
        EXPECT_NE(files.folder.read("m.csv").find("\r\n,,,50.000,0.000,0.000,100.000,"), std::string::npos)
            << files.folder.read("m.csv");
        EXPECT_NE(files.folder.read("m.csv").find(", *,Sheet\r\n"), std::string::npos);
        EXPECT_NE(
            files.folder.read("c.csv").find("\n1,Sheet,Thick Sheet,1,463.7,50.0,0.0,0.0,0.0,-50.0,,,100.0,"),
            std::string::npos)
            << files.folder.read("c.csv");
        EXPECT_EQ(batch({"export", model, "--model-table", path("m.csv"), "--mesh", path("m.msh")}).status,
                  1);
    }
}

TEST(Export, one_target_that_cannot_be_written_does_not_stop_the_others) {
    const BatchFolder files;
    const BatchRun run = batch({"export", files.model, "--profile-table", files.folder.path("missing/p.csv"),
                                "--mesh", files.folder.path("m.msh")});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.starts_with("An error occurred while writing the file: ")) << run.err;
    EXPECT_FALSE(files.folder.read("m.msh").empty());
}

}  // namespace
}  // namespace anomalis::batch
