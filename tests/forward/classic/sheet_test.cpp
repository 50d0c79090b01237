#include "forward/classic/sheet.h"

#include <cmath>
#include <gtest/gtest.h>

#include "forward/classic/field_coefficients.h"
#include "forward/classic/sheet_kernel.h"
#include "forward/line.h"

namespace anomalis::forward {

namespace {

/// The formulae station by station, for a strike that meets the profile either way.
struct Formula {
    double p, q, w, d, b, sense;

    Formula(const Workspace& workspace, const ModelBody& body)
        : w(body.width.value), d(body.depth_extent.value), b(0), sense(1) {
        const double sine = strike_against_profile(body, workspace.azimuth);
        const ShapeTerms terms = shape_terms(body, sine);
        p = terms.p;
        q = terms.q;
        if (d > 0 && std::abs(body.sin_dip) > 0.001) b = body.cos_dip * d / body.sin_dip;
        if (sine < 0) {
            w = -w;
            b = -b;
            sense = -1;
        }
    }

    double thin(double x, double h, double width) const {
        const double u = sense * x - w / 2;
        double t = (p * width * u + q * width * h) / (u * u + h * h);
        if (d > 0) t -= (p * width * (u - b) + q * width * (h + d)) / ((u - b) * (u - b) + (h + d) * (h + d));
        return t;
    }

    double thick(double x, double h, double sin_dip) const {
        const double c = sense * x - (sense < 0 ? w : std::abs(w)) / 2;
        const double half = sense < 0 ? std::abs(w) / 2 : w / 2;
        const auto level = [&](double shift, double down) {
            const double u1 = (half + c - shift) / down, u2 = (c - half - shift) / down;
            return sin_dip * p / 2 * std::log((u1 * u1 + 1) / (u2 * u2 + 1)) +
                   sin_dip * q * (std::atan(u1) - std::atan(u2));
        };
        return level(0, h) - (d > 0 ? level(b, h + d) : 0);
    }
};

/// x of station i across the strike of body 1.
double across(const Line& line, int i) {
    const ModelBody& body = line.workspace.body(1);
    return body.cos_strike * (line.workspace.stations(i, column_east) - body.east) -
           body.sin_strike * (line.workspace.stations(i, column_north) - body.north);
}

struct Sheet {
    double strike, dip, width, depth, top;
};

const Sheet sheets[] = {{90, 90, 100, 250, 0},  {-90, 90, 100, 250, 0}, {70, 35, 40, 0, 20},
                        {250, 35, 40, 0, 20},   {90, 120, 5, 80, -50},  {-60, 150, 700, 30, 90},
                        {90, 0, 100, 100, 0},   {90, 180, 100, 100, 0}, {-90, 180, 100, 0, 0},
                        {40, 60, -80, 200, 10}, {220, 60, -80, 200, 10}};

}  // namespace

TEST(ThinSheet, is_a_line_of_poles_at_each_end) {
    for (const Sheet& sheet : sheets) {
        Line line(101);
        ModelBody& body = line.add(thin_sheet, 437, sheet.strike);
        body.dip.value = static_cast<float>(sheet.dip);
        body.width.value = static_cast<float>(sheet.width);
        body.depth_extent.value = static_cast<float>(sheet.depth);
        body.top.value = static_cast<float>(sheet.top);
        const std::vector<double> curve = line.response();
        const Formula formula(line.workspace, body);
        for (int i = 1; i <= 101; ++i)
            EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)],
                        formula.thin(across(line, i), 100 - sheet.top, sheet.width), 1e-6 * peak_of(curve))
                << "strike " << sheet.strike << " dip " << sheet.dip << " station " << i;
        EXPECT_GT(peak_of(curve), 0.01);
    }
}

TEST(ThickSheet, is_a_logarithm_and_an_angle_at_each_level) {
    for (const Sheet& sheet : sheets) {
        for (const BodyType type : {thick_sheet, pipe}) {
            Line line(101);
            ModelBody& body = line.add(type, 437, sheet.strike);
            body.dip.value = static_cast<float>(sheet.dip);
            body.width.value = static_cast<float>(sheet.width);
            body.depth_extent.value = static_cast<float>(sheet.depth);
            body.top.value = static_cast<float>(sheet.top);
            body.length.value = 0;
            line.workspace.definition.grav_column = 0;
            const std::vector<double> curve = line.response();
            const Formula formula(line.workspace, body);
            for (int i = 1; i <= 101; ++i)
                EXPECT_NEAR(curve[static_cast<std::size_t>(i - 1)],
                            formula.thick(across(line, i), 100 - sheet.top, body.sin_dip),
                            1e-6 * peak_of(curve) + 1e-9)
                    << "strike " << sheet.strike << " dip " << sheet.dip << " station " << i;
        }
    }
}

// The field stands upright, so that nothing but the geometry can tell the two sides apart.
TEST(ThickSheet, reversing_the_strike_mirrors_the_body) {
    for (const BodyType type : {thin_sheet, thick_sheet}) {
        Line line(101);
        line.workspace.field.inclination = 90;
        ModelBody& body = line.add(type, 500, 90);
        body.length.value = 0;
        body.dip.value = 40;
        const std::vector<double> curve = line.response();
        body.strike.value = -90;
        const std::vector<double> mirrored = line.response();
        EXPECT_LT(largest_difference(curve, reversed(mirrored)), 2e-4 * peak_of(curve));
        EXPECT_GT(largest_difference(curve, mirrored), 0.1 * peak_of(curve)) << "the body is lopsided";
    }
}

