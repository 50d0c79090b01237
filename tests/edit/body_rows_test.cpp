#include "edit/body_rows.h"

#include <gtest/gtest.h>

#include "core/body_parameters.h"
#include "core/failure.h"

namespace anomalis::edit {

namespace {

using Captions = std::vector<std::string>;

Captions captions(std::int32_t type) {
    Captions result;
    for (int row = 1; row <= body_row_count; ++row) result.emplace_back(body_row(type, row).caption);
    return result;
}

const Captions sheet_captions{"Body Type", "East",      "North",  "Distance", "Strike", "Dip",
                              "Top",       "Depth Ext", "Width",  "Length",   "Susc",   "Dens",
                              "Plunge",    "Slope",     "Offset", "Rem Q",    "Rem I",  "Rem D"};

}  // namespace

TEST(BodyRows, each_type_has_the_captions_of_its_kind) {
    EXPECT_EQ(captions(thin_sheet), sheet_captions);
    EXPECT_EQ(captions(thick_sheet), sheet_captions);
    EXPECT_EQ(captions(sphere), sheet_captions);
    EXPECT_EQ(captions(pipe),
              (Captions{"Body Type", "East", "North", "Distance", "Strike", "Dip", "Depth", "N/A", "Diameter",
                        "Length", "Susc", "Dens", "", "", "Offset", "Rem Q", "Rem I", "Rem D"}));
    EXPECT_EQ(captions(wire),
              (Captions{"Body Type", "East", "North", "Distance", "Strike", "Rotation", "Depth", "N/A",
                        "Diameter", "Length", "Current", "", "", "", "Separation", "", "", ""}));
}

TEST(BodyRows, a_row_without_a_caption_is_not_used) {
    EXPECT_FALSE(body_row(pipe, param_depth_extent).used);
    EXPECT_FALSE(body_row(pipe, param_plunge).used);
    EXPECT_FALSE(body_row(wire, param_density).used);
    EXPECT_TRUE(body_row(wire, param_offset).used);
    EXPECT_EQ(body_row_tip(wire, param_rem_d), "");
}

TEST(BodyRows, numbers_stand_in_the_format_of_their_row) {
    EXPECT_EQ(parameter_text(thick_sheet, param_distance, 1234.56F), "1234.6");
    EXPECT_EQ(parameter_text(thick_sheet, param_width, 12.345F), "12.35");
    EXPECT_EQ(parameter_text(thick_sheet, param_density, 2.67F), "2.670");
    EXPECT_EQ(parameter_text(thick_sheet, param_offset, 1.25F), "1.3");
    EXPECT_EQ(parameter_text(wire, param_offset, 1.25F), "1.250");
    EXPECT_EQ(body_row(wire, param_susc).unit, "mA");
    EXPECT_EQ(body_row(pipe, param_susc).unit, "µSI");
}

TEST(BodyRows, every_used_row_explains_itself) {
    for (const auto type : {thin_sheet, thick_sheet, sphere, pipe, wire})
        for (int row = 1; row <= body_row_count; ++row)
            EXPECT_EQ(body_row_tip(type, row).empty(), !body_row(type, row).used) << type << " " << row;
    EXPECT_EQ(body_row_tip(thick_sheet, param_strike), "The strike of the body\nDegrees, -360 to 360");
    EXPECT_EQ(body_row_tip(pipe, param_dip), "The dip of the body\nDegrees, -45 to 45");
    EXPECT_NE(body_row_tip(wire, row_type).find("density"), std::string::npos);
    EXPECT_NE(body_row_tip(wire, param_susc).find("keeps the number"), std::string::npos);
}

TEST(BodyRows, angles_have_ranges_and_lengths_a_bottom) {
    EXPECT_TRUE(value_range(thick_sheet, param_dip).holds(180));
    EXPECT_FALSE(value_range(thick_sheet, param_dip).holds(180.1));
    EXPECT_FALSE(value_range(thick_sheet, param_dip).holds(-1));
    EXPECT_TRUE(value_range(pipe, param_dip).holds(-45));
    EXPECT_TRUE(value_range(wire, param_dip).holds(180));
    EXPECT_FALSE(value_range(thick_sheet, param_plunge).holds(45.5));
    EXPECT_FALSE(value_range(thick_sheet, param_slope).holds(-80.5));
    for (const auto code : {param_width, param_depth_extent, param_length}) {
        EXPECT_TRUE(value_range(thick_sheet, code).holds(0));
        EXPECT_FALSE(value_range(thick_sheet, code).holds(-0.1));
    }
    EXPECT_TRUE(value_range(thick_sheet, param_susc).holds(-1e30));
}

TEST(BodyRows, a_row_beyond_the_grid_is_a_fault) {
    EXPECT_THROW(body_row(thick_sheet, 0), Fault);
    EXPECT_THROW(body_row(thick_sheet, 19), Fault);
}

}  // namespace anomalis::edit
