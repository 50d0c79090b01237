#include <cmath>
#include <gtest/gtest.h>

#include "core/faults.h"
#include "forward/shape/body_solid.h"
#include "output/dxf.h"
#include "output/dxf_samples.h"
#include "support/child_process.h"

namespace anomalis::output {
namespace {

class BodyDxf : public ::testing::Test {
  protected:
    std::string drawing() {
        EXPECT_EQ(write_body_dxf(folder.path("bodies.dxf"), workspace, prompts), status) << "status";
        return folder.read("bodies.dxf");
    }

    TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace = dxf_workspace();
    int status = 0;
};

TEST_F(BodyDxf, a_drawing_without_bodies_is_head_and_tail) {
    EXPECT_EQ(drawing(),
              "  0\r\nSECTION\r\n  2\r\nHEADER\r\n"
              "  9\r\n$EXTMIN\r\n 10\r\n 800 \r\n 20\r\n 1800 \r\n"
              "  9\r\n$EXTMAX\r\n 10\r\n 1200 \r\n 20\r\n 2200 \r\n"
              "  0\r\nENDSEC\r\n  0\r\nSECTION\r\n  2\r\nENTITIES\r\n"
              "  0\r\nENDSEC\r\n  0\r\nEOF\r\n");
}

TEST_F(BodyDxf, the_extents_become_a_square_about_the_longer_side) {
    workspace.x_min = 10, workspace.x_max = 11;
    workspace.y_min = 100, workspace.y_max = 104;
    EXPECT_NE(drawing().find(" 10\r\n 8.5 \r\n 20\r\n 100 \r\n"), std::string::npos);
    EXPECT_NE(drawing().find(" 10\r\n 12.5 \r\n 20\r\n 104 \r\n"), std::string::npos);
    workspace.x_max = 14;
    EXPECT_NE(drawing().find(" 10\r\n 10 \r\n 20\r\n 100 \r\n"), std::string::npos) << "a square stays";
    EXPECT_NE(drawing().find(" 10\r\n 14 \r\n 20\r\n 104 \r\n"), std::string::npos);
}

TEST_F(BodyDxf, without_a_line_the_extents_are_those_of_nothing) {
    Workspace fresh;
    initialise_workspace(fresh, prompts);
    workspace = fresh;
    EXPECT_NE(drawing().find(" 10\r\n 1E+32 \r\n 20\r\n 1E+32 \r\n"), std::string::npos);
    EXPECT_NE(drawing().find(" 10\r\n-1E+32 \r\n 20\r\n-1E+32 \r\n"), std::string::npos);
}

TEST_F(BodyDxf, a_sheet_is_a_box_of_six_faces) {
    add_dxf_body(workspace, thick_sheet, "Dyke  ");
    const std::string text = drawing();
    // Strike 0 and dip 90: the box reaches 50 m to both sides in north, 20 m in east, 50 m down.
    const std::string first_face =
        "  0\r\n3DFACE\r\n  8\r\nDyke  \r\n  62\r\n  1\r\n"
        "  10\r\n 1000 \r\n  20\r\n 2050 \r\n  30\r\n-60 \r\n"
        "  11\r\n 1000 \r\n  21\r\n 1950 \r\n  31\r\n-60 \r\n"
        "  12\r\n 1020 \r\n  22\r\n 1950 \r\n  32\r\n-60 \r\n"
        "  13\r\n 1020 \r\n  23\r\n 2050 \r\n  33\r\n-60 \r\n";
    const std::string second_face =
        "  0\r\n3DFACE\r\n  8\r\nDyke  \r\n  62\r\n  1\r\n"
        "  10\r\n 1020 \r\n  20\r\n 2050 \r\n  30\r\n-10 \r\n"
        "  11\r\n 1020 \r\n  21\r\n 1950 \r\n  31\r\n-10 \r\n"
        "  12\r\n 1000 \r\n  22\r\n 1950 \r\n  32\r\n-10 \r\n"
        "  13\r\n 1000 \r\n  23\r\n 2050 \r\n  33\r\n-10 \r\n";
    EXPECT_NE(text.find("ENTITIES\r\n" + first_face + second_face), std::string::npos) << text;
    const DxfPairs pairs(text);
    EXPECT_TRUE(pairs.whole);
    EXPECT_EQ(pairs.places("3DFACE").size(), 6U);
}

/// The faces as corners (east, north, up), read from the text.
std::vector<std::array<Point3, 4>> faces_of(const DxfPairs& pairs) {
    std::vector<std::array<Point3, 4>> faces;
    for (const std::size_t at : pairs.places("3DFACE")) {
        std::array<Point3, 4> corners;
        for (std::size_t i = 0; i < 4; ++i) {
            const std::size_t corner = at + 3 + 3 * i;
            corners[i] = {pairs.number(corner), pairs.number(corner + 1), pairs.number(corner + 2)};
        }
        faces.push_back(corners);
    }
    return faces;
}

/// Volume inside the faces by the divergence theorem, each cut into two triangles.
double volume_of(const std::vector<std::array<Point3, 4>>& faces, const Point3& origin) {
    const auto from = [&](const Point3& p) { return Point3{p.x - origin.x, p.y - origin.y, p.z - origin.z}; };
    double sum = 0;
    for (const auto& face : faces) {
        for (const std::size_t i : {1U, 2U}) {
            const Point3 a = from(face[0]), b = from(face[i]), c = from(face[i + 1]);
            sum +=
                a.x * (b.y * c.z - b.z * c.y) + a.y * (b.z * c.x - b.x * c.z) + a.z * (b.x * c.y - b.y * c.x);
        }
    }
    return std::abs(sum) / 6;
}

TEST_F(BodyDxf, the_faces_enclose_the_volume_of_the_body) {
    add_dxf_body(workspace, thick_sheet, "box");
    EXPECT_NEAR(volume_of(faces_of(DxfPairs(drawing())), {1000, 2000, -10}), 100.0 * 20 * 50, 1);
    workspace.body_count = 0;
    ModelBody& cylinder = add_dxf_body(workspace, pipe, "pipe");
    cylinder.num_sectors = 24;
    // A prism of 24 sides in a circle whose diameter is half the width; corners are printed to the
    // centimetre.
    const double area = 24 / 2.0 * 5 * 5 * std::sin(2 * 3.14159265358979 / 24);
    EXPECT_NEAR(volume_of(faces_of(DxfPairs(drawing())), {1000, 2000, -10}), area * 100, 0.01 * area * 100);
}

TEST_F(BodyDxf, with_the_exact_formulas_a_pipe_is_as_thick_as_they_calculate_it) {
    workspace.formulas = Formulas::exact;
    ModelBody& body = add_dxf_body(workspace, pipe, "pipe");
    body.dip.value = 30;
    body.offset.value = 40;
    const auto faces = faces_of(DxfPairs(drawing()));
    ASSERT_FALSE(faces.empty());
    // Its ring has the area of its circle.
    const double area = 3.14159265358979 * 10 * 10;
    EXPECT_NEAR(volume_of(faces, {1000, 2000, -10}), area * 100, 0.01 * area * 100);
    Point3 middle;
    for (const auto& face : faces)
        for (const Point3& corner : face) middle = {0, middle.y + corner.y, middle.z + corner.z};
    const double corners = 4.0 * static_cast<double>(faces.size());
    EXPECT_NEAR(middle.y / corners, 2000 + 40 * std::cos(3.14159265358979 / 6), 1);
    EXPECT_NEAR(middle.z / corners, -10 - 40 * std::sin(3.14159265358979 / 6), 1);
}

TEST_F(BodyDxf, a_pipe_is_the_triangles_of_its_solid) {
    ModelBody& body = add_dxf_body(workspace, pipe, "Pipe");
    const std::string text = drawing();
    const DxfPairs pairs(text);
    EXPECT_TRUE(pairs.whole);
    EXPECT_TRUE(body.solid.facets.empty()) << "a drawing leaves the model as it is";
    Faults faults;
    ASSERT_EQ(forward::setup_cylinder_body(body, body.solid, faults), 0);
    ASSERT_EQ(pairs.places("3DFACE").size(), body.solid.facets.size());
    ASSERT_EQ(body.solid.facets.size(), 48U);
    const std::size_t first = pairs.places("3DFACE").front();
    const std::vector<std::string> codes(pairs.codes.begin() + static_cast<std::ptrdiff_t>(first),
                                         pairs.codes.begin() + static_cast<std::ptrdiff_t>(first) + 15);
    EXPECT_EQ(codes, (std::vector<std::string>{"  0", "  8", "  62", " 10", " 20", " 30", " 11", " 21", " 31",
                                               " 12", " 22", " 32", " 13", " 23", " 33"}));
    for (std::size_t i = 0; i < body.solid.facets.size(); ++i) {
        const std::size_t at = pairs.places("3DFACE")[i];
        for (std::size_t corner = 0; corner < 4; ++corner) {
            const auto number =
                static_cast<std::size_t>(body.solid.facets[i][std::min<std::size_t>(corner, 2)]);
            const Point3& point = body.solid.transformed_points[number];
            EXPECT_EQ(pairs.values[at + 3 + 3 * corner], format_number(point.x, "0.00"));
            EXPECT_EQ(pairs.values[at + 4 + 3 * corner], format_number(point.y, "0.00"));
            EXPECT_EQ(pairs.values[at + 5 + 3 * corner], format_number(point.z, "0.00"));
        }
    }
}

TEST_F(BodyDxf, a_pipe_that_cannot_be_built_is_left_out_and_the_rest_is_drawn) {
    add_dxf_body(workspace, pipe, "too fine").num_sectors = 2'000'000;
    add_dxf_body(workspace, pipe, "filled by its wall").shell_thickness = 30;
    add_dxf_body(workspace, pipe, "good");
    const std::string text = drawing();
    EXPECT_EQ(DxfPairs(text).places("3DFACE").size(), 48U);
    EXPECT_EQ(text.find("too fine"), std::string::npos);
    EXPECT_NE(text.find("\r\ngood\r\n"), std::string::npos);
    EXPECT_EQ(prompts.messages.size(), 1U);
    EXPECT_TRUE(prompts.told("An error occurred while setting up the cylinder body: "));
}

TEST_F(BodyDxf, a_sheet_that_cannot_be_formed_is_left_out_and_the_rest_is_drawn) {
    ModelBody& flat = add_dxf_body(workspace, thick_sheet, "flat");
    flat.dip.value = 0;
    flat.slope.value = 10;
    add_dxf_body(workspace, thin_sheet, "good");
    const std::string text = drawing();
    EXPECT_EQ(DxfPairs(text).places("3DFACE").size(), 6U);
    EXPECT_EQ(text.find("flat"), std::string::npos);
    EXPECT_TRUE(prompts.told("An error occurred while converting the body: Division by zero"));
}

TEST_F(BodyDxf, every_type_is_a_box_or_a_solid_and_switched_off_bodies_are_drawn) {
    for (const std::int32_t type : {-3, 0, 1, 2, 3, 4, 5, 6, 7, 15})
        add_dxf_body(workspace, type, "box").turned_off = 1;
    add_dxf_body(workspace, wire, "solid");
    add_dxf_body(workspace, 18, "solid");
    EXPECT_EQ(DxfPairs(drawing()).places("3DFACE").size(), 10U * 6 + 2 * 48);
}

TEST_F(BodyDxf, a_line_break_in_a_name_does_not_shift_the_lines) {
    add_dxf_body(workspace, thin_sheet, "two\r\nlines");
    add_dxf_body(workspace, thin_sheet,
                 "\xC3\x9C"
                 "berdeckung, \"alt\"");
    const DxfPairs pairs(drawing());
    EXPECT_TRUE(pairs.whole);
    EXPECT_EQ(pairs.places("two lines").size(), 6U);
    EXPECT_EQ(pairs
                  .places("\xC3\x9C"
                          "berdeckung, \"alt\"")
                  .size(),
              6U);
}

TEST_F(BodyDxf, what_was_drawn_before_a_failure_stays) {
    add_dxf_body(workspace, thin_sheet, "good");
    add_dxf_body(workspace, thin_sheet, "beyond every single").east = 1e300;
    add_dxf_body(workspace, thin_sheet, "after");
    status = -1;
    const std::string text = drawing();
    EXPECT_EQ(DxfPairs(text).places("3DFACE").size(), 6U);
    EXPECT_FALSE(text.ends_with("EOF\r\n"));
    EXPECT_EQ(prompts.messages,
              std::vector<std::string>{"An error occurred while exporting the 3D DXF: Overflow"});
}

TEST_F(BodyDxf, a_full_disk_leaves_the_old_drawing) {
    add_dxf_body(workspace, pipe, "Pipe");
    const std::string before = drawing();
    workspace.body(1).num_sectors = 200;
    EXPECT_EQ(run_in_child([&] {
                  limit_file_size(20'000);
                  const int result = write_body_dxf(folder.path("bodies.dxf"), workspace, prompts);
                  return result == -1 &&
                                 prompts.told("An error occurred while exporting the 3D DXF: File too large")
                             ? 0
                             : 1;
              }),
              0);
    EXPECT_EQ(folder.read("bodies.dxf"), before);
    EXPECT_EQ(folder.entries(), 1);
}

TEST_F(BodyDxf, two_drawings_of_one_model_are_the_same_bytes) {
    add_dxf_body(workspace, pipe, "Pipe").dip.value = 63;
    add_dxf_body(workspace, thick_sheet, "Sheet").strike.value = 33;
    const std::string first = drawing();
    EXPECT_EQ(drawing(), first);
}

}  // namespace
}  // namespace anomalis::output
