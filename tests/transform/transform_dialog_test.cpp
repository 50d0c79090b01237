#include "transform/transform_dialog.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/settings.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"
#include "transform/transform.h"

namespace anomalis::transform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Box = TransformBox;

/// Not the same along both axes, and with digits that no box shows.
PointTransform uneven() {
    PointTransform t;
    t.rotation = 30;
    t.x_scale = 2.0000000001;
    t.y_scale = 0.5;
    t.x_origin = 10.12345678;
    t.y_offset = 7000;
    t.original_x2 = 110;
    t.elevation_shift = 5;
    update_transform(t);
    return t;
}

class TransformDialogTest : public ::testing::Test {
  protected:
    TransformDialog open(int tab = 0, const PointTransform& record = {}) {
        return {record, tab, "", prompts};
    }

    ScriptedPrompts prompts;
    TempFolder folder;
};

TEST_F(TransformDialogTest, shows_each_value_in_its_format) {
    const TransformDialog origins = open(0, uneven());
    EXPECT_EQ(origins.text(Box::rotang), "30.000000");
    EXPECT_EQ(origins.text(Box::xscale), "2.00000000");
    EXPECT_EQ(origins.text(Box::xorigin), "10.1235");
    EXPECT_EQ(origins.text(Box::elevation_shift_0), "5.0000");
    EXPECT_EQ(origins.text(Box::elevation_scale_0), "1.00000000");
    const TransformDialog points = open(1, uneven());
    EXPECT_EQ(points.text(Box::original_x1), "10.1235");
    EXPECT_EQ(points.text(Box::new_y1), "7000.0000");
    EXPECT_EQ(points.text(Box::original_x2), "110.0000");
}

TEST_F(TransformDialogTest, every_check_of_the_first_tab_has_its_message_in_its_order) {
    TransformDialog dialog = open();
    const PointTransform before = dialog.transform();
    const std::vector<std::pair<Box, std::string>> checks{
        {Box::rotang, "Rotation angle must be numeric"},
        {Box::xorigin, "Grid x origin must be numeric"},
        {Box::yorigin, "Grid y origin must be numeric"},
        {Box::xoffset, "New x origin must be numeric"},
        {Box::yoffset, "New y origin must be numeric"},
        {Box::xscale, "Scale for current x axis must be numeric"},
        {Box::yscale, "Scale for current y axis must be numeric"},
        {Box::elevation_shift_0, "Elevation shift must be numeric"},
        {Box::elevation_scale_0, "Elevation scale must be numeric"}};
    for (const auto& [box, text] : checks) dialog.edit(box, "1e999");
    for (const auto& [box, text] : checks) {
        EXPECT_FALSE(dialog.validate());
        EXPECT_EQ(prompts.messages.back(), text);
        dialog.edit(box, "1");
    }
    EXPECT_EQ(prompts.messages.size(), checks.size());
    EXPECT_EQ(dialog.transform(), before);
    EXPECT_TRUE(dialog.validate());
}

TEST_F(TransformDialogTest, a_scale_of_nothing_is_refused_on_the_first_tab) {
    TransformDialog dialog = open();
    for (const auto& [box, text] : std::vector<std::pair<Box, std::string>>{
             {Box::xscale, "Scale for current x axis must be non-zero"},
             {Box::yscale, "Scale for current y axis must be non-zero"},
             {Box::elevation_scale_0, "Elevation scale must be non-zero"}}) {
        dialog.edit(box, "-0.00009");
        EXPECT_FALSE(dialog.validate());
        EXPECT_EQ(prompts.messages.back(), text);
        EXPECT_EQ(dialog.text(box), "-0.00009") << "stays as typed";
        dialog.edit(box, "-0.0001");
    }
    EXPECT_TRUE(dialog.validate());
}

TEST_F(TransformDialogTest, every_check_of_the_second_tab_has_its_message_in_its_order) {
    TransformDialog dialog = open(1);
    const std::vector<std::pair<Box, std::string>> checks{
        {Box::original_x1, "Original X1 must be numeric"},
        {Box::original_y1, "Original Y1 must be numeric"},
        {Box::new_x1, "New X1 must be numeric"},
        {Box::new_y1, "New Y1 must be numeric"},
        {Box::original_x2, "Original X2 must be numeric"},
        {Box::original_y2, "Original Y2 must be numeric"},
        {Box::new_x2, "New X2 must be numeric"},
        {Box::new_y2, "New Y2 must be numeric"},
        {Box::elevation_shift_1, "Elevation shift must be numeric"},
        {Box::elevation_scale_1, "Elevation scale must be numeric"}};
    for (const auto& [box, text] : checks) dialog.edit(box, "1,5");
    for (const auto& [box, text] : checks) {
        EXPECT_FALSE(dialog.validate());
        EXPECT_EQ(prompts.messages.back(), text);
        dialog.edit(box, "0");
    }
    EXPECT_FALSE(dialog.validate());
    EXPECT_EQ(prompts.messages.back(), "First and second original points must be distinct");
    dialog.edit(Box::original_x2, "0.05");
    EXPECT_FALSE(dialog.validate());
    dialog.edit(Box::original_x2, "0.5");
    EXPECT_FALSE(dialog.validate());
    EXPECT_EQ(prompts.messages.back(), "First and second new points must be distinct");
    dialog.edit(Box::new_x2, "0.5");
    EXPECT_TRUE(dialog.validate());
    EXPECT_EQ(dialog.transform().elevation_scale, 0) << "made 1 when the record is brought up to date";
}

