#include <gtest/gtest.h>

#include "core/angles.h"
#include "workspace_file/axm_samples.h"

namespace anomalis::workspace_file {
namespace {

/// A file with the text given on line 12 and the body lines given, without a display block.
std::string file_with(const std::string& line_12, const std::vector<std::string>& bodies) {
    std::vector<std::string> lines = definition_lines();
    lines.push_back(line_12);
    append(lines, bodies);
    return joined(lines);
}

/// The lines of a body as the format `version` had them.
std::vector<std::string> old_body(int version) {
    std::vector<std::string> lines = body_lines();
    if (version < 6) lines[3] = " 100.5  1000  2000 -50  1 -500  500  0 -99999 -10 ";
    if (version < 4) lines.erase(lines.begin() + 7);
    if (version < 3) lines.erase(lines.begin() + 5, lines.begin() + 7);
    if (version < 2) lines.erase(lines.begin() + 1, lines.begin() + 3);
    return lines;
}

/// `told` is the number of texts about numbers that are none.
ModelBody read_one(const std::string& line_12, const std::vector<std::string>& body, Reading& r,
                   std::size_t told = 0) {
    EXPECT_EQ(r.read_text(file_with(line_12, body)), 0);
    EXPECT_EQ(r.prompts.messages.size(), told);
    EXPECT_EQ(r.workspace.body_count, 1);
    return r.workspace.body(1);
}

ModelBody read_one(const std::string& line_12, const std::vector<std::string>& body) {
    Reading r;
    return read_one(line_12, body, r);
}

TEST(AxmBody, every_item_of_format_7_is_taken) {
    const ModelBody body = read_one(" 1  7  500  0  0 ", body_lines());
    EXPECT_EQ(body.type, thick_sheet);
    EXPECT_EQ(body.include_demagnetisation, 0);
    EXPECT_EQ(body.vary, 1);
    EXPECT_EQ(body.colour, 255);
    EXPECT_EQ(body.name, "Sheet");
    EXPECT_EQ(body.description, "a description");
    EXPECT_EQ(body.rock_type, "dolerite");
    EXPECT_EQ(body.east, 1000);
    EXPECT_EQ(body.north, 2000);
    EXPECT_EQ(body.distance, (BodyParam{100.5F, 1, -500, 500}));
    EXPECT_EQ(body.top, (BodyParam{-50, 0, unset, -10}));
    EXPECT_EQ(body.strike, (BodyParam{10, 0, -20, 20}));
    EXPECT_EQ(body.dip, (BodyParam{60, 1, 5, 175}));
    EXPECT_EQ(body.width, (BodyParam{80, 1, 10, 900}));
    EXPECT_EQ(body.depth_extent, (BodyParam{250, 0, unset, unset}));
    EXPECT_EQ(body.length, (BodyParam{120, 1, 10, 1000}));
    EXPECT_EQ(body.offset, (BodyParam{5, 0, -50, 50}));
    EXPECT_EQ(body.plunge, (BodyParam{2, 0, -45, 45}));
    EXPECT_EQ(body.slope, (BodyParam{3, 1, -80, 80}));
    EXPECT_EQ(body.susc, (BodyParam{4000, 1, 100, 9000}));
    EXPECT_EQ(body.rem_q, (BodyParam{0.5F, 0, 0.001F, 9}));
    EXPECT_EQ(body.rem_i, (BodyParam{10, 0, -90, 90}));
    EXPECT_EQ(body.rem_d, (BodyParam{20, 0, -360, 360}));
    EXPECT_EQ(body.density, (BodyParam{2.7F, 1, -1, 4}));
    EXPECT_EQ(body.end_width_a, 80);
    EXPECT_EQ(body.end_width_b, 90);
    EXPECT_EQ(body.shell_thickness, 4);
    EXPECT_EQ(body.end_thickness, 3);
    EXPECT_EQ(body.num_sectors, 18);
    EXPECT_EQ(body.num_segments, 2);
    EXPECT_EQ(body.max_triangle_size, 15);
    EXPECT_EQ(body.last_calculated, -1.0F);
}

TEST(AxmBody, each_format_has_the_lines_of_its_time) {
    for (int version = 1; version <= 7; ++version) {
        SCOPED_TRACE(version);
        const ModelBody body = read_one(" 1  " + std::to_string(version) + "  500  0  0 ", old_body(version));
        EXPECT_EQ(body.name, "Sheet");
        EXPECT_EQ(body.description, version >= 2 ? "a description" : "");
        EXPECT_EQ(body.distance, (BodyParam{100.5F, 1, -500, 500}));
        EXPECT_EQ(body.num_sectors, version >= 6 ? 18 : 12);
        EXPECT_EQ(body.dip, (BodyParam{60, 1, 5, 175}));
        EXPECT_EQ(body.length,
                  version >= 3 ? (BodyParam{120, 1, 10, 1000}) : (BodyParam{250, 0, unset, unset}));
        EXPECT_EQ(body.offset, version >= 3 ? (BodyParam{5, 0, -50, 50}) : (BodyParam{0, 0, unset, unset}));
        EXPECT_EQ(body.slope.value, version >= 4 ? 3 : 0);
        EXPECT_EQ(body.susc.max, 9000);
        EXPECT_EQ(body.density.min, -1);
    }
}

TEST(AxmBody, format_0_has_bare_values_and_becomes_1_when_text_follows_the_type) {
    const std::vector<std::string> bare = {"16", " 100.5 1000 2000 -50", " 10 -60 80 250",
                                           " 4000 0.5 10 20 2.7"};
    Reading r;
    std::vector<std::string> bodies = bare;
    append(bodies, old_body(1));
    append(bodies, {" 16", " 1 2 3 4 1 5 6 1 7 8", " 1 2 3 4 1 5 6 1 7 8", " 1 2 3 4"});
    ASSERT_EQ(r.read_text(file_with(" 3 ", bodies)), 0);
    const ModelBody& plain = r.workspace.body(1);
    EXPECT_EQ(plain.type, pipe);
    EXPECT_EQ(plain.name, "survey Body 1");
    EXPECT_EQ(plain.colour, 0xFF0000);
    EXPECT_EQ(plain.distance, (BodyParam{100.5F, 1, unset, unset}));
    EXPECT_EQ(plain.dip, (BodyParam{-60, 1, unset, unset}));
    EXPECT_EQ(plain.density, (BodyParam{5.4F, 1, unset, unset}));
    EXPECT_EQ(r.workspace.body(2).name, "Sheet");
    EXPECT_EQ(r.workspace.body(2).distance.min, -500);
    // The third body has nothing behind its type, yet the file counts as format 1 since the second.
    EXPECT_EQ(r.workspace.body(3).distance, (BodyParam{1, 1, 5, 6}));
    EXPECT_EQ(r.workspace.body(3).include_demagnetisation, 0);
    EXPECT_EQ(r.workspace.body(3).name, "survey Body 3");
}

TEST(AxmBody, susceptibility_and_density_of_format_2_change_their_units) {
    const ModelBody body = read_one(" 1  2  500  0  0 ", old_body(2));
    EXPECT_FLOAT_EQ(body.susc.value, static_cast<float>(4000 * 4 * pi));
    EXPECT_FLOAT_EQ(body.density.value, 5.4F);
    EXPECT_EQ(body.susc.max, 9000) << "limits stay as they are";
    const ModelBody newer = read_one(" 1  3  500  0  0 ", old_body(3));
    EXPECT_EQ(newer.susc.value, 4000);
    EXPECT_EQ(newer.density.value, 2.7F);
}

TEST(AxmBody, the_remanence_of_a_sheet_up_to_format_6_becomes_a_ratio) {
    const ModelBody sheet = read_one(" 1  6  500  0  0 ", old_body(6));
    EXPECT_FLOAT_EQ(sheet.rem_q.value, 0.5F / 4000 / 56000);
    const ModelBody oldest = read_one(" 1  2  500  0  0 ", old_body(2));
    EXPECT_FLOAT_EQ(oldest.rem_q.value, static_cast<float>(0.5 / (4000 * 4 * pi) / 56000));
    std::vector<std::string> lines = old_body(6);
    lines[0] = " 16  0  1  255  0  Pipe";
    EXPECT_EQ(read_one(" 1  6  500  0  0 ", lines).rem_q.value, 0.5F);
    EXPECT_EQ(read_one(" 1  7  500  0  0 ", body_lines()).rem_q.value, 0.5F);
}

TEST(AxmBody, a_remanence_that_cannot_be_converted_is_0) {
    std::vector<std::string> lines = old_body(6);
    lines.back() = " 0  0.5  10  20  1  100  9000  0  0.001  9  0 -90  90  0 -360  360  2.7  1 -1  4 ";
    EXPECT_EQ(read_one(" 1  6  500  0  0 ", lines).rem_q.value, 0);
    Reading r;
    r.workspace.field.intensity = 0;
    ASSERT_EQ(r.read_text(file_with(" 1  6  500  0  0 ", old_body(6)), 3), 0);
    EXPECT_EQ(r.workspace.body(1).rem_q.value, 0);
}

TEST(AxmBody, a_negative_dip_of_a_sheet_loses_its_sign_in_every_format) {
    std::vector<std::string> lines = body_lines();
    lines[4] = " 10 -60  80  250  0 -20  20  1  5  175  1  10  900  0 -99999 -99999 ";
    EXPECT_EQ(read_one(" 1  7  500  0  0 ", lines).dip.value, 60);
    lines[0] = " 16  0  1  255  0  Pipe";
    EXPECT_EQ(read_one(" 1  7  500  0  0 ", lines).dip.value, -60);
}

TEST(AxmBody, a_body_that_was_switched_off_comes_back_on) {
    std::vector<std::string> lines = body_lines();
    lines[0] = " 2  1  0  255  1  Sheet two";
    const ModelBody body = read_one(" 1  7  500  0  0 ", lines);
    EXPECT_EQ(body.turned_off, 0);
    EXPECT_EQ(body.include_demagnetisation, 1);
    EXPECT_EQ(body.vary, 0);
    EXPECT_EQ(body.name, "Sheet two");
}

TEST(AxmBody, names_keep_blanks_and_lose_a_leading_switch_only) {
    const auto name_of = [](const std::string& behind_colour,
                            const std::string& line_12 = " 1  7  500  0  0 ") {
        std::vector<std::string> lines = line_12 == " 1 " ? old_body(1) : body_lines();
        lines[0] = " 2  0  1  255" + behind_colour;
        return read_one(line_12, lines).name;
    };
    EXPECT_EQ(name_of("  0  Smith's dyke, east (2)"), "Smith's dyke, east (2)");
    EXPECT_EQ(name_of("  0  1"), "1");
    EXPECT_EQ(name_of("  0  "), "");
    EXPECT_EQ(name_of(" no switch"), "no switch");
    EXPECT_EQ(name_of(" 10 Mile pipe", " 1 "), "Mile pipe");
    EXPECT_EQ(name_of(" 0 zero", " 1 "), "zero");
    EXPECT_EQ(name_of("  0  \"quoted\" name"), "\"quoted\" name");
    EXPECT_EQ(name_of("  0  'apostrophes'"), "'apostrophes'");
    EXPECT_EQ(name_of("  1  , comma"), ", comma");
    EXPECT_EQ(name_of("  0"), "");
    EXPECT_EQ(name_of("  0,old"), "old");
}

TEST(AxmBody, without_a_colour_the_default_name_stays) {
    std::vector<std::string> lines = body_lines();
    lines[0] = " 2  1  0";
    const ModelBody body = read_one(" 1  7  500  0  0 ", lines);
    EXPECT_EQ(body.name, "survey Body 1");
    EXPECT_EQ(body.colour, 0xFF0000);
    EXPECT_EQ(body.include_demagnetisation, 1);
    EXPECT_EQ(body.vary, 0);
}

TEST(AxmBody, unreadable_susceptibility_and_density_take_their_defaults) {
    std::vector<std::string> lines = body_lines();
    lines.back() = " *  0  0  0  1  5  6  0 7 8  0 9 10  0 11 12 none 1 -1 3";
    Reading r;
    const ModelBody body = read_one(" 1  7  500  0  0 ", lines, r, 2);
    EXPECT_TRUE(r.prompts.told("\"*\" is no number; 50000 was taken"));
    EXPECT_TRUE(r.prompts.told("\"none\" is no number; 2.67 was taken"));
    EXPECT_EQ(body.susc, (BodyParam{50000, 1, 5, 6}));
    EXPECT_EQ(body.density, (BodyParam{2.67F, 1, -1, 3}));
}

TEST(AxmBody, a_missing_density_is_the_default_and_doubles_in_old_files) {
    std::vector<std::string> lines = old_body(2);
    lines.back() = " 4000  0.5  10  20  1  100  9000  0  0.001  9  0 -90  90  0 -360  360";
    const ModelBody old = read_one(" 1  2  500  0  0 ", lines);
    EXPECT_FLOAT_EQ(old.density.value, 5.34F);
    EXPECT_EQ(old.density.vary, 1);
    lines = body_lines();
    lines.back() = " 4000";
    Reading r;
    const ModelBody body = read_one(" 1  7  500  0  0 ", lines, r, 1);
    EXPECT_TRUE(r.prompts.told("line 21: a number is missing; 0 was taken (15 times)"));
    EXPECT_EQ(body.density.value, 2.67F);
    EXPECT_EQ(body.rem_q, (BodyParam{0, 0, 0, 0})) << "missing numbers are 0";
}

TEST(AxmBody, the_last_items_of_the_position_are_read_one_by_one) {
    std::vector<std::string> lines = body_lines();
    lines[3] = " 100.5  1000  2000 -50  1 -500  500  0 -99999 -10  80  90  4 ";
    const ModelBody body = read_one(" 1  7  500  0  0 ", lines);
    EXPECT_EQ(body.end_width_b, 90);
    EXPECT_EQ(body.shell_thickness, 4);
    EXPECT_EQ(body.end_thickness, 0);
    EXPECT_EQ(body.num_sectors, 12);
}

TEST(AxmBody, the_slope_is_read_only_while_text_is_left) {
    std::vector<std::string> lines = body_lines();
    lines[7] = " 2  0 -45  45 ";
    const ModelBody body = read_one(" 1  4  500  0  0 ", lines);
    EXPECT_EQ(body.plunge, (BodyParam{2, 0, -45, 45}));
    EXPECT_EQ(body.slope, (BodyParam{0, 0, unset, unset}));
}

TEST(AxmBody, the_type_of_the_file_stands_above_the_settings) {
    Reading r;
    r.settings.set(settings_section, "Type", "17");
    r.settings.set(settings_section, "StrikeLength", "777");
    const ModelBody body = read_one(" 1  2  500  0  0 ", old_body(2), r);
    EXPECT_EQ(body.type, thick_sheet);
    EXPECT_EQ(body.length.value, 777) << "what the old file lacks comes from the settings";
}

TEST(AxmBody, nothing_of_a_former_body_in_the_slot_is_left) {
    Reading r;
    r.workspace.body(1).length.vary = 1;
    r.workspace.body(1).solid.points.resize(3);
    r.workspace.body(1).mag_response_valid = true;
    const ModelBody body = read_one(" 1  2  500  0  0 ", old_body(2), r);
    EXPECT_EQ(body.length.vary, 0);
    EXPECT_TRUE(body.solid.points.empty());
    EXPECT_FALSE(body.mag_response_valid);
}

}  // namespace
}  // namespace anomalis::workspace_file
