#include "edit/definition_boxes.h"

#include <gtest/gtest.h>

#include "edit/line_sample.h"

namespace anomalis::edit {

TEST(DefinitionBoxes, an_accepted_number_is_stored_and_drops_the_stations) {
    LineSample sample;
    ASSERT_TRUE(sample.load().loaded);
    EXPECT_EQ(change_definition_box(sample.workbench, DefinitionBox::mag_column, "5"),
              DefinitionChange::accepted);
    EXPECT_EQ(sample.workspace().definition.mag_column, 5);
    EXPECT_EQ(sample.workspace().station_count, 0);
    EXPECT_TRUE(sample.session.model_changed);
}

TEST(DefinitionBoxes, a_refused_text_leaves_field_and_stations) {
    LineSample sample;
    ASSERT_TRUE(sample.load().loaded);
    for (const char* text : {"abc", "", " ", "0", "-1", "1e999", "nan", "inf", "0x10", "3 4", "99999999999"})
        EXPECT_EQ(change_definition_box(sample.workbench, DefinitionBox::x_column, text),
                  DefinitionChange::refused)
            << text;
    EXPECT_EQ(sample.workspace().definition.x_column, 2);
    EXPECT_EQ(sample.workspace().station_count, LineSample::stations);
    EXPECT_FALSE(sample.session.model_changed);
}

TEST(DefinitionBoxes, each_box_knows_whether_0_means_absent) {
    LineSample sample;
    for (const DefinitionBox box :
         {DefinitionBox::first_data_line, DefinitionBox::read_increment, DefinitionBox::x_column})
        EXPECT_EQ(change_definition_box(sample.workbench, box, "0"), DefinitionChange::refused);
    for (const DefinitionBox box :
         {DefinitionBox::last_data_line, DefinitionBox::mag_column, DefinitionBox::grav_column}) {
        EXPECT_EQ(change_definition_box(sample.workbench, box, "0"), DefinitionChange::accepted);
        EXPECT_EQ(change_definition_box(sample.workbench, box, "-1"), DefinitionChange::refused);
    }
}

TEST(DefinitionBoxes, the_optional_columns_take_any_number_and_keep_the_length_on_show) {
    LineSample sample;
    for (const DefinitionBox box :
         {DefinitionBox::y_column, DefinitionBox::z_column, DefinitionBox::dtm_column})
        EXPECT_EQ(change_definition_box(sample.workbench, box, "-2"), DefinitionChange::accepted_keep_length);
    EXPECT_EQ(sample.workspace().definition.dtm_column, -2);
}

TEST(DefinitionBoxes, broken_numbers_round_to_even) {
    LineSample sample;
    change_definition_box(sample.workbench, DefinitionBox::read_increment, "2.5");
    EXPECT_EQ(sample.workspace().definition.read_increment, 2);
    change_definition_box(sample.workbench, DefinitionBox::read_increment, "3.5");
    EXPECT_EQ(sample.workspace().definition.read_increment, 4);
}

TEST(DefinitionBoxes, a_blank_spacing_does_nothing_at_all) {
    LineSample sample;
    ASSERT_TRUE(sample.load().loaded);
    EXPECT_EQ(change_definition_box(sample.workbench, DefinitionBox::station_spacing, "  "),
              DefinitionChange::unchanged);
    EXPECT_EQ(sample.workspace().station_count, LineSample::stations);
}

TEST(DefinitionBoxes, a_spacing_that_is_no_number_becomes_0_and_frees_the_window) {
    LineSample sample;
    ASSERT_TRUE(sample.load().loaded);
    Workspace& w = sample.workspace();
    w.first_distance = 100;
    w.last_distance = 900;
    for (const char* text : {"abc", "-3", "0", "1e39"}) {
        w.station_spacing = 7;
        w.first_station = 5;
        w.last_station = 37;
        EXPECT_EQ(change_definition_box(sample.workbench, DefinitionBox::station_spacing, text),
                  DefinitionChange::accepted);
        EXPECT_EQ(w.station_spacing, 0);
        EXPECT_EQ(w.first_station, 0);
        EXPECT_EQ(w.last_station, 0);
    }
    EXPECT_EQ(w.first_distance, 100);
}

TEST(DefinitionBoxes, texts_are_filled_from_the_workspace) {
    LineSample sample;
    Workspace& w = sample.workspace();
    w.station_spacing = 12.5F;
    w.min_station_spacing = -1;
    EXPECT_EQ(definition_box_text(w, DefinitionBox::station_spacing), "12.50");
    EXPECT_EQ(definition_box_text(w, DefinitionBox::min_station_spacing), "0");
    EXPECT_EQ(definition_box_text(w, DefinitionBox::mag_column), "6");
}

}  // namespace anomalis::edit
