#include <filesystem>
#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "intake/survey/survey_index.h"
#include "support/example_results.h"
#include "support/survey_file.h"
#include "survey/map/results_map.h"

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
    int write_results_map(Prompts&, const survey::SurveyResults& results,
                          const survey::ResultsMapMarks& marks, const MapRequest& request) override {
        ++results_maps;
        lines = results.lines.size();
        flags = marks.flags;
        joined = marks.strikes.size();
        area = marks.area;
        asked = request;
        return answer;
    }

    int answer = 0, maps = 0, results_maps = 0;
    std::size_t lines = 0, joined = 0;
    std::vector<survey::LineFlag> flags;
    std::optional<chart::Rect> area;
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

struct ResultsFolder {
    ResultsFolder() { write_example_results(folder, results); }
    BatchRun map(std::vector<std::string> options) {
        options.insert(options.begin(), {"map", folder.path("."), "-o", "a.png"});
        return batch(options, &writer);
    }

    TempFolder folder;
    survey::SurveyResults results = example_results();
    MapWriter writer;
};

TEST(Map, of_a_results_folder_the_writer_gets_the_results) {
    ResultsFolder survey;
    const BatchRun run = survey.map({"--size", "900x700", "--line", "L1030"});
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(survey.writer.maps, 0);
    EXPECT_EQ(survey.writer.results_maps, 1);
    EXPECT_EQ(survey.writer.lines, 12U);
    EXPECT_EQ(survey.writer.joined, 2U) << "the dykes that all lines, and half of them, lie over";
    EXPECT_EQ(survey.writer.asked.line, 3U);
    EXPECT_EQ(survey.writer.asked.width, 900);
    for (const survey::LineFlag flag : survey.writer.flags) EXPECT_EQ(flag, survey::LineFlag::none);
}

TEST(Map, a_part_of_the_results_can_be_asked_for) {
    ResultsFolder survey;
    EXPECT_EQ(survey.map({"--area", "450000,451000,7550000,7552000"}).status, 0);
    EXPECT_EQ(survey.writer.area, (chart::Rect{450000, 451000, 7550000, 7552000}));
    for (const char* wrong : {"1,2,3", "1,2,3,4,5", "2,1,3,4", "a,2,3,4", "", "1,2,3,nan"})
        EXPECT_EQ(survey.map({"--area", wrong}).status, 2) << wrong;
    const SurveyFolder file;
    EXPECT_EQ(batch({"map", file.file, "-o", "a.png", "--area", "1,2,3,4"}, &survey.writer).status, 1);
}

TEST(Map, flags_of_a_results_folder_are_marked) {
    ResultsFolder survey;
    survey::LineFlags(survey.folder.path(".")).set("L1020", {survey::LineFlag::reject, "spikes"});
    EXPECT_EQ(survey.map({}).status, 0);
    ASSERT_EQ(survey.writer.flags.size(), 12U);
    EXPECT_EQ(survey.writer.flags[2], survey::LineFlag::reject);
    EXPECT_EQ(survey.writer.flags[3], survey::LineFlag::none);
}

TEST(Map, a_line_that_a_results_folder_does_not_have_is_told_with_those_like_it) {
    ResultsFolder survey;
    const BatchRun run = survey.map({"--line", "L1031"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(survey.writer.results_maps, 0);
    EXPECT_NE(run.err.find("has no line L1031"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("L1030"), std::string::npos) << run.err;
}

TEST(Map, a_line_that_is_not_done_yet_is_told_so) {
    ResultsFolder survey;
    std::filesystem::remove_all(survey.folder.path("lines/L1030"));
    EXPECT_EQ(survey.map({}).status, 0);
    EXPECT_EQ(survey.writer.lines, 11U);
    const BatchRun run = survey.map({"--line", "L1030"});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.err.find("line L1030 is not done yet"), std::string::npos) << run.err;
}

TEST(Map, what_is_said_of_columns_does_not_go_with_results) {
    ResultsFolder survey;
    const BatchRun run = survey.map({"--crs", "EPSG:32754"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(survey.writer.results_maps, 0);
    EXPECT_NE(run.err.find("--crs"), std::string::npos) << run.err;
}

TEST(Map, a_folder_without_results_and_a_damaged_result_are_told) {
    ResultsFolder survey;
    const TempFolder empty;
    const BatchRun none = batch({"map", empty.path("."), "-o", "a.png"}, &survey.writer);
    EXPECT_EQ(none.status, 1);
    EXPECT_NE(none.err.find("holds no results of a survey"), std::string::npos) << none.err;
    survey.folder.write("lines/L1000/result.json", "{\"line\":");
    const BatchRun damaged = survey.map({});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_NE(damaged.err.find("result.json"), std::string::npos) << damaged.err;
    EXPECT_EQ(survey.writer.results_maps, 0);
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
