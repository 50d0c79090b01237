#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "core/session.h"

namespace anomalis::batch {
namespace {

/// Remembers what it was asked to draw.
class RecordingWriter : public PictureWriter {
  public:
    int write(Session& session, const PictureRequest& request) override {
        ++pictures;
        asked = request;
        stations = session.workspace.station_count;
        calculated = session.workspace.mag.calculated_filtered;
        return answer;
    }

    int write_map(Prompts&, const intake::SurveyIndex&, const MapRequest&) override { return -1; }
    int write_results_map(Prompts&, const survey::SurveyResults&, const survey::ResultsMapMarks&,
                          const MapRequest&) override {
        return -1;
    }

    int answer = 0;
    int pictures = 0;
    int stations = 0;
    bool calculated = false;
    PictureRequest asked;
};

TEST(Render, the_writer_gets_a_calculated_session_and_the_request) {
    const BatchFolder files;
    RecordingWriter writer;
    EXPECT_EQ(batch({"render", files.model, "-o", "plan.svg", "--view", "plan", "--size", "800x600"}, &writer)
                  .status,
              0);
    EXPECT_EQ(writer.pictures, 1);
    EXPECT_EQ(writer.stations, 41);
    EXPECT_TRUE(writer.calculated);
    EXPECT_EQ(writer.asked.path, "plan.svg");
    EXPECT_EQ(writer.asked.view, "plan");
    EXPECT_EQ(writer.asked.width, 800);
    EXPECT_EQ(writer.asked.height, 600);
}

TEST(Render, the_section_is_drawn_when_nothing_else_is_said) {
    const BatchFolder files;
    RecordingWriter writer;
    EXPECT_EQ(batch({"render", files.model, "-o", "a.png"}, &writer).status, 0);
    EXPECT_EQ(writer.asked.view, "section");
    EXPECT_EQ(writer.asked.width, 1600);
    EXPECT_EQ(writer.asked.height, 1000);
}

TEST(Render, a_page_has_paper_orientation_and_title) {
    const BatchFolder files;
    RecordingWriter writer;
    EXPECT_EQ(batch({"render", files.model, "-o", "a.pdf", "--view", "page", "--paper", "a3", "--landscape",
                     "--title", "North"},
                    &writer)
                  .status,
              0);
    EXPECT_EQ(writer.asked.view, "page");
    EXPECT_EQ(writer.asked.paper, "a3");
    EXPECT_TRUE(writer.asked.landscape);
    EXPECT_EQ(writer.asked.title, "North");
    EXPECT_EQ(batch({"render", files.model, "-o", "a.pdf", "--view", "page"}, &writer).status, 0);
    EXPECT_EQ(writer.asked.paper, "a4");
    EXPECT_FALSE(writer.asked.landscape);
}

TEST(Render, pixels_and_paper_do_not_go_together) {
    const BatchFolder files;
    RecordingWriter writer;
    for (const std::vector<std::string>& more :
         std::vector<std::vector<std::string>>{{"--paper", "a3"},
                                               {"--landscape"},
                                               {"--title", "North"},
                                               {"--view", "page", "--size", "80x60"}}) {
        std::vector<std::string> words{"render", files.model, "-o", "a.pdf"};
        words.insert(words.end(), more.begin(), more.end());
        EXPECT_EQ(batch(words, &writer).status, 2) << more[0];
    }
    EXPECT_EQ(
        batch({"render", files.model, "-o", "a.pdf", "--view", "page", "--paper", "a5"}, &writer).status, 2);
    EXPECT_EQ(writer.pictures, 0);
}

TEST(Render, a_failed_picture_fails_the_command) {
    const BatchFolder files;
    RecordingWriter writer;
    writer.answer = -1;
    EXPECT_EQ(batch({"render", files.model, "-o", "a.png"}, &writer).status, 1);
}

TEST(Render, nothing_is_drawn_without_stations) {
    const BatchFolder files;
    files.folder.write("survey.dat", "");
    RecordingWriter writer;
    EXPECT_EQ(batch({"render", files.model, "-o", "a.png"}, &writer).status, 1);
    EXPECT_EQ(writer.pictures, 0);
}

TEST(Render, a_build_without_pictures_says_so) {
    const BatchFolder files;
    const BatchRun run = batch({"render", files.model, "-o", "a.png"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "This build of the batch tool draws no pictures\n");
}

}  // namespace
}  // namespace anomalis::batch
