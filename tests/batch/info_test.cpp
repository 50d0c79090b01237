#include <gtest/gtest.h>
#include <regex>

#include "batch/batch_runs.h"

namespace anomalis::batch {
namespace {

TEST(Info, a_person_reads_what_the_workspace_holds) {
    const BatchFolder files;
    const BatchRun run = batch({"info", files.model});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    for (const std::string& text :
         {files.model, files.folder.path("survey.dat"), std::string("x 1, y 2, mag 3, grav 4"),
          std::string("56000 nT, inclination -65°, declination -4°"), std::string("41 over 1000.00 m"),
          std::string("Magnetic misfit data "), std::string("Gravity misfit  data "),
          std::string("Thick Sheet"), std::string("  Sheet\n")})
        EXPECT_NE(run.out.find(text), std::string::npos) << text << "\n" << run.out;
}

TEST(Info, the_misfit_has_a_unit_and_stands_against_the_noise) {
    const BatchFolder files;
    const std::string plain = batch({"info", files.model}).out;
    EXPECT_TRUE(std::regex_search(plain, std::regex("\n {16}rms [0-9.]+ nT over 41 stations[,\n]"))) << plain;
    EXPECT_TRUE(std::regex_search(plain, std::regex("\n {16}rms [0-9.]+ mGal over 41 stations[,\n]")))
        << plain;
    EXPECT_EQ(plain.find("regional"), std::string::npos);
    files.folder.write(
        "noisy.axm",
        model_text() + "[AXM Extensions]\r\nmag_regional 1\r\nmag_noise 2.5\r\ngrav_noise 0.1\r\n");
    const BatchRun run = batch({"info", files.folder.path("noisy.axm")});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(std::regex_search(run.out, std::regex(" times the noise of 2\\.5 nT\n"))) << run.out;
    EXPECT_TRUE(std::regex_search(run.out, std::regex(" times the noise of 0\\.10 mGal\n"))) << run.out;
    EXPECT_NE(run.out.find(", regional slope\n"), std::string::npos) << run.out;
}

TEST(Info, the_workspace_is_told_even_when_its_data_are_gone) {
    const BatchFolder files;
    files.folder.write("moved.axm", model_text("vanished.dat"));
    const BatchRun run = batch({"info", files.folder.path("moved.axm")});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("The specified data file does not exist"), std::string::npos);
    EXPECT_NE(run.out.find("Stations        none"), std::string::npos);
    EXPECT_NE(run.out.find("Thick Sheet"), std::string::npos);
    EXPECT_EQ(run.out.find("misfit"), std::string::npos);
}

}  // namespace
}  // namespace anomalis::batch
