#include "edit/display_check.h"

#include <gtest/gtest.h>

#include "edit/line_sample.h"

namespace anomalis::edit {
namespace {

struct DisplayCheckTest : testing::Test {
    DisplayCheckTest() { sample.load(); }

    DisplayTexts texts() const { return {"0", "5", "51000", "0", "1.5"}; }
    /// The message of a refusal, "" when the model may be shown.
    std::string refusal(const DisplayTexts& shown) {
        sample.prompts.messages.clear();
        const DisplayCheck check = validate_model_display(sample.workbench, shown);
        EXPECT_EQ(check.status == 0, sample.prompts.messages.empty());
        EXPECT_EQ(check.status == 0, !check.box);
        box = check.box;
        return sample.prompts.messages.empty() ? "" : sample.prompts.messages.front();
    }

    LineSample sample;
    std::optional<SettingsBox> box;
};

TEST_F(DisplayCheckTest, boxes_in_order_let_the_model_be_shown_with_fresh_filters) {
    sample.workspace().mag.observed_filtered = true;
    EXPECT_EQ(refusal(texts()), "");
    EXPECT_FALSE(sample.workspace().mag.observed_filtered);
}

TEST_F(DisplayCheckTest, without_stations_nothing_is_looked_at) {
    drop_stations(sample.workspace());
    const DisplayCheck check = validate_model_display(sample.workbench, {"x", "x", "x", "x", "x"});
    EXPECT_EQ(check.status, -1);
    EXPECT_FALSE(check.box);
    EXPECT_TRUE(sample.prompts.messages.empty());
}

TEST_F(DisplayCheckTest, each_wrong_text_is_told_with_its_box) {
    DisplayTexts shown = texts();
    shown.residual_filter_width = "ten";
    EXPECT_EQ(refusal(shown), "The residual filter window width is invalid");
    EXPECT_EQ(box, SettingsBox::residual_filter_width);
    shown = texts();
    shown.vg_filter_width = "";
    EXPECT_EQ(refusal(shown), "The VG filter window width is invalid");
    shown = texts();
    shown.mag_base = "1e999";
    EXPECT_EQ(refusal(shown), "The data background value is invalid");
    shown = texts();
    shown.surface_elevation = "1,5";
    EXPECT_EQ(refusal(shown), "The surface elevation is invalid");
    shown = texts();
    shown.sensor_offset = "2 m";
    EXPECT_EQ(refusal(shown), "The sensor offset is invalid");
    EXPECT_EQ(box, SettingsBox::sensor_offset);
}

TEST_F(DisplayCheckTest, a_gradient_width_that_rounds_to_nothing_is_refused_by_what_is_stored) {
    DisplayTexts shown = texts();
    shown.vg_filter_width = "0.4";
    sample.workspace().processing.vg_filter_width = 0;
    EXPECT_EQ(refusal(shown), "The VG/TG filter window width must be positive");
    EXPECT_EQ(box, SettingsBox::vg_filter_width);
}

TEST_F(DisplayCheckTest, a_negative_sensor_offset_of_a_file_is_refused) {
    sample.workspace().sensor_offset = -1;
    EXPECT_EQ(refusal(texts()), "The sensor offset must be non-negative");
}

TEST_F(DisplayCheckTest, the_first_wrong_text_is_the_one_that_is_told) {
    EXPECT_EQ(refusal({"0", "x", "x", "x", "x"}), "The VG filter window width is invalid");
    EXPECT_EQ(refusal({"0", "5", "x", "x", "x"}), "The data background value is invalid");
}

TEST_F(DisplayCheckTest, base_levels_do_not_count_while_a_residual_filter_is_on) {
    sample.workspace().processing.residual_filter_width = 30;
    DisplayTexts shown = texts();
    shown.mag_base = "rubbish";
    EXPECT_EQ(refusal(shown), "");
    shown.mag_base = "";
    sample.workspace().processing.residual_filter_width = 0;
    EXPECT_EQ(refusal(shown), "");
}

}  // namespace
}  // namespace anomalis::edit
