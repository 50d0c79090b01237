#include "forward/classic/prism_facets.h"

#include <gtest/gtest.h>

#include "forward/classic/field_coefficients.h"
#include "forward/line.h"
#include "forward/shape/prism.h"
#include "forward/shape/prism_kernel.h"
#include "forward/shape/reference_point.h"
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

TEST(PrismFacets, give_the_same_bits_at_every_vector_level) {
    Line line(203, 7);
    ModelBody& body = line.add(thick_sheet, 700, 75);
    prepare(line, body);
    PrismFaces prism{};
    for (int c = 0; c < 8; ++c)
        for (int axis = 0; axis < 3; ++axis) prism.corner[c][axis] = (c >> axis & 1) * 100.0 + 50 * axis;
    const int ends[12][2] = {{0, 1}, {2, 3}, {4, 5}, {6, 7}, {0, 2}, {1, 3},
                             {4, 6}, {5, 7}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
    for (int k = 0; k < 12; ++k) prism.edge[k] = {ends[k][0], ends[k][1], 100};
    prism.face[0] = {{0, 1, 3, 2}, {0, 5, 1, 4}, {{100, 0, 0}, {0, 100, 0}, {-100, 0, 0}, {0, -100, 0}},
                     {0, 0, 1},    1e4,          50,
                     true};
    const StationView stations{line.workspace.stations.column(column_east).data(),
                               line.workspace.stations.column(column_north).data(),
                               line.workspace.stations.column(column_sensor).data(), 203};
    const double origin[3] = {6500000, 350000, 100};
    const auto run = [&](vector::VectorLevel level) {
        std::vector<double> all(5 * 203);
        double* at = all.data();
        prism_stations_at(level)(stations, origin, prism, near_edge,
                                 {at, at + 203, at + 406, at + 609, at + 812});
        return all;
    };
    const std::vector<double> expected = run(vector::VectorLevel::baseline);
    EXPECT_GT(peak_of(expected), 1);
    for (const vector::VectorLevel level : {vector::VectorLevel::avx2, vector::VectorLevel::avx512})
        if (level <= vector::widest_vector_level()) {
            EXPECT_EQ(run(level), expected) << vector::vector_level_name(level);
        }
}

}  // namespace anomalis::forward
