#include "edit/body_grid.h"

#include <gtest/gtest.h>
#include <limits>

#include "core/body_parameters.h"
#include "core/model_mark.h"
#include "core/numbers.h"
#include "edit/body_sample.h"
#include "edit/change.h"

namespace anomalis::edit {

namespace {

GridChange key(BodySample& sample, int row, std::string_view text, int column = grid_value) {
    return enter_grid_text(sample.workbench, row, column, text);
}

}  // namespace

TEST(BodyGrid, shows_the_current_body_and_follows_it) {
    BodySample sample;
    EXPECT_EQ(grid_text(sample.workbench, row_type, grid_value), "Thick Sheet");
    EXPECT_EQ(grid_text(sample.workbench, row_east, grid_value), "501200.0");
    EXPECT_EQ(grid_text(sample.workbench, row_north, grid_value), "7000000.0");
    EXPECT_EQ(grid_text(sample.workbench, param_distance, grid_value), "1200.0");
    EXPECT_EQ(grid_text(sample.workbench, param_width, grid_value), "100.00");
    EXPECT_EQ(grid_unit(sample.workbench, param_density), "g/cc");
    sample.workbench.view.current_body = 3;
    EXPECT_EQ(grid_text(sample.workbench, param_distance, grid_value), "1900.0");
}

TEST(BodyGrid, is_empty_without_a_current_body) {
    BodySample sample;
    for (const int number : {0, 4, -1, 1000}) {
        sample.workbench.view.current_body = number;
        for (int row = 1; row <= body_row_count; ++row) {
            for (int column = 0; column < grid_column_count; ++column) {
                EXPECT_EQ(grid_text(sample.workbench, row, column), "");
                EXPECT_FALSE(grid_editable(sample.workbench, row, column));
            }
            EXPECT_EQ(key(sample, row, "12"), GridChange::refused);
            EXPECT_FALSE(toggle_grid_vary(sample.workbench, row));
        }
    }
    EXPECT_FALSE(sample.changed());
}

TEST(BodyGrid, a_keyed_value_clears_only_what_hangs_on_it) {
    struct Case {
        int row;
        const char* text;
        Cleared cleared;
    };
    for (const Case& c : {Case{param_distance, "1300", {true, true}}, Case{param_top, "55", {true, true}},
                          Case{param_width, "80", {true, true}}, Case{param_depth_extent, "90", {true, true}},
                          Case{param_length, "70", {true, true}}, Case{param_offset, "12", {true, true}},
                          Case{param_strike, "30", {true, true}}, Case{param_dip, "60", {true, true}},
                          Case{param_plunge, "10", {true, true}}, Case{param_slope, "5", {true, true}},
                          Case{param_susc, "-70", {true, false}}, Case{param_rem_q, "-2", {true, false}},
                          Case{param_rem_i, "200", {true, false}}, Case{param_rem_d, "20", {true, false}},
                          Case{param_density, "2.9", {false, true}}}) {
        BodySample sample;
        EXPECT_EQ(key(sample, c.row, c.text), GridChange::stored) << c.row;
        EXPECT_EQ(sample.cleared(2), c.cleared) << c.row;
        EXPECT_EQ(sample.cleared(1), Cleared(false, false));
        EXPECT_EQ(body_param(sample.body(2), c.row).value, std::stof(c.text));
        EXPECT_TRUE(sample.changed() && sample.workbench.unsaved);
    }
}

TEST(BodyGrid, a_new_distance_moves_the_body_on_the_map) {
    BodySample sample;
    EXPECT_EQ(key(sample, param_distance, "1312.5"), GridChange::stored);
    EXPECT_DOUBLE_EQ(sample.body(2).east, 501312.5);
    EXPECT_EQ(grid_text(sample.workbench, row_east, grid_value), "501312.5");
    EXPECT_EQ(key(sample, param_distance, "-100"), GridChange::stored);
    EXPECT_DOUBLE_EQ(sample.body(2).east, 499900);
}

TEST(BodyGrid, values_out_of_range_are_dropped_without_a_message) {
    BodySample sample;
    struct Case {
        int row;
        const char* text;
    };
    for (const Case& c :
         {Case{param_strike, "360.1"}, Case{param_strike, "-361"}, Case{param_dip, "-1"},
          Case{param_dip, "181"}, Case{param_plunge, "46"}, Case{param_slope, "-81"}, Case{param_width, "-1"},
          Case{param_length, "-0.5"}, Case{param_depth_extent, "-3"}}) {
        const float before = body_param(sample.body(2), c.row).value;
        EXPECT_EQ(key(sample, c.row, c.text), GridChange::refused);
        EXPECT_EQ(body_param(sample.body(2), c.row).value, before);
    }
    EXPECT_FALSE(sample.changed());
    EXPECT_TRUE(sample.prompts.messages.empty());
    sample.body(2).type = pipe;
    EXPECT_EQ(key(sample, param_dip, "-45"), GridChange::stored);
    EXPECT_EQ(key(sample, param_dip, "46"), GridChange::refused);
}

TEST(BodyGrid, texts_that_are_no_number_are_refused) {
    BodySample sample;
    for (const std::string& text :
         {std::string("abc"), std::string(), std::string("   "), std::string("1e999"), std::string("1e39"),
          std::string("12\n13"), std::string("1,5"), std::string(10000, '9'), std::string(10000, 'x'),
          std::string("nan"), std::string("inf"), std::string("0x10")}) {
        for (const int row : {param_top, param_susc, param_density})
            EXPECT_EQ(key(sample, row, text), GridChange::refused) << text.substr(0, 20);
        if (!text.empty() && text != "   ") {
            EXPECT_EQ(key(sample, param_top, text, grid_min), GridChange::refused) << text.substr(0, 20);
        }
    }
    EXPECT_FALSE(sample.changed());
    EXPECT_EQ(sample.cleared(2), Cleared(false, false));
}

TEST(BodyGrid, a_value_near_the_stored_one_counts_as_none) {
    BodySample sample;
    EXPECT_EQ(key(sample, param_dip, "90.04"), GridChange::unchanged);
    EXPECT_EQ(key(sample, param_rem_i, "0.03"), GridChange::unchanged);
    EXPECT_EQ(key(sample, param_density, "2.6705"), GridChange::unchanged);
    EXPECT_EQ(key(sample, param_rem_q, "0.0009"), GridChange::unchanged);
    EXPECT_EQ(sample.body(2).dip.value, 90);
    EXPECT_FALSE(sample.changed());
    EXPECT_EQ(key(sample, param_dip, "90.06"), GridChange::stored);
    EXPECT_EQ(key(sample, param_density, "2.672"), GridChange::stored);
}

TEST(BodyGrid, any_difference_of_the_other_rows_is_stored) {
    BodySample sample;
    EXPECT_EQ(key(sample, param_distance, "1200.01"), GridChange::stored);
    EXPECT_EQ(key(sample, param_width, "100.005"), GridChange::stored);
    sample.calm();
    EXPECT_EQ(key(sample, param_width, "100.005"), GridChange::unchanged);
    EXPECT_FALSE(sample.changed());
}

TEST(BodyGrid, rows_that_the_type_has_not_take_nothing) {
    BodySample sample;
    sample.body(2).type = wire;
    for (const int row : {param_depth_extent, param_density, param_plunge, param_slope, param_rem_q,
                          param_rem_i, param_rem_d}) {
        EXPECT_EQ(grid_text(sample.workbench, row, grid_value), "");
        EXPECT_EQ(key(sample, row, "1"), GridChange::refused);
        EXPECT_EQ(key(sample, row, "1", grid_min), GridChange::refused);
        EXPECT_EQ(grid_vary_mark(sample.workbench, row), VaryMark::none);
        EXPECT_FALSE(toggle_grid_vary(sample.workbench, row));
    }
    for (const int row : {1, 2, 3}) {
        EXPECT_EQ(key(sample, row, "1"), GridChange::refused);
        EXPECT_FALSE(toggle_grid_vary(sample.workbench, row));
    }
    EXPECT_FALSE(sample.changed());
}

TEST(BodyGrid, marks_flip_and_are_kept) {
    BodySample sample;
    EXPECT_EQ(grid_vary_mark(sample.workbench, param_strike), VaryMark::fixed);
    EXPECT_TRUE(toggle_grid_vary(sample.workbench, param_strike));
    EXPECT_EQ(sample.body(2).strike.vary, 1);
    EXPECT_TRUE(sample.changed());
    EXPECT_TRUE(toggle_grid_vary(sample.workbench, param_strike));
    EXPECT_EQ(sample.body(2).strike.vary, 0);
    EXPECT_EQ(sample.cleared(2), Cleared(false, false));
}

TEST(BodyGrid, diameter_and_length_of_a_wire_never_vary) {
    BodySample sample;
    ModelBody& body = sample.body(2);
    body.type = wire;
    body.width.vary = 1;
    settle_body(body);
    EXPECT_EQ(body.width.vary, 0);
    for (const int row : {param_width, param_length}) {
        EXPECT_EQ(grid_vary_mark(sample.workbench, row), VaryMark::held);
        EXPECT_FALSE(toggle_grid_vary(sample.workbench, row));
        EXPECT_EQ(body_param(body, row).vary, 0);
    }
    EXPECT_TRUE(toggle_grid_vary(sample.workbench, param_offset));
}

TEST(BodyGrid, limits_are_numbers_or_blank) {
    BodySample sample;
    EXPECT_EQ(grid_text(sample.workbench, param_dip, grid_min), "");
    EXPECT_EQ(key(sample, param_dip, "30", grid_min), GridChange::stored);
    EXPECT_EQ(key(sample, param_dip, "150.25", grid_max), GridChange::stored);
    EXPECT_EQ(sample.body(2).dip.min, 30);
    EXPECT_EQ(grid_text(sample.workbench, param_dip, grid_min), "30");
    EXPECT_EQ(grid_text(sample.workbench, param_dip, grid_max), "150.25");
    EXPECT_EQ(key(sample, param_dip, "150.25", grid_max), GridChange::unchanged);
    EXPECT_EQ(key(sample, param_dip, "  ", grid_max), GridChange::stored);
    EXPECT_EQ(sample.body(2).dip.max, unset);
    EXPECT_EQ(key(sample, param_dip, "-99999", grid_min), GridChange::stored);
    EXPECT_EQ(sample.body(2).dip.min, unset);
    EXPECT_EQ(key(sample, param_dip, "-200000", grid_min), GridChange::unchanged);
    EXPECT_EQ(sample.cleared(2), Cleared(false, false));
    EXPECT_TRUE(sample.changed());
}

TEST(BodyGrid, crossed_limits_are_refused_with_a_message) {
    BodySample sample;
    EXPECT_EQ(key(sample, param_top, "50", grid_max), GridChange::stored);
    sample.calm();
    EXPECT_EQ(key(sample, param_top, "50.5", grid_min), GridChange::refused);
    EXPECT_EQ(sample.prompts.messages,
              std::vector<std::string>{"The lower limit must not be above the upper limit"});
    EXPECT_EQ(sample.body(2).top.min, unset);
    EXPECT_FALSE(sample.changed());
    EXPECT_EQ(key(sample, param_top, "50", grid_min), GridChange::stored);
    EXPECT_EQ(key(sample, param_top, "49", grid_max), GridChange::refused);
    EXPECT_EQ(sample.body(2).top.max, 50);
}

TEST(BodyGrid, the_editor_starts_with_all_digits) {
    BodySample sample;
    sample.body(2).distance.value = 1234.567F;
    EXPECT_EQ(grid_text(sample.workbench, param_distance, grid_value), "1234.6");
    EXPECT_EQ(grid_edit_text(sample.workbench, param_distance, grid_value), "1234.567");
    EXPECT_EQ(key(sample, param_distance, grid_edit_text(sample.workbench, param_distance, grid_value)),
              GridChange::unchanged);
}

TEST(BodyGrid, intervals_of_a_fit_stand_beside_the_values_while_the_model_is_as_fitted) {
    BodySample sample;
    Workspace& w = sample.workspace();
    const float dip = sample.body(2).dip.value;
    const double at = static_cast<double>(dip);
    FitRecord fit;
    fit.parameters = {
        {.body = 2, .param_code = param_dip, .value = dip, .lower = at - 0.31, .upper = at + 0.31},
        {.body = 2, .param_code = param_width, .upper = 140},
        {.body = 2, .param_code = param_top, .undetermined = true},
        {.body = 1, .param_code = param_susc, .lower = 1, .upper = 3}};
    fit.model_mark = model_mark(w);
    w.fit = fit;
    EXPECT_EQ(grid_error(sample.workbench, param_dip), "±0.31");
    EXPECT_EQ(grid_error(sample.workbench, param_width), "<140");
    EXPECT_EQ(grid_error(sample.workbench, param_top), "±?");
    EXPECT_EQ(grid_error(sample.workbench, param_susc), "");
    EXPECT_NE(grid_tip(sample.workbench, param_width, grid_value)
                  .find("90 % interval of the last fit: below 140 m"),
              std::string::npos);
    key(sample, param_dip, "70");
    EXPECT_EQ(grid_error(sample.workbench, param_dip), "");
    key(sample, param_dip, shortest_text(dip));
    EXPECT_EQ(grid_error(sample.workbench, param_dip), "±0.31") << "the model is as fitted again";
}

TEST(BodyGrid, a_susceptibility_is_shown_and_keyed_in_the_unit_of_choice_and_kept_in_micro_si) {
    BodySample sample;
    ModelBody& body = sample.body(2);
    body.susc = {51234.5F, 1, 100, unset};
    const auto text = [&](int column) { return grid_text(sample.workbench, param_susc, column); };
    EXPECT_EQ(text(grid_value), "51234.5");
    sample.session.preferences.susceptibility_unit = SusceptibilityUnit::si;
    EXPECT_EQ(text(grid_value), "0.0512345");
    EXPECT_EQ(text(grid_min), "0.0001");
    EXPECT_EQ(grid_unit(sample.workbench, param_susc), "SI");
    EXPECT_EQ(key(sample, param_susc, "0.02"), GridChange::stored);
    EXPECT_FLOAT_EQ(body.susc.value, 20000);
    EXPECT_EQ(key(sample, param_susc, "0.1", grid_max), GridChange::stored);
    EXPECT_FLOAT_EQ(body.susc.max, 100000);
    EXPECT_EQ(key(sample, param_susc, " ", grid_max), GridChange::stored);
    EXPECT_EQ(body.susc.max, unset);
    EXPECT_EQ(key(sample, param_susc, "1e35"), GridChange::refused) << "too large for the record";
    EXPECT_NE(grid_tip(sample.workbench, param_susc, grid_min).find("0.0001 SI"), std::string::npos);
    sample.session.preferences.susceptibility_unit = SusceptibilityUnit::cgs;
    body.susc.value = 50000;
    EXPECT_EQ(text(grid_value), "0.003978874");
    EXPECT_EQ(key(sample, param_susc, grid_edit_text(sample.workbench, param_susc, grid_value)),
              GridChange::unchanged)
        << "what the cell shows is what stands in the record";
    EXPECT_EQ(body.susc.value, 50000);
    body.type = wire;
    EXPECT_EQ(text(grid_value), "50000.0") << "a current has no such unit";
    EXPECT_EQ(grid_unit(sample.workbench, param_susc), "mA");
}

TEST(BodyGrid, tips_tell_the_whole_number_its_unit_and_the_burial_of_an_elevation) {
    BodySample sample;
    sample.workspace().surface_elevation = 100;
    sample.workspace().definition.dtm_column = 0;
    ModelBody& body = sample.body(2);
    body.top.value = 40;
    const auto tip = [&](int row) { return grid_tip(sample.workbench, row, grid_value); };
    EXPECT_NE(tip(param_distance).find("\n1200.0 m"), std::string::npos);
    for (const std::int32_t type : {thick_sheet, wire}) {
        body.type = type;
        EXPECT_NE(tip(param_top).find("An elevation"), std::string::npos);
        EXPECT_EQ(grid_note(sample.workbench, param_top, grid_property), "elev.");
        EXPECT_EQ(grid_note(sample.workbench, param_top, grid_value), "60.00 m deep");
        EXPECT_NE(tip(param_top).find("Burial depth 60.00 m: the ground above it less this"),
                  std::string::npos)
            << tip(param_top);
    }
    body.type = pipe;
    body.width.value = 10;
    EXPECT_NE(tip(param_top).find("Burial depth 55.00 m"), std::string::npos);
    EXPECT_EQ(tip(param_distance).find("Burial"), std::string::npos);
}

TEST(BodyGrid, values_are_keyed_without_a_line_too) {
    BodySample sample;
    drop_stations(sample.workspace());
    const double east = sample.body(2).east;
    EXPECT_EQ(key(sample, param_distance, "10"), GridChange::stored);
    EXPECT_EQ(sample.body(2).east, east);
    EXPECT_EQ(sample.body(2).distance.value, 10);
}

}  // namespace anomalis::edit
