#include <gtest/gtest.h>

#include "core/paths.h"
#include "workspace_file/axm_samples.h"

namespace anomalis::workspace_file {
namespace {

/// Replaces line `number` (numbered from 1) of a whole file.
std::vector<std::string> with_line(int number, const std::string& line) {
    std::vector<std::string> lines = whole_file();
    lines[static_cast<std::size_t>(number - 1)] = line;
    return lines;
}

TEST(AxmRead, all_definitions_of_a_whole_file_are_taken) {
    Reading r;
    std::vector<std::string> lines = whole_file();
    lines[1] = " 12  3  1  2  4  5  6  7  2.5  9  0.5  99 ";
    lines[3] = " 30  7  2  1  4  50  3  6  0  0 ";
    lines[4] = " 50100  200  80 -3  1  1 ";
    lines[5] = " 30  2  2 ";
    lines[6] = " 10  20 ";
    lines[7] = " 100  200 ";
    lines[8] = " 11  22 ";
    lines[9] = " 111  222 ";
    lines[10] = " 5 -1 ";
    ASSERT_EQ(r.read_lines(lines), 0);
    const Workspace& w = r.workspace;
    const DataDefinition expected{r.folder.path("survey.dat"),
                                  file_date(r.folder.path("survey.dat")),
                                  12,
                                  3,
                                  99,
                                  9,
                                  1,
                                  2,
                                  4,
                                  5,
                                  6,
                                  7,
                                  "survey.dat"};
    EXPECT_EQ(w.definition, expected);
    EXPECT_EQ(w.station_spacing, 2.5F);
    EXPECT_EQ(w.min_station_spacing, 0.5F);
    EXPECT_EQ(w.processing.residual_filter_width, 30);
    EXPECT_EQ(w.processing.display_total_gradient, 1);
    EXPECT_EQ(w.first_station, 4);
    EXPECT_EQ(w.last_station, 50);
    EXPECT_EQ(w.processing.smooth_filter_type, 3);
    EXPECT_EQ(w.processing.smooth_filter_width, 6);
    EXPECT_EQ(w.mag.base, 50100);
    EXPECT_EQ(w.grav.base, -3);
    EXPECT_EQ(w.mag.float_base + w.grav.float_base, 2);
    const PointTransform transform{false, 30, 1, 0, 2, 2, 10, 20, 100, 200, false, 11, 22, 111, 222, 5, -1};
    EXPECT_EQ(w.transform, transform);
    EXPECT_EQ(w.drawing.infinite_body_length, 500);
    EXPECT_EQ(w.drawing.finite_body_right_clip, 40);
    const DisplaySettings display{true, 11500, 9900, 1, 0, 1, {0.25F, 0.5F, 0.625F, 0.75F}, true, 2.5F};
    EXPECT_EQ(w.display, display);
}

TEST(AxmRead, seven_numbers_on_line_2_leave_the_spacings_and_clear_the_spare_ones) {
    Reading r;
    r.workspace.definition.grav_column = 9;
    r.workspace.definition.spare_definition_field = r.workspace.definition.last_data_line = 8;
    r.workspace.station_spacing = 3;
    r.workspace.min_station_spacing = 4;
    ASSERT_EQ(r.read_lines(with_line(2, " 2 1 1 2 0 0 3")), 0);
    EXPECT_EQ(r.workspace.definition.grav_column, 9);
    EXPECT_EQ(r.workspace.station_spacing, 3);
    EXPECT_EQ(r.workspace.min_station_spacing, 4);
    EXPECT_EQ(r.workspace.definition.spare_definition_field, 0);
    EXPECT_EQ(r.workspace.definition.last_data_line, 0);
}

TEST(AxmRead, one_number_on_line_4_keeps_the_other_filter_settings_but_ends_the_smoothing) {
    Reading r;
    r.workspace.processing.vg_filter_width = 9;
    r.workspace.processing.vg_filter_step = 3;
    r.workspace.processing.display_total_gradient = 1;
    r.workspace.processing.smooth_filter_type = r.workspace.processing.smooth_filter_width = 2;
    r.workspace.first_station = 3;
    ASSERT_EQ(r.read_lines(with_line(4, " 7")), 0);
    EXPECT_EQ(r.workspace.processing.residual_filter_width, 7);
    EXPECT_EQ(r.workspace.processing.vg_filter_width, 9);
    EXPECT_EQ(r.workspace.processing.vg_filter_step, 3);
    EXPECT_EQ(r.workspace.processing.display_total_gradient, 1);
    EXPECT_EQ(r.workspace.processing.smooth_filter_width, 0);
    EXPECT_EQ(r.workspace.processing.smooth_filter_type, 0);
    EXPECT_EQ(r.workspace.first_station, 0);
}

TEST(AxmRead, the_station_window_needs_both_its_numbers) {
    Reading one, two;
    ASSERT_EQ(one.read_lines(with_line(4, " 0 5 1 0 4")), 0);
    EXPECT_EQ(one.workspace.first_station, 0);
    ASSERT_EQ(two.read_lines(with_line(4, " 0 5 1 0 4 44")), 0);
    EXPECT_EQ(two.workspace.first_station, 4);
    EXPECT_EQ(two.workspace.last_station, 44);
    EXPECT_EQ(two.workspace.processing.smooth_filter_width, 0);
}

TEST(AxmRead, distances_take_the_window_over_from_the_stations) {
    Reading by_distance, both_zero;
    ASSERT_EQ(by_distance.read_lines(with_line(4, " 0 5 1 0 4 44 0 0 100 300")), 0);
    EXPECT_EQ(by_distance.workspace.first_station, 0);
    EXPECT_EQ(by_distance.workspace.last_station, 0);
    ASSERT_EQ(both_zero.read_lines(with_line(4, " 0 5 1 0 4 44 0 0 0 0")), 0);
    EXPECT_EQ(both_zero.workspace.first_station, 4);
    EXPECT_EQ(both_zero.workspace.last_station, 44);
}

TEST(AxmRead, a_filter_type_that_the_list_lacks_becomes_the_nearest) {
    Reading below, above;
    ASSERT_EQ(below.read_lines(with_line(4, " 0 5 1 0 0 0 -1 3")), 0);
    EXPECT_EQ(below.workspace.processing.smooth_filter_type, 0);
    ASSERT_EQ(above.read_lines(with_line(4, " 0 5 1 0 0 0 77 3")), 0);
    EXPECT_EQ(above.workspace.processing.smooth_filter_type, 4);
    EXPECT_EQ(above.workspace.processing.smooth_filter_width, 3);
}

TEST(AxmRead, three_base_values_leave_the_gravity_base_to_the_mean) {
    Reading r;
    r.workspace.grav.base = 5;
    r.workspace.mag.float_base = r.workspace.grav.float_base = 1;
    ASSERT_EQ(r.read_lines(with_line(5, "56000 0 10")), 0);
    EXPECT_EQ(r.workspace.grav.base, unset);
    EXPECT_EQ(r.workspace.mag.float_base, 0);
    EXPECT_EQ(r.workspace.grav.float_base, 0);
}

TEST(AxmRead, eleven_lines_are_a_file_without_bodies) {
    Reading r;
    r.workspace.body_count = 5;
    ASSERT_EQ(r.read_lines(definition_lines()), 0);
    EXPECT_EQ(r.workspace.body_count, 0);
    EXPECT_EQ(r.workspace.drawing.infinite_body_length, 500);
    EXPECT_FALSE(r.workspace.display.valid);
    EXPECT_TRUE(r.prompts.messages.empty());
}

TEST(AxmRead, view_values_are_each_read_while_text_is_left) {
    Reading r;
    ASSERT_EQ(r.read_lines(with_line(12, " 1 7 600")), 0);
    EXPECT_EQ(r.workspace.drawing.infinite_body_length, 600);
    EXPECT_EQ(r.workspace.drawing.finite_body_left_clip, 0);
}

TEST(AxmRead, view_values_that_a_file_does_not_bring_are_the_defaults_and_not_those_of_the_file_before) {
    for (const char* line : {" 1 7", " 1 7 600", " 1 7 600 5"}) {
        Reading r;
        r.workspace.drawing.infinite_body_length = 2000;
        r.workspace.drawing.finite_body_left_clip = 10;
        r.workspace.drawing.finite_body_right_clip = 20;
        ASSERT_EQ(r.read_lines(with_line(12, line)), 0);
        EXPECT_EQ(r.workspace.drawing.infinite_body_length, std::string_view(line) == " 1 7" ? 500 : 600);
        EXPECT_EQ(r.workspace.drawing.finite_body_left_clip, std::string_view(line).ends_with("5") ? 5 : 0);
        EXPECT_EQ(r.workspace.drawing.finite_body_right_clip, 0);
    }
}

TEST(AxmRead, lines_before_the_display_block_are_passed_over) {
    Reading r;
    std::vector<std::string> lines = definition_lines();
    append(lines, {" 0  7  500  0  0", "stray [AXM Display Settings]", "", " 1 2 3"});
    append(lines, display_lines());
    lines[lines.size() - 4] = "  [AXM Display Settings]  ";
    ASSERT_EQ(r.read_lines(lines), 0);
    EXPECT_TRUE(r.workspace.display.valid);
    EXPECT_EQ(r.workspace.display.form_height, 11500);
}

TEST(AxmRead, without_the_marker_the_display_settings_are_left_alone) {
    Reading r;
    r.workspace.display.form_width = 4711;
    r.workspace.display.valid = true;
    std::vector<std::string> lines = definition_lines();
    append(lines, {" 0  7  500  0  0", "[axm display settings]", " 1  1  0 Yes 2.5 "});
    ASSERT_EQ(r.read_lines(lines), 0);
    EXPECT_FALSE(r.workspace.display.valid);
    EXPECT_EQ(r.workspace.display.form_width, 4711);
}

TEST(AxmRead, the_tie_is_a_word_and_may_be_missing) {
    const auto tie_of = [](const std::string& line) {
        Reading r;
        r.workspace.display.tie_factor = 7;
        std::vector<std::string> lines = whole_file();
        lines[lines.size() - 3] = line;
        EXPECT_EQ(r.read_lines(lines), 0);
        return std::pair(r.workspace.display.tie_pipe_depth_susc, r.workspace.display.tie_factor);
    };
    EXPECT_EQ(tie_of(" 0 1 0 Yes 3"), std::pair(true, 3.0F));
    EXPECT_EQ(tie_of(" 0 1 0 no 3"), std::pair(false, 3.0F));
    EXPECT_EQ(tie_of(" 0 1 0 fAlSe 3"), std::pair(false, 3.0F));
    EXPECT_EQ(tie_of(" 0 1 0 0 3"), std::pair(false, 3.0F));
    EXPECT_EQ(tie_of(" 0 1 0 00 3"), std::pair(true, 3.0F));
    EXPECT_EQ(tie_of(" 0 1 0"), std::pair(false, 7.0F));
    EXPECT_EQ(tie_of(" 0 1 0 Yes"), std::pair(true, 7.0F));
}

TEST(AxmRead, a_block_behind_the_display_settings_is_passed_over) {
    Reading r;
    std::vector<std::string> lines = whole_file();
    append(lines, {"[AXM Something Later]", "name value"});
    EXPECT_EQ(r.read_lines(lines), 0);
}

TEST(AxmRead, a_mode_above_0_takes_the_bodies_alone) {
    Reading r;
    r.workspace.field.intensity = 1;
    r.workspace.drawing.infinite_body_length = 2;
    r.workspace.first_distance = 3;
    r.workspace.model_file = "mine.axm";
    r.workspace.display.form_width = 4711;
    const DataDefinition definition = r.workspace.definition;
    std::vector<std::string> lines = whole_file(2);
    lines[0] = "missing.dat";
    ASSERT_EQ(r.read_lines(lines, 3), 0);
    EXPECT_EQ(r.workspace.body_count, 2);
    EXPECT_EQ(r.workspace.body(2).name, "Body no. 2");
    EXPECT_EQ(r.workspace.definition, definition);
    EXPECT_EQ(r.workspace.field.intensity, 1);
    EXPECT_EQ(r.workspace.drawing.infinite_body_length, 2);
    EXPECT_EQ(r.workspace.first_distance, 3);
    EXPECT_EQ(r.workspace.model_file, "mine.axm");
    EXPECT_EQ(r.workspace.display.form_width, 4711);
    EXPECT_FALSE(r.workspace.display.valid);
    EXPECT_TRUE(r.prompts.open_requests.empty());
}

TEST(AxmRead, a_mode_below_0_takes_definitions_and_display_without_the_bodies) {
    Reading r;
    ASSERT_EQ(r.read_lines(whole_file(2), -1), 0);
    EXPECT_EQ(r.workspace.body_count, 0);
    EXPECT_EQ(r.workspace.definition.grav_column, 4);
    EXPECT_TRUE(r.workspace.display.valid);
    EXPECT_EQ(r.workspace.model_file, r.folder.path("model.axm"));
}

TEST(AxmRead, the_stations_of_the_last_line_are_dropped) {
    Reading r;
    r.workspace.station_count = 10;
    r.workspace.elevations_ready = true;
    ASSERT_EQ(r.read_lines(whole_file()), 0);
    EXPECT_EQ(r.workspace.station_count, 0);
    EXPECT_FALSE(r.workspace.elevations_ready);
}

TEST(AxmRead, a_data_file_at_its_own_path_comes_first) {
    Reading r;
    const std::string elsewhere = r.folder.write("elsewhere/survey.dat", "");
    std::vector<std::string> lines = whole_file();
    lines[0] = "  " + elsewhere + " ";
    ASSERT_EQ(r.read_lines(lines), 0);
    EXPECT_EQ(r.workspace.definition.data_file, elsewhere);
    EXPECT_GT(r.workspace.definition.data_file_date, 45000);
}

TEST(AxmRead, a_data_file_that_moved_with_its_workspace_is_found_beside_it) {
    for (const std::string old : {"/old/home/survey.dat", "C:\\surveys\\north\\survey.dat", "survey.dat"}) {
        Reading r;
        std::vector<std::string> lines = whole_file();
        lines[0] = old;
        ASSERT_EQ(r.read_lines(lines), 0);
        EXPECT_EQ(r.workspace.definition.data_file, r.folder.path("survey.dat")) << old;
        EXPECT_TRUE(r.prompts.messages.empty());
    }
}

TEST(AxmRead, a_data_file_that_is_nowhere_is_asked_for) {
    Reading r;
    const std::string answer = r.folder.write("renamed.dat", "");
    r.prompts.open_paths.push_back(answer);
    std::vector<std::string> lines = whole_file();
    lines[0] = "vanished.dat";
    ASSERT_EQ(r.read_lines(lines), 0);
    EXPECT_EQ(r.workspace.definition.data_file, answer);
    EXPECT_EQ(r.prompts.messages,
              std::vector<std::string>{"Could not find profile data file please specify its location"});
    ASSERT_EQ(r.prompts.open_requests.size(), 1U);
    EXPECT_EQ(r.prompts.open_requests[0].filter, "Data files (*.dat)|*.dat|All files (*.*)|*.*");
}

TEST(AxmRead, a_refusal_leaves_the_path_as_read_and_reading_goes_on) {
    for (const bool stop : {false, true}) {
        Reading r;
        r.prompts.yes_no.push_back(stop);
        r.workspace.definition.data_file_date = 7;
        std::vector<std::string> lines = whole_file();
        lines[0] = "/nowhere/vanished.dat";
        ASSERT_EQ(r.read_lines(lines), 0);
        EXPECT_EQ(r.workspace.definition.data_file, "/nowhere/vanished.dat");
        EXPECT_EQ(r.workspace.body_count, 1);
        EXPECT_EQ(r.prompts.questions,
                  std::vector<std::string>{"Cancel reading rest of specification file?"});
    }
}

/// What is told of a whole file whose line `number` is `text`.
std::vector<std::string> told_of(std::size_t number, const std::string& text) {
    Reading r;
    std::vector<std::string> lines = whole_file();
    lines.at(number - 1) = text;
    EXPECT_EQ(r.read_lines(lines), 0);
    return r.prompts.messages;
}

TEST(AxmRead, a_whole_file_leaves_nothing_to_tell) {
    EXPECT_TRUE(told_of(3, " 56000 -65 -4 ").empty());
}

TEST(AxmRead, numbers_that_are_none_are_told_with_file_line_and_text) {
    const std::vector<std::string> told = told_of(3, " abc 12x");
    ASSERT_EQ(told.size(), 3U);
    EXPECT_TRUE(told[0].ends_with("model.axm, line 3: \"abc\" is no number; 0 was taken")) << told[0];
    EXPECT_TRUE(told[1].ends_with("line 3: \"12x\" is no number; 12 was taken")) << told[1];
    EXPECT_TRUE(told[2].ends_with("line 3: a number is missing; 0 was taken")) << told[2];
}

TEST(AxmRead, text_that_is_left_over_is_told_on_every_line_of_numbers) {
    // The lines of numbers of the definitions and of the body, with one number too many.
    const std::vector<std::string> lines = whole_file();
    for (const std::size_t number : {2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 16, 17, 18, 19, 20, 21}) {
        const std::vector<std::string> told = told_of(number, lines.at(number - 1) + " 7,5");
        ASSERT_EQ(told.size(), 1U) << "line " << number;
        EXPECT_TRUE(
            told[0].ends_with(", line " + std::to_string(number) +
                              ": \"7,5\" is left over and was not read; is there a comma for a decimal "
                              "point?"))
            << told[0];
    }
}

TEST(AxmRead, the_numbers_that_stand_in_for_a_susceptibility_and_a_density_are_told) {
    const std::string line = whole_file().at(20);
    const std::vector<std::string> told = told_of(21, " * " + line.substr(line.find(" 0.5")));
    ASSERT_EQ(told.size(), 1U);
    EXPECT_TRUE(told[0].ends_with("line 21: \"*\" is no number; 50000 was taken")) << told[0];
}

}  // namespace
}  // namespace anomalis::workspace_file