TEST(ThickSheet, moves_with_its_distance) {
    for (const BodyType type : {thin_sheet, thick_sheet}) {
        Line line(101);
        ModelBody& body = line.add(type, 500, 75);
        body.length.value = 0;
        body.dip.value = 60;
        std::vector<double> curve = line.response();
        body.distance.value = 520;
        std::vector<double> moved = line.response();
        curve.resize(99);
        moved.erase(moved.begin(), moved.begin() + 2);
        EXPECT_LT(largest_difference(curve, moved), 1e-5 * peak_of(curve));
    }
}

TEST(ThickSheet, of_little_width_is_a_thin_one) {
    Line line(101);
    ModelBody& body = line.add(thick_sheet, 500, 90);
    body.length.value = 0;
    body.width.value = 1;
    body.dip.value = 90;
    const std::vector<double> thick = line.response();
    body.type = thin_sheet;
    EXPECT_LT(largest_difference(thick, line.response()), 1e-3 * peak_of(thick));
}

TEST(ThickSheet, cut_in_two_across_and_in_depth_adds_up) {
    Line whole(101), parts(101);
    const auto piece = [](Line& line, double distance, double top, double width, double depth) {
        ModelBody& body = line.add(thick_sheet, distance, -90);
        body.length.value = 0;
        body.top.value = static_cast<float>(top);
        body.width.value = static_cast<float>(width);
        body.depth_extent.value = static_cast<float>(depth);
    };
    // For this strike the sheet reaches forward along the profile.
    piece(whole, 403.25, 0, 100, 200);
    piece(parts, 403.25, 0, 30, 200);
    piece(parts, 433.25, 0, 70, 150);
    piece(parts, 433.25, -150, 70, 50);
    whole.calculate();
    parts.calculate();
    for (int i = 1; i <= 101; ++i) {
        EXPECT_NEAR(whole.workspace.mag.data(i, row_raw, stage_calculated),
                    parts.workspace.mag.data(i, row_raw, stage_calculated), 0.01);
        EXPECT_NEAR(whole.workspace.grav.data(i, row_raw, stage_calculated),
                    parts.workspace.grav.data(i, row_raw, stage_calculated), 1e-4);
    }
}

TEST(ThickSheet, a_station_at_or_under_the_top_stands_a_tenth_of_a_metre_above_it) {
    Line line(21);
    ModelBody& body = line.add(thick_sheet, 104, 90);
    body.length.value = 0;
    body.top.value = 99.9F;
    const std::vector<double> above = line.response();
    for (const float top : {100.0F, 130.0F}) {
        body.top.value = top;
        EXPECT_LT(largest_difference(above, line.response()), 1e-3 * peak_of(above)) << top;
    }
}

TEST(ThickSheet, takes_the_sign_of_its_susceptibility) {
    for (const BodyType type : {thin_sheet, thick_sheet, edge, sloping_step, sphere}) {
        Line line(51);
        ModelBody& body = line.add(type, 200);
        body.length.value = 0;
        line.calculate();  // a sphere takes its strike now
        const std::vector<double> curve = line.response();
        body.susc.value = -body.susc.value;
        EXPECT_LT(largest_difference(curve, times(line.response(), -1)), 1e-6 * peak_of(curve));
        EXPECT_GT(peak_of(curve), 0.01);
    }
}

TEST(ThinSheet, without_a_depth_extent_has_no_lower_end) {
    Line line(51);
    ModelBody& body = line.add(thin_sheet, 200);
    body.depth_extent.value = 1e7F;
    const std::vector<double> deep = line.response();
    body.depth_extent.value = 0;
    EXPECT_LT(largest_difference(deep, line.response()), 1e-3 * peak_of(deep));
}

TEST(SheetKernel, gives_the_same_bits_at_every_vector_level) {
    Line line(1001, 3);
    ModelBody& body = line.add(thick_sheet, 1300, 80);
    body.length.value = 0;
    body.dip.value = 55;
    line.calculate();
    const StationView stations{line.workspace.stations.column(column_east).data(),
                               line.workspace.stations.column(column_north).data(),
                               line.workspace.stations.column(column_sensor).data(), 1001};
    const BodyFrame frame{body.cos_strike, body.sin_strike, body.east, body.north, 0, -1};
    const ThickSheetSection thick{30, -20, 1, 90, 120, 33};
    const ThinSheetSection thin{30, -20, 10, 50, 14};
    std::vector<float> expected_thick(1001), expected_thin(1001);
    thick_sheet_stations_at(vector::VectorLevel::baseline)(stations, frame, thick, expected_thick.data());
    thin_sheet_stations_at(vector::VectorLevel::baseline)(stations, frame, thin, expected_thin.data());
    for (const vector::VectorLevel level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512}) {
        if (level > vector::widest_vector_level()) continue;
        std::vector<float> values(1001);
        thick_sheet_stations_at(level)(stations, frame, thick, values.data());
        EXPECT_EQ(values, expected_thick) << vector::vector_level_name(level);
        std::fill(values.begin(), values.end(), 0.0F);
        thin_sheet_stations_at(level)(stations, frame, thin, values.data());
        EXPECT_EQ(values, expected_thin) << vector::vector_level_name(level);
    }
}

}  // namespace anomalis::forward
