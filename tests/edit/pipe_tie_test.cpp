#include "edit/pipe_tie.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "core/body_parameters.h"
#include "edit/body_sample.h"
#include "edit/parameter_bars.h"
#include "workspace_file/axm.h"
#include "workspace_file/axm_text.h"

namespace anomalis::edit {

namespace {

struct Tied : BodySample {
    Tied() {
        body(2).type = pipe;
        body(2).top.value = 40;
        workspace().display.tie_pipe_depth_susc = true;
        workspace().display.tie_factor = 2;
        calm();
    }
    const ParameterBar& depth_bar() {
        for (const ParameterBar& bar : parameter_bars())
            if (bar.code == param_top) return bar;
        throw std::runtime_error("no bar");
    }
    bool step(int direction) { return step_parameter(workbench, depth_bar(), false, direction); }
    /// Elevation of the sensor at body 2, 1200 m along the line: station 49.
    double sensor() { return workspace().stations(49, column_sensor); }
};

}  // namespace

TEST(PipeTie, asks_for_the_rate_and_ties) {
    BodySample sample;
    sample.prompts.texts = {"1.5"};
    toggle_pipe_tie(sample.workbench);
    ASSERT_EQ(sample.prompts.input_boxes.size(), 1u);
    EXPECT_EQ(sample.prompts.input_boxes[0].title, "Pipe Model Decay Rate");
    EXPECT_EQ(sample.prompts.input_boxes[0].prompt, "Enter the decay rate that you would like to use");
    EXPECT_EQ(sample.prompts.input_boxes[0].default_text, "2");
    EXPECT_TRUE(pipes_are_tied(sample.workspace()));
    EXPECT_EQ(sample.workspace().display.tie_factor, 1.5F);
    EXPECT_TRUE(sample.changed());
}

TEST(PipeTie, a_second_choice_unties_without_asking_and_the_rate_is_offered_again) {
    BodySample sample;
    sample.prompts.texts = {"1.5", std::nullopt};
    toggle_pipe_tie(sample.workbench);
    toggle_pipe_tie(sample.workbench);
    EXPECT_FALSE(pipes_are_tied(sample.workspace()));
    EXPECT_EQ(sample.prompts.input_boxes.size(), 1u);
    toggle_pipe_tie(sample.workbench);
    EXPECT_EQ(sample.prompts.input_boxes.back().default_text, "1.50");
    EXPECT_FALSE(pipes_are_tied(sample.workspace()));
}

TEST(PipeTie, what_is_no_rate_changes_nothing) {
    for (const std::string& text :
         {std::string(), std::string("  "), std::string("abc"), std::string("0"), std::string("0.00"),
          std::string("1e999"), std::string("1e300"), std::string("1e-300"), std::string(10000, '9')}) {
        BodySample sample;
        sample.prompts.texts = {text};
        toggle_pipe_tie(sample.workbench);
        EXPECT_FALSE(pipes_are_tied(sample.workspace())) << text.substr(0, 10);
        EXPECT_FALSE(sample.changed());
    }
}

TEST(PipeTie, susceptibility_follows_the_depth_by_the_rate) {
    Tied sample;
    const double room = sample.sensor() - 40;
    EXPECT_TRUE(sample.step(-1));
    EXPECT_EQ(sample.body(2).top.value, 39);
    EXPECT_NEAR(sample.body(2).susc.value, 50000 * std::pow((room + 1) / room, 2), 0.01);
    EXPECT_EQ(sample.cleared(2), Cleared(true, true));
    EXPECT_TRUE(sample.step(1));
    EXPECT_NEAR(sample.body(2).susc.value, 50000, 0.05);
}

TEST(PipeTie, only_pipes_and_only_while_tied) {
    Tied sample;
    sample.body(2).type = thick_sheet;
    sample.step(1);
    EXPECT_EQ(sample.body(2).susc.value, 50000);
    sample.body(2).type = pipe;
    sample.workspace().display.tie_pipe_depth_susc = false;
    sample.step(1);
    EXPECT_EQ(sample.body(2).susc.value, 50000);
}

TEST(PipeTie, a_pipe_at_the_sensor_keeps_its_susceptibility) {
    Tied sample;
    for (const double top : {sample.sensor(), sample.sensor() + 5}) {
        sample.body(2).top.value = static_cast<float>(top);
        EXPECT_TRUE(sample.step(1));
        EXPECT_EQ(sample.body(2).susc.value, 50000);
    }
    // The step itself reaches the sensor.
    sample.body(2).top.value = static_cast<float>(sample.sensor() - 1);
    EXPECT_TRUE(sample.step(1));
    EXPECT_EQ(sample.body(2).susc.value, 50000);
}

TEST(PipeTie, the_sensor_is_that_of_the_station_at_or_before_the_pipe) {
    Tied sample;
    sample.body(2).distance.value = 1224;
    const double room = sample.sensor() - 40;
    EXPECT_TRUE(tie_susceptibility(sample.workbench, sample.body(2), 1));
    EXPECT_NEAR(sample.body(2).susc.value, 50000 * std::pow((room - 1) / room, 2), 0.01);
    for (const float distance : {-500.0F, 9000.0F}) {
        sample.body(2).distance.value = distance;
        EXPECT_TRUE(tie_susceptibility(sample.workbench, sample.body(2), 1));
    }
    drop_stations(sample.workspace());
    EXPECT_FALSE(tie_susceptibility(sample.workbench, sample.body(2), 1));
}

TEST(PipeTie, a_file_that_does_not_speak_of_it_has_no_tie) {
    Tied sample;
    const std::string path = sample.folder.path("old.axm");
    ASSERT_EQ(workspace_file::write_model_parameters(0, path, sample.workspace(), sample.prompts), 0);
    ASSERT_EQ(flow::open_model_file(sample.workbench, flow::ReadMode::everything, path),
              flow::OpenOutcome::opened);
    EXPECT_TRUE(pipes_are_tied(sample.workspace()));

    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    const std::string whole = text.str();
    const std::size_t block = whole.find(workspace_file::axm_display_marker);
    ASSERT_NE(block, std::string::npos);
    const std::string older = sample.folder.write("older.axm", whole.substr(0, block));
    ASSERT_EQ(flow::open_model_file(sample.workbench, flow::ReadMode::everything, older),
              flow::OpenOutcome::opened);
    EXPECT_FALSE(pipes_are_tied(sample.workspace()));
}

}  // namespace anomalis::edit