TEST_F(TransformDialogTest, numbers_that_overflow_are_told_and_change_nothing) {
    TransformDialog points = open(1);
    points.edit(Box::new_x2, "1.7e308");
    points.edit(Box::new_y2, "1.7e308");
    EXPECT_FALSE(points.validate());
    EXPECT_THAT(prompts.messages,
                ElementsAre("An error occurred while calculating the transform parameters: Overflow",
                            "The specified points cannot be used to define a meaningful transform"));
    TransformDialog origins = open(0);
    origins.edit(Box::xscale, "1e300");
    origins.edit(Box::xorigin, "-1e300");
    EXPECT_TRUE(origins.validate()) << "the second point is laid out from the first";
    origins.edit(Box::xorigin, "1e300");
    EXPECT_FALSE(origins.validate());
    EXPECT_EQ(prompts.messages.back(), "An error orrurred while calculating the transform: Overflow");
    EXPECT_EQ(origins.transform().x_origin, -1e300);
}

TEST_F(TransformDialogTest, the_second_points_agree_with_origin_scale_and_rotation) {
    TransformDialog dialog = open();
    dialog.edit(Box::rotang, "90");
    dialog.edit(Box::xscale, "2");
    dialog.edit(Box::yscale, "2");
    dialog.edit(Box::xorigin, "1000");
    dialog.edit(Box::yoffset, "50");
    ASSERT_TRUE(dialog.choose_tab(1));
    EXPECT_EQ(dialog.text(Box::original_x2), "1100.0000");
    EXPECT_EQ(dialog.text(Box::new_x2), "0.0000");
    EXPECT_EQ(dialog.text(Box::new_y2), "-150.0000");
    PointTransform by_origins = dialog.transform();
    update_transform(by_origins);
    double x = 1100, y = 0, z = 0;
    apply_transform(by_origins, 1, x, y, z);
    EXPECT_NEAR(x, 0, 1e-4);
    EXPECT_NEAR(y, -150, 1e-4);
}

TEST_F(TransformDialogTest, a_tab_that_nobody_edited_is_not_stored) {
    const PointTransform record = uneven();
    TransformDialog dialog = open(1, record);
    EXPECT_TRUE(dialog.choose_tab(0));
    EXPECT_TRUE(dialog.choose_tab(1));
    EXPECT_TRUE(dialog.validate());
    EXPECT_EQ(dialog.transform(), record) << "two scales stay two";
    dialog.edit(Box::elevation_shift_1, "6");
    EXPECT_TRUE(dialog.validate());
    EXPECT_EQ(dialog.transform().x_scale, dialog.transform().y_scale);
}

TEST_F(TransformDialogTest, a_box_that_nobody_edited_keeps_its_digits) {
    TransformDialog dialog = open(0, uneven());
    dialog.edit(Box::rotang, "31");
    EXPECT_TRUE(dialog.validate());
    EXPECT_EQ(dialog.transform().x_origin, 10.12345678);
    EXPECT_EQ(dialog.transform().x_scale, 2.0000000001);
    EXPECT_EQ(dialog.transform().rotation, 31);
}

TEST_F(TransformDialogTest, a_tab_that_is_not_valid_stays) {
    TransformDialog dialog = open();
    dialog.edit(Box::rotang, "north");
    EXPECT_FALSE(dialog.choose_tab(1));
    EXPECT_EQ(dialog.tab(), 0);
    EXPECT_EQ(dialog.text(Box::rotang), "north");
}

TEST_F(TransformDialogTest, inverting_twice_on_the_first_tab_gives_the_record_back) {
    PointTransform record = uneven();
    record.x_scale = 2;
    TransformDialog dialog = open(0, record);
    EXPECT_TRUE(dialog.invert());
    EXPECT_EQ(dialog.text(Box::rotang), "-30.000000");
    EXPECT_TRUE(dialog.invert());
    PointTransform twice = dialog.transform();
    update_transform(twice);
    EXPECT_EQ(twice, record);
}

TEST_F(TransformDialogTest, inverted_points_form_rotation_and_scale_again) {
    TransformDialog dialog = open(1);
    dialog.edit(Box::original_x2, "100");
    dialog.edit(Box::original_y2, "0");
    dialog.edit(Box::new_x2, "0");
    dialog.edit(Box::new_y2, "-200");
    EXPECT_TRUE(dialog.invert());
    EXPECT_EQ(dialog.text(Box::original_y2), "-200.0000");
    EXPECT_TRUE(dialog.validate());
    EXPECT_NEAR(dialog.transform().rotation, -90, 1e-6);
    EXPECT_NEAR(dialog.transform().x_scale, 0.5, 1e-12);
}

