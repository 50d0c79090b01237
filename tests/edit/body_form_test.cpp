#include "edit/body_form.h"

#include <gtest/gtest.h>

#include "core/formulas.h"
#include "edit/body_sample.h"

namespace anomalis::edit {

TEST(BodyForm, a_current_body_is_one_of_the_list) {
    BodySample sample;
    EXPECT_EQ(current_body(sample.workbench), &sample.body(2));
    for (const int number : {0, -3, 4}) {
        sample.workbench.view.current_body = number;
        EXPECT_EQ(current_body(sample.workbench), nullptr);
    }
}

TEST(BodyForm, dip_turns_by_a_quarter_between_sheets_and_the_rest) {
    BodySample sample;
    ModelBody& body = sample.body(2);
    std::vector<float> dips;
    for (const auto type : {pipe, wire, pipe, thin_sheet, thick_sheet}) {
        sample.calm();
        EXPECT_TRUE(change_body_type(sample.workbench, type));
        EXPECT_EQ(sample.cleared(2), Cleared(true, true));
        EXPECT_TRUE(sample.changed());
        dips.push_back(body.dip.value);
    }
    // Between pipe and wire it gains a quarter each way.
    EXPECT_EQ(dips, (std::vector<float>{0, 90, 180, 270, 270}));
    EXPECT_EQ(body.type, thick_sheet);
}

TEST(BodyForm, the_numbers_of_a_sheet_stay_when_it_becomes_a_wire) {
    BodySample sample;
    change_body_type(sample.workbench, wire);
    EXPECT_EQ(sample.body(2).susc.value, 50000);
    EXPECT_EQ(sample.body(2).width.value, 100);
    EXPECT_EQ(sample.body(2).width.vary, 0);
}

TEST(BodyForm, a_type_changes_only_with_a_line_and_a_body) {
    BodySample sample;
    EXPECT_FALSE(change_body_type(sample.workbench, thick_sheet));
    sample.workbench.view.current_body = 0;
    EXPECT_FALSE(change_body_type(sample.workbench, pipe));
    sample.workbench.view.current_body = 2;
    drop_stations(sample.workspace());
    EXPECT_FALSE(change_body_type(sample.workbench, pipe));
    EXPECT_FALSE(sample.changed());
}

TEST(BodyForm, a_type_that_has_a_name_stays_when_a_body_is_put_in_order) {
    BodySample sample;
    for (const auto type : {edge, sloping_step, polygon, sphere, pipe, wire}) {
        sample.body(2).type = type;
        settle_body(sample.body(2));
        EXPECT_EQ(sample.body(2).type, type);
        EXPECT_EQ(grid_text(sample.workbench, row_type, grid_value), body_type_name(type));
    }
}

TEST(BodyForm, a_type_without_a_name_becomes_a_thin_sheet_and_that_is_no_step) {
    for (const int type : {0, -4, 7, 15, 18, 999}) {
        BodySample sample;
        sample.body(2).type = type;
        settle_body(sample.body(2));
        EXPECT_EQ(sample.body(2).type, thin_sheet);
        EXPECT_FALSE(sample.changed());
    }
}

TEST(BodyForm, marks_store_and_clear_what_hangs_on_them) {
    BodySample sample;
    EXPECT_TRUE(change_body_fixed(sample.workbench, true));
    EXPECT_EQ(sample.body(2).vary, 0);
    EXPECT_EQ(sample.cleared(2), Cleared(false, false));
    EXPECT_TRUE(sample.changed());
    EXPECT_FALSE(change_body_fixed(sample.workbench, true));
    EXPECT_TRUE(change_body_fixed(sample.workbench, false));
    EXPECT_EQ(sample.body(2).vary, 1);

    EXPECT_TRUE(change_body_turned_off(sample.workbench, true));
    EXPECT_EQ(sample.body(2).turned_off, 1);
    EXPECT_EQ(sample.cleared(2), Cleared(true, true));

    sample.calm();
    EXPECT_TRUE(change_body_demagnetisation(sample.workbench, true));
    EXPECT_EQ(sample.body(2).include_demagnetisation, 1);
    EXPECT_EQ(sample.cleared(2), Cleared(true, false));
    EXPECT_TRUE(sample.changed());
}

TEST(BodyForm, names_hold_one_line) {
    BodySample sample;
    EXPECT_TRUE(change_body_name(sample.workbench, "two\r\nlines"));
    EXPECT_EQ(sample.body(2).name, "two lines");
    const std::string cut("cut\0off", 7);
    EXPECT_TRUE(change_body_name(sample.workbench, cut));
    EXPECT_EQ(sample.body(2).name, "cut");
    sample.calm();
    EXPECT_FALSE(change_body_name(sample.workbench, "cut"));
    EXPECT_FALSE(sample.changed());
    EXPECT_TRUE(change_body_name(sample.workbench, std::string(10000, 'n')));
    EXPECT_TRUE(change_body_name(sample.workbench, ""));
}

TEST(BodyForm, colours_are_stored_once) {
    BodySample sample;
    EXPECT_TRUE(change_body_colour(sample.workbench, 0x102030));
    EXPECT_EQ(sample.body(2).colour, 0x102030);
    sample.calm();
    EXPECT_FALSE(change_body_colour(sample.workbench, 0x102030));
    EXPECT_FALSE(sample.changed());
}

TEST(BodyForm, nothing_happens_without_a_current_body) {
    BodySample sample;
    sample.workbench.view.current_body = 0;
    EXPECT_FALSE(change_body_fixed(sample.workbench, true));
    EXPECT_FALSE(change_body_turned_off(sample.workbench, true));
    EXPECT_FALSE(change_body_demagnetisation(sample.workbench, true));
    EXPECT_FALSE(change_body_name(sample.workbench, "x"));
    EXPECT_FALSE(change_body_colour(sample.workbench, 1));
    EXPECT_EQ(change_pipe_box(sample.workbench, PipeBox::sectors, "3"), BoxChange::refused);
    EXPECT_EQ(pipe_box_text(sample.workbench, PipeBox::sectors), "");
    EXPECT_FALSE(sample.changed());
}

TEST(BodyForm, the_shape_of_a_pipe_takes_numbers_from_0_on) {
    BodySample sample;
    sample.body(2).type = pipe;
    const auto set = [&](PipeBox box, std::string_view text) {
        return change_pipe_box(sample.workbench, box, text);
    };
    EXPECT_EQ(set(PipeBox::shell_thickness, "1.5"), BoxChange::stored);
    EXPECT_EQ(sample.body(2).shell_thickness, 1.5F);
    EXPECT_EQ(sample.cleared(2), Cleared(true, true));
    EXPECT_EQ(set(PipeBox::shell_thickness, "1.50"), BoxChange::unchanged);
    EXPECT_EQ(set(PipeBox::end_thickness, "0.25"), BoxChange::stored);
    EXPECT_EQ(set(PipeBox::max_triangle_size, "7"), BoxChange::stored);
    EXPECT_EQ(set(PipeBox::sectors, "16.5"), BoxChange::stored);
    EXPECT_EQ(sample.body(2).num_sectors, 16);
    EXPECT_EQ(set(PipeBox::segments, "0"), BoxChange::stored);
    EXPECT_EQ(pipe_box_text(sample.workbench, PipeBox::shell_thickness), "1.5");
    EXPECT_EQ(pipe_box_text(sample.workbench, PipeBox::sectors), "16");
    for (const auto box : {PipeBox::shell_thickness, PipeBox::sectors})
        for (const std::string& text :
             {std::string("-1"), std::string("abc"), std::string(), std::string("1e999"), std::string("1e39"),
              std::string("1\n2"), std::string(10000, '7')})
            EXPECT_EQ(set(box, text), BoxChange::refused) << text.substr(0, 10);
    EXPECT_EQ(set(PipeBox::segments, "3000000000"), BoxChange::refused);
}

TEST(BodyForm, the_tip_of_demagnetisation_tells_where_it_has_no_effect) {
    BodySample sample;
    const std::string without = "This body: without effect";
    const auto tells = [&] {
        return demagnetisation_tip(sample.workbench).find(without) != std::string::npos;
    };
    sample.body(2).length.value = 0;
    EXPECT_FALSE(tells());
    sample.body(2).length.value = 300;
    EXPECT_TRUE(tells());
    sample.body(2).type = pipe;
    EXPECT_FALSE(tells());
    sample.body(2).type = wire;
    EXPECT_TRUE(tells());
    sample.body(2).type = thick_sheet;
    sample.workspace().formulas = Formulas::exact;
    EXPECT_FALSE(tells());
    sample.body(2).type = polygon;
    EXPECT_TRUE(tells());
    sample.workbench.view.current_body = 0;
    EXPECT_FALSE(tells());
}

}  // namespace anomalis::edit
