#include "forward/classic/prism_facets.h"

#include <gtest/gtest.h>

#include "forward/classic/field_coefficients.h"
#include "forward/line.h"
#include "forward/shape/prism.h"
#include "forward/shape/prism_kernel.h"
#include "forward/shape/reference_point.h"
#include "forward/station_columns.h"
#include "support/response_values.h"

namespace anomalis::forward {

namespace {

const NedVector moment{120, -30, 200};

/// Body 1 as a prism, face by face through the single face's routine.
void by_single_faces(Line& line, ModelBody& body, const FacetWanted& wanted) {
    const auto corners = relative_to_first_station(magnetic_prism(body), line.workspace);
    for (const auto& face : prism_faces) {
        std::array<NedVector, 4> list;
        for (std::size_t i = 0; i < 4; ++i) list[i] = corners[face[i]];
        calculate_facet_response(line.workspace, body, wanted, wanted.magnetic ? moment : NedVector{}, list,
                                 line.faults);
    }
}

void prepare(const Line& line, ModelBody& body) {
    set_body_angles(body);
    update_body_reference_point(line.workspace, body.distance.value, body.east, body.north);
}

/// Within the rounding of single-precision sums; `least_peak` shows that there is something to compare.
void expect_like_single_faces(Line& line, const FacetWanted& wanted, double least_peak) {
    ModelBody& body = line.body();
    prepare(line, body);
    by_single_faces(line, body, wanted);
    const ResponseTable expected = body.response;
    body.response.assign(line.workspace.station_count);
    add_prism_facets(line.workspace, body, wanted, wanted.magnetic ? moment : NedVector{},
                     relative_to_first_station(magnetic_prism(body), line.workspace), line.faults);
    for (int column = 2; column <= 5; ++column) {
        const std::vector<float> a = column_values(expected, column);
        const std::vector<float> b = column_values(body.response, column);
        double peak = 1e-6;
        for (const float v : a) peak = std::max(peak, std::abs(static_cast<double>(v)));
        for (std::size_t i = 0; i < a.size(); ++i)
            EXPECT_NEAR(a[i], b[i], 2e-6 * peak + 1e-5) << "column " << column << " station " << i + 1;
        if (column == 2 ? wanted.gravity : wanted.magnetic) {
            EXPECT_GT(peak, least_peak);
        } else {
            EXPECT_EQ(peak, 1e-6) << "column " << column << " is not wanted";
        }
    }
    EXPECT_TRUE(line.faults.empty());
}

}  // namespace

TEST(PrismFacets, agree_with_the_six_single_faces) {
    for (const bool magnetic : {true, false}) {
        Line line(333, 7);
        ModelBody& body = line.add(thick_sheet, 1003, 75);
        body.dip.value = 65;
        body.plunge.value = 12;
        body.slope.value = 8;
        body.offset.value = 30;
        expect_like_single_faces(line, {magnetic, !magnetic}, 1);
    }
}

TEST(PrismFacets, agree_where_stations_stand_on_the_lines_of_edges) {
    // Level with the top, so that stations run along the edges and through the corners, and above upright
    // ones.
    for (const double sensor : {0.0, 25.0, -100.0, -250.0}) {
        for (const bool magnetic : {true, false}) {
            Line line(101, 10, 0, sensor);
            ModelBody& body = line.add(thick_sheet, 300, 90);
            body.length.value = 0.2F;
            body.width.value = 200;
            body.offset.value = 0.1F;
            expect_like_single_faces(line, {magnetic, !magnetic}, 0.05);
        }
    }
}

TEST(PrismFacets, a_flat_prism_adds_its_faces_with_an_area) {
    Line line(51, 10, 0, 100);
    ModelBody& body = line.add(thick_sheet, 200, 90);
    body.width.value = 0;
    expect_like_single_faces(line, {true, false}, 0);
}

TEST(PrismFacets, agree_over_widths_where_most_stations_are_moved) {
    for (const double width : {0.01, 0.1, 1.0, 10.0, 100.0}) {
        for (const bool magnetic : {true, false}) {
            Line line(301, 400, 20);
            ModelBody& body = line.add(thick_sheet, 6000, 70);
            body.width.value = static_cast<float>(width);
            body.dip.value = 75;
            expect_like_single_faces(line, {magnetic, !magnetic}, 1e-3);
        }
    }
}

TEST(PrismFacets, agree_where_the_number_of_moves_changes_from_station_to_station) {
    // Stations 2 m apart across the place from where on an edge is close, so that neighbours in a vector are
    // moved once, several times, ten times or not at all.
    for (const bool magnetic : {true, false}) {
        Line line(501, 2, 0, 30);
        ModelBody& body = line.add(thick_sheet, 400, 90);
        body.width.value = 1.5F;
        body.length.value = 40;
        body.depth_extent.value = 3;
        body.plunge.value = 5;
        expect_like_single_faces(line, {magnetic, !magnetic}, 1e-3);
    }
}

TEST(PrismFacets, a_thousand_stations_on_a_corner_are_the_one) {
    for (const double top : {100.0, 90.0, 250.0}) {
        Line line(1000, 0.01);
        for (int i = 1; i <= 1000; ++i) line.workspace.stations(i, column_north) = 6500000;
        ModelBody& body = line.add(thick_sheet, 0, 90);
        body.top.value = static_cast<float>(top);
        body.offset.value = body.length.value / 2;
        prepare(line, body);
        for (const bool magnetic : {true, false}) {
            body.response.assign(1000);
            add_prism_facets(line.workspace, body, {magnetic, !magnetic}, moment,
                             relative_to_first_station(magnetic_prism(body), line.workspace), line.faults);
            const std::vector<float> values = column_values(body.response, magnetic ? 5 : 2);
            EXPECT_TRUE(std::isfinite(values[0]));
            EXPECT_NE(values[0], 0);
            for (const float value : values) ASSERT_EQ(value, values[0]) << "top " << top;
        }
    }
}

TEST(PrismFacets, hardly_any_width_gives_hardly_anything_and_finite_numbers) {
    for (const double width : {0.0, 1e-6, 1e-3}) {
        Line line(101, 10);
        ModelBody& body = line.add(thick_sheet, 500, 70);
        body.width.value = static_cast<float>(width);
        prepare(line, body);
        const auto corners = relative_to_first_station(magnetic_prism(body), line.workspace);
        add_prism_facets(line.workspace, body, {true, false}, moment, corners, line.faults);
        add_prism_facets(line.workspace, body, {false, true}, {}, corners, line.faults);
        const std::vector<float> gravity = column_values(body.response, 2);
        for (const float value : all_values(body.response)) ASSERT_TRUE(std::isfinite(value));
        // Slabs of the same size on both sides: what is left of their gravity grows with the width.
        for (const float value : gravity) EXPECT_NEAR(value, 0, 1e-4 + 20 * width);
    }
}

TEST(PrismFacets, give_the_same_bits_at_every_vector_level) {
    for (const bool magnetic : {true, false}) {
        Line line(203, 70, 0, 30);
        ModelBody& body = line.add(thick_sheet, 700, 75);
        body.width.value = 2;
        body.slope.value = 10;
        prepare(line, body);
        const PrismFaces prism = prism_faces_for_stations(
            relative_to_first_station(magnetic_prism(body), line.workspace), moment, magnetic, magnetic);
        const StationView stations = station_view(line.workspace);
        const double origin[3] = {stations.north[0], stations.east[0], stations.sensor[0]};
        const auto run = [&](vector::VectorLevel level) {
            std::vector<float> all(3 * 203);
            float* at = all.data();
            prism_stations_at(level)(stations, origin, prism,
                                     magnetic ? PrismSums{at, at + 203, at + 406, nullptr}
                                              : PrismSums{nullptr, nullptr, nullptr, at});
            return all;
        };
        const std::vector<float> expected = run(vector::VectorLevel::baseline);
        EXPECT_GT(*std::max_element(expected.begin(), expected.end()), 0.01);
        for (const vector::VectorLevel level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512})
            if (level <= vector::widest_vector_level()) {
                EXPECT_EQ(run(level), expected) << vector::vector_level_name(level);
            }
    }
}

}  // namespace anomalis::forward