TEST_F(TransformDialogTest, reset_is_the_identity) {
    TransformDialog dialog = open(0, uneven());
    dialog.edit(Box::rotang, "rubbish");
    dialog.reset();
    EXPECT_EQ(dialog.transform(), PointTransform{});
    EXPECT_EQ(dialog.text(Box::rotang), "0.000000");
}

TEST_F(TransformDialogTest, saves_and_loads_and_remembers_the_folder) {
    TransformDialog dialog = open();
    dialog.edit(Box::xoffset, "500");
    prompts.save_paths = {folder.path("a"), folder.path("a.crd"), std::nullopt};
    EXPECT_TRUE(dialog.save_file());
    EXPECT_EQ(dialog.folder(), folder.folder() + "/");
    prompts.yes_no = {false};
    EXPECT_FALSE(dialog.save_file()) << "an old file is asked about";
    EXPECT_FALSE(dialog.save_file());
    EXPECT_EQ(prompts.save_requests[0].title, "Save Transformation To File");
    EXPECT_EQ(prompts.save_requests[0].filter, "Coordinate files (*.crd)|*.crd|All files (*.*)|*.*");

    TransformDialog other = open();
    prompts.open_paths = {folder.path("a.crd"), std::nullopt};
    EXPECT_TRUE(other.load_file());
    EXPECT_EQ(other.text(Box::xoffset), "500.0000");
    EXPECT_FALSE(other.load_file());
    EXPECT_EQ(other.transform().x_offset, 500);
}

TEST_F(TransformDialogTest, a_corrupt_or_half_written_file_leaves_the_old_transform) {
    const PointTransform record = uneven();
    TransformDialog dialog = open(0, record);
    dialog.edit(Box::rotang, "12");
    const std::vector<std::string> contents{"",
                                            "title\r\n",
                                            "title\r\n 1 2 3",
                                            "title\r\n 1  2  3  4\r\n 1  2",
                                            "title\r\n 1  2  3  4\r\n 100  2  103  4\r\n 5",
                                            "title\r\n 1  2  3  4\r\n 100  2  x03  4\r\n 5  1",
                                            std::string("\x00\xff\x89PNG\r\n", 8),
                                            "t\n0 0 0 0\n1e999 0 100 0\n0 1\n"};
    for (const std::string& content : contents) {
        prompts.messages.clear();
        prompts.open_paths = {folder.write("bad.crd", content)};
        EXPECT_FALSE(dialog.load_file());
        EXPECT_EQ(prompts.messages.size(), 1U);
        EXPECT_EQ(dialog.transform(), record);
        EXPECT_EQ(dialog.text(Box::rotang), "12") << "the boxes stay as typed";
    }
    prompts.open_paths = {folder.path("gone.crd")};
    EXPECT_FALSE(dialog.load_file());
    EXPECT_TRUE(prompts.told("No such file"));
}

TEST_F(TransformDialogTest, a_target_that_cannot_be_written_is_told) {
    TransformDialog dialog = open();
    prompts.save_paths = {folder.path("no/such/a.crd")};
    EXPECT_FALSE(dialog.save_file());
    EXPECT_TRUE(prompts.told("An error occurred while saving the transform file: "));
}

TEST_F(TransformDialogTest, nothing_is_saved_over_a_file_that_is_kept) {
    const std::string data = folder.write("line.crd", "readings");
    TransformDialog dialog({}, 0, "", prompts, {{"the data file", data}});
    prompts.save_paths = {data};
    prompts.yes_no = {true};
    EXPECT_FALSE(dialog.save_file());
    EXPECT_EQ(folder.read("line.crd"), "readings");
    EXPECT_EQ(dialog.folder(), "");
    EXPECT_TRUE(prompts.told("The coordinate file " + data + " would be written over the data file"));
}

TEST_F(TransformDialogTest, size_and_folder_are_kept_in_their_section) {
    Settings settings;
    EXPECT_FALSE(stored_transform_form_size(settings));
    EXPECT_EQ(stored_transform_folder(settings), "");
    store_transform_form_size({7500, 7350}, settings);
    store_transform_folder(folder.folder() + "/", settings);
    EXPECT_EQ(settings.get("TLX2024", "DefinePointTransformFormSize"), "7500; 7350");
    EXPECT_EQ(settings.get("TLX2024", "DefinePointTransformCWD"), folder.folder() + "/");
    EXPECT_EQ(stored_transform_form_size(settings)->height, 7350);
    EXPECT_EQ(stored_transform_folder(settings), folder.folder() + "/");
    for (const char* bad : {"6279;7080", "6280;7079", "wide;high", ";", "7500"}) {
        settings.set("TLX2024", "DefinePointTransformFormSize", bad);
        EXPECT_FALSE(stored_transform_form_size(settings)) << bad;
    }
    store_transform_folder(folder.path("gone"), settings);
    EXPECT_EQ(stored_transform_folder(settings), "");
}

}  // namespace
}  // namespace anomalis::transform
