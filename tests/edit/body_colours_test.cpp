#include "edit/body_colours.h"

#include <gtest/gtest.h>

#include "edit/body_sample.h"
#include "edit/colour_ramp.h"

namespace anomalis::edit {

TEST(BodyColours, run_from_the_lowest_to_the_highest_value) {
    BodySample sample;
    sample.body(1).density.value = 2.5F;
    sample.body(2).density.value = 3.0F;
    sample.body(3).density.value = 2.75F;
    sample.calm();
    EXPECT_TRUE(colour_bodies(sample.workbench, ColourProperty::density));
    EXPECT_EQ(sample.body(1).colour, ramp_colour(0));
    EXPECT_EQ(sample.body(2).colour, ramp_colour(1));
    EXPECT_EQ(sample.body(3).colour, ramp_colour(0.5));
    EXPECT_TRUE(sample.changed());
    EXPECT_EQ(sample.cleared(1), Cleared(false, false));
}

TEST(BodyColours, a_negative_susceptibility_counts_as_0) {
    BodySample sample;
    sample.body(1).susc.value = -70000;
    sample.body(2).susc.value = 0;
    sample.body(3).susc.value = 100;
    EXPECT_TRUE(colour_bodies(sample.workbench, ColourProperty::susceptibility));
    EXPECT_EQ(sample.body(1).colour, sample.body(2).colour);
    EXPECT_EQ(sample.body(1).colour, ramp_colour(0));
}

TEST(BodyColours, remanence_is_field_times_ratio_times_susceptibility) {
    BodySample sample;
    sample.workspace().field.intensity = 50000;
    sample.body(1).rem_q.value = 2;
    sample.body(1).susc.value = 10000;
    EXPECT_NEAR(colour_value(sample.workspace(), sample.body(1), ColourProperty::remanence),
                50000 * 2 * 0.01 / (4 * 3.14159265358979), 1e-9);
    sample.body(2).rem_q.value = -1;
    EXPECT_TRUE(colour_bodies(sample.workbench, ColourProperty::remanence));
    EXPECT_EQ(sample.body(2).colour, ramp_colour(0));
    EXPECT_EQ(sample.body(1).colour, ramp_colour(1));
}

TEST(BodyColours, equal_values_are_told_and_change_nothing) {
    BodySample sample;
    for (const auto property :
         {ColourProperty::susceptibility, ColourProperty::remanence, ColourProperty::density})
        EXPECT_FALSE(colour_bodies(sample.workbench, property));
    EXPECT_EQ(sample.prompts.messages,
              std::vector<std::string>(3, "The bodies all have the same specified value"));
    EXPECT_EQ(sample.body(1).colour, 0xFF0000);
    EXPECT_FALSE(sample.changed());
}

TEST(BodyColours, without_bodies_nothing_is_told) {
    BodySample sample(false);
    EXPECT_FALSE(colour_bodies(sample.workbench, ColourProperty::density));
    EXPECT_TRUE(sample.prompts.messages.empty());
}

TEST(BodyColours, tell_what_they_are_of_until_one_is_another) {
    BodySample sample;
    const Workspace& workspace = sample.workspace();
    EXPECT_FALSE(coloured_by(workspace, {}));
    sample.body(1).density.value = 2.5F;
    sample.body(2).density.value = 3.0F;
    sample.body(3).density.value = 2.75F;
    EXPECT_FALSE(coloured_by(workspace, ColourProperty::density));
    colour_bodies(sample.workbench, ColourProperty::density);
    EXPECT_EQ(sample.workbench.view.coloured_by, ColourProperty::density);
    EXPECT_EQ(coloured_by(workspace, {}), ColourProperty::density);
    EXPECT_EQ(coloured_by(workspace, ColourProperty::susceptibility), ColourProperty::density);
    sample.body(3).density.value = 2.6F;
    EXPECT_FALSE(coloured_by(workspace, ColourProperty::density)) << "its colour is of another density";
    sample.body(3).density.value = 2.75F;
    sample.body(2).colour = 0x123456;
    EXPECT_FALSE(coloured_by(workspace, ColourProperty::density));
    // Where two properties give the same colours the one that was asked for is told.
    for (int i = 1; i <= 3; ++i) sample.body(i).susc.value = 1000.0F * (sample.body(i).density.value - 2.5F);
    colour_bodies(sample.workbench, ColourProperty::density);
    EXPECT_EQ(coloured_by(workspace, ColourProperty::density), ColourProperty::density);
    EXPECT_EQ(coloured_by(workspace, {}), ColourProperty::susceptibility);
}

}  // namespace anomalis::edit
