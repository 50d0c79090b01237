#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "intake/survey/survey_index.h"
#include "support/survey_file.h"

namespace anomalis::batch {
namespace {

/// Remembers which map it was asked to draw.
class MapWriter : public PictureWriter {
  public:
    int write(Session&, const PictureRequest&) override { return -1; }
    int write_map(Prompts&, const intake::SurveyIndex& index, const MapRequest& request) override {
        ++maps;
        lines = index.lines.size();
        system = index.coordinate_system;
        asked = request;
        return answer;
    }

    int answer = 0, maps = 0;
    std::size_t lines = 0;
    std::string system;
    MapRequest asked;
};

struct SurveyFolder {
    TempFolder folder;
    std::string file = folder.write("survey.csv", survey_file_text());
    MapWriter writer;
};

TEST(Map, the_writer_gets_the_lines_and_the_request) {
    SurveyFolder survey;
    const BatchRun run = batch(
        {"map", survey.file, "-o", "lines.pdf", "--size", "800x600", "--line", "5710", "--crs", "EPSG:32754"},
        &survey.writer);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(survey.writer.lines, 5U);
    EXPECT_EQ(survey.writer.system, "EPSG:32754");
    EXPECT_EQ(survey.writer.asked.path, "lines.pdf");
    EXPECT_EQ(survey.writer.asked.width, 800);
    EXPECT_EQ(survey.writer.asked.height, 600);
    EXPECT_EQ(survey.writer.asked.line, 2U);
}

TEST(Map, no_line_is_on_top_when_none_is_named) {
    SurveyFolder survey;
    EXPECT_EQ(batch({"map", survey.file, "-o", "a.png"}, &survey.writer).status, 0);
    EXPECT_FALSE(survey.writer.asked.line.has_value());
}

TEST(Map, a_line_that_is_not_there_is_told_with_those_that_are) {
    SurveyFolder survey;
    const BatchRun run = batch({"map", survey.file, "-o", "a.png", "--line", "5691"}, &survey.writer);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(survey.writer.maps, 0);
    EXPECT_NE(run.err.find("has no line 5691"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("5690"), std::string::npos);
}

TEST(Map, a_system_that_is_none_is_told) {
    SurveyFolder survey;
    EXPECT_EQ(batch({"map", survey.file, "-o", "a.png", "--crs", "EPSG:999999"}, &survey.writer).status, 1);
    EXPECT_EQ(survey.writer.maps, 0);
}

TEST(Map, a_file_that_is_no_survey_is_told) {
    SurveyFolder survey;
    const std::string letter = survey.folder.write("letter.txt", "Dear reader,\nthis is none.\n");
    const BatchRun run = batch({"map", letter, "-o", "a.png"}, &survey.writer);
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err, "");
}

TEST(Map, wrong_options_are_no_run) {
    SurveyFolder survey;
    EXPECT_EQ(batch({"map", survey.file, "-o", "a.bmp"}, &survey.writer).status, 2);
    EXPECT_EQ(batch({"map", survey.file, "-o", "a.png", "--size", "8x8"}, &survey.writer).status, 2);
    EXPECT_EQ(batch({"map", survey.file, "-o", survey.file + ".png", "--size", "0"}, &survey.writer).status,
              2);
    EXPECT_EQ(batch({"map", survey.file}, &survey.writer).status, 2);
    EXPECT_EQ(survey.writer.maps, 0);
}

TEST(Map, a_picture_that_fails_fails_the_command) {
    SurveyFolder survey;
    survey.writer.answer = -1;
    EXPECT_EQ(batch({"map", survey.file, "-o", "a.png"}, &survey.writer).status, 1);
    EXPECT_EQ(batch({"map", survey.file, "-o", "a.png"}).err,
              "This build of the batch tool draws no pictures\n");
}

}  // namespace
}  // namespace anomalis::batch
