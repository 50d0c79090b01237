#include "workspace_file/axm_extensions.h"

#include <gtest/gtest.h>

#include "axm_samples.h"

namespace anomalis::workspace_file {
namespace {

std::vector<std::string> file_with(const std::vector<std::string>& block) {
    std::vector<std::string> lines = whole_file();
    append(lines, block);
    return lines;
}

TEST(AxmExtensions, the_default_writes_no_block) {
    Reading reading;
    ASSERT_EQ(reading.read_lines(whole_file()), 0);
    EXPECT_EQ(model_parameters_text(0, reading.workspace).find("[AXM Extensions]"), std::string::npos);
}

TEST(AxmExtensions, exact_formulas_are_the_last_block_and_read_back) {
    Reading reading;
    ASSERT_EQ(reading.read_lines(whole_file()), 0);
    const std::string plain = model_parameters_text(0, reading.workspace);
    reading.workspace.formulas = Formulas::exact;
    const std::string text = model_parameters_text(0, reading.workspace);
    EXPECT_EQ(text, plain + "[AXM Extensions]\r\nformulas exact\r\n");
    Reading again;
    ASSERT_EQ(again.read_text(text), 0);
    EXPECT_EQ(again.workspace.formulas, Formulas::exact);
    EXPECT_TRUE(again.prompts.messages.empty());
}

TEST(AxmExtensions, a_file_without_the_block_brings_the_classic_formulas_back) {
    Reading reading;
    reading.workspace.formulas = Formulas::exact;
    ASSERT_EQ(reading.read_lines(whole_file()), 0);
    EXPECT_EQ(reading.workspace.formulas, Formulas::classic);
}

TEST(AxmExtensions, reading_bodies_alone_leaves_the_choice) {
    Reading reading;
    reading.workspace.formulas = Formulas::exact;
    ASSERT_EQ(reading.read_lines(whole_file(), 1), 0);
    EXPECT_EQ(reading.workspace.formulas, Formulas::exact);
}

TEST(AxmExtensions, unknown_entries_and_other_blocks_are_passed_over) {
    Reading reading;
    ASSERT_EQ(
        reading.read_lines(file_with({"[AXM Others]", "formulas classic", "[AXM Extensions]", "", "colour 7",
                                      "  Formulas   EXACT  ", "[AXM Later]", "formulas classic"})),
        0);
    EXPECT_EQ(reading.workspace.formulas, Formulas::exact);
    EXPECT_TRUE(reading.prompts.messages.empty());
}

TEST(AxmExtensions, an_unknown_value_is_shown_and_leaves_the_classic_formulas) {
    Reading reading;
    ASSERT_EQ(reading.read_lines(file_with({"[AXM Extensions]", "formulas best"})), 0);
    EXPECT_EQ(reading.workspace.formulas, Formulas::classic);
    EXPECT_TRUE(reading.prompts.told("best"));
}

TEST(AxmExtensions, a_block_that_ends_in_its_marker_is_no_failure) {
    Reading reading;
    EXPECT_EQ(reading.read_lines(file_with({"[AXM Extensions]"})), 0);
    EXPECT_EQ(reading.read_lines(file_with({"[AXM Extensions]", "formulas"})), 0);
    EXPECT_EQ(reading.workspace.formulas, Formulas::classic);
}

TEST(AxmExtensions, regional_and_noise_stand_behind_the_formulas_and_read_back) {
    Reading reading;
    ASSERT_EQ(reading.read_lines(whole_file()), 0);
    const std::string plain = model_parameters_text(0, reading.workspace);
    reading.workspace.mag.regional_degree = 2;
    reading.workspace.grav.regional_degree = 0;
    reading.workspace.mag.noise = 5.5F;
    reading.workspace.grav.noise = 0.02F;
    const std::string text = model_parameters_text(0, reading.workspace);
    EXPECT_EQ(text, plain +
                        "[AXM Extensions]\r\nmag_regional 2\r\nmag_noise 5.5\r\ngrav_regional 0\r\n"
                        "grav_noise 0.02\r\n");
    Reading again;
    ASSERT_EQ(again.read_text(text), 0);
    EXPECT_TRUE(again.prompts.messages.empty());
    EXPECT_EQ(again.workspace.mag.regional_degree, 2);
    EXPECT_EQ(again.workspace.grav.regional_degree, 0);
    EXPECT_EQ(again.workspace.mag.noise, 5.5F);
    EXPECT_EQ(again.workspace.grav.noise, 0.02F);
}

TEST(AxmExtensions, a_file_without_the_block_has_no_regional_and_no_noise) {
    Reading reading;
    for (Channel* channel : {&reading.workspace.mag, &reading.workspace.grav}) {
        channel->regional_degree = 3;
        channel->noise = 4;
    }
    ASSERT_EQ(reading.read_lines(whole_file()), 0);
    for (const Channel* channel : {&reading.workspace.mag, &reading.workspace.grav}) {
        EXPECT_EQ(channel->regional_degree, no_regional);
        EXPECT_EQ(channel->noise, unset);
    }
}

TEST(AxmExtensions, a_degree_that_is_none_is_shown_and_leaves_no_regional) {
    for (const std::string value : {"4", "-1", "1.5", "bend", "nan", "1e99", ""}) {
        Reading reading;
        ASSERT_EQ(reading.read_lines(file_with({"[AXM Extensions]", "mag_regional " + value})), 0) << value;
        EXPECT_EQ(reading.workspace.mag.regional_degree, no_regional) << value;
        EXPECT_TRUE(reading.prompts.told("magnetic regional of a degree that is none: " + value)) << value;
    }
}

TEST(AxmExtensions, a_noise_that_is_none_is_shown_and_is_estimated) {
    for (const std::string value : {"0", "-5", "loud", "nan", "1e99", ""}) {
        Reading reading;
        ASSERT_EQ(reading.read_lines(file_with({"[AXM Extensions]", "grav_noise " + value})), 0) << value;
        EXPECT_EQ(reading.workspace.grav.noise, unset) << value;
        EXPECT_TRUE(reading.prompts.told("gravity readings a noise that is none: " + value)) << value;
    }
}

TEST(AxmExtensions, source_and_gaps_read_back) {
    Reading reading;
    ASSERT_EQ(reading.read_lines(whole_file()), 0);
    const std::string plain = model_parameters_text(0, reading.workspace);
    Workspace& w = reading.workspace;
    w.gap_distance = 312.5F;
    w.source = {.file = "the survey.csv",
                .line = "5690",
                .coordinate_system = "EPSG:32754",
                .date = "1990-07-01",
                .field_origin = "IGRF-14 at the middle of the line, 1990-07-01",
                .field_missing = false,
                .igrf_change = igrf_removed};
    const std::string text = model_parameters_text(0, w);
    EXPECT_EQ(text, plain +
                        "[AXM Extensions]\r\ngap_distance 312.5\r\nsource_file the survey.csv\r\n"
                        "source_line 5690\r\ncoordinate_system EPSG:32754\r\nsurvey_date 1990-07-01\r\n"
                        "field_origin IGRF-14 at the middle of the line, 1990-07-01\r\nigrf removed\r\n");
    Reading again;
    ASSERT_EQ(again.read_text(text), 0);
    EXPECT_TRUE(again.prompts.messages.empty());
    EXPECT_EQ(again.workspace.source, w.source);
    EXPECT_EQ(again.workspace.gap_distance, 312.5F);
    ASSERT_EQ(again.read_lines(whole_file()), 0);
    EXPECT_EQ(again.workspace.source, LineSource{});
    EXPECT_EQ(again.workspace.gap_distance, 0);
}

TEST(AxmExtensions, a_field_that_is_not_set_stays_so) {
    Reading reading;
    ASSERT_EQ(reading.read_lines(whole_file()), 0);
    forget_field(reading.workspace);
    Reading again;
    ASSERT_EQ(again.read_text(model_parameters_text(0, reading.workspace)), 0);
    EXPECT_TRUE(again.workspace.source.field_missing);
    EXPECT_EQ(again.workspace.field.intensity, 0);
    EXPECT_TRUE(again.prompts.messages.empty());
}

TEST(AxmExtensions, a_field_that_is_there_is_used_whatever_the_entry_says) {
    for (const std::string value : {"not_set", "lost"}) {
        Reading reading;
        ASSERT_EQ(reading.read_lines(file_with({"[AXM Extensions]", "field " + value})), 0);
        EXPECT_FALSE(reading.workspace.source.field_missing) << value;
        EXPECT_FALSE(reading.prompts.messages.empty()) << value;
    }
}

TEST(AxmExtensions, a_line_break_in_a_name_shifts_no_line) {
    Reading reading;
    ASSERT_EQ(reading.read_lines(whole_file()), 0);
    reading.workspace.source.file = "a\nigrf added";
    reading.workspace.source.line = "7";
    Reading again;
    ASSERT_EQ(again.read_text(model_parameters_text(0, reading.workspace)), 0);
    EXPECT_EQ(again.workspace.source.file, "a igrf added");
    EXPECT_EQ(again.workspace.source.line, "7");
    EXPECT_EQ(again.workspace.source.igrf_change, igrf_kept);
}

TEST(AxmExtensions, a_gap_or_a_change_by_igrf_that_is_none_is_shown) {
    for (const std::string value : {"-5", "wide", "nan", ""}) {
        Reading reading;
        ASSERT_EQ(reading.read_lines(file_with({"[AXM Extensions]", "gap_distance " + value})), 0) << value;
        EXPECT_EQ(reading.workspace.gap_distance, 0) << value;
        EXPECT_TRUE(reading.prompts.told("a distance that is none: " + value)) << value;
    }
    Reading reading;
    ASSERT_EQ(reading.read_lines(file_with({"[AXM Extensions]", "igrf doubled"})), 0);
    EXPECT_EQ(reading.workspace.source.igrf_change, igrf_kept);
    EXPECT_TRUE(reading.prompts.told("doubled"));
}

}  // namespace
}  // namespace anomalis::workspace_file
