#include "forward/body_price.h"

#include <cmath>
#include <gtest/gtest.h>

#include "core/saturating.h"
#include "core/threads.h"
#include "forward/formula_difference.h"
#include "forward/line.h"
#include "forward/shape/body_solid.h"
#include "forward/shape/exact_shape.h"
#include "support/stale_body.h"

namespace anomalis::forward {

namespace {

constexpr std::int32_t most = 2147483647;

ModelBody pipe_of(std::int32_t sectors, std::int32_t segments) {
    ModelBody body;
    body.type = pipe;
    body.width.value = 60;
    body.length.value = 200;
    body.num_sectors = sectors;
    body.num_segments = segments;
    return body;
}

/// The first text of a refusal; "" when the price is granted.
std::string refusal(const BodyPrice& price) {
    try {
        require_affordable(price);
    } catch (const Fault& refused) {
        return refused.what();
    }
    return "";
}

}  // namespace

TEST(Saturating, counts_stay_at_the_largest_number) {
    EXPECT_EQ(saturating_sum(largest_count, 1), largest_count);
    EXPECT_EQ(saturating_sum(largest_count - 1, 1), largest_count);
    EXPECT_EQ(saturating_product(1ULL << 32, 1ULL << 32), largest_count);
    EXPECT_EQ(saturating_product(1ULL << 32, 1ULL << 31), 1ULL << 63);
    EXPECT_EQ(saturating_product(0, largest_count), 0U);
    EXPECT_EQ(saturating_count(1e300), largest_count);
    EXPECT_EQ(saturating_count(-3), 0U);
    EXPECT_EQ(saturating_count(std::nan("")), 0U);
    EXPECT_EQ(saturating_count(12.9), 12U);
}

TEST(BodyPrice, of_a_pipe_is_that_of_the_solid_that_is_built) {
    for (const float shell : {0.0F, 5.0F})
        for (const float cap : {0.0F, 20.0F}) {
            ModelBody body = pipe_of(7, 5);
            body.shell_thickness = shell;
            body.end_thickness = cap;
            Faults faults;
            ASSERT_EQ(setup_cylinder_body(body, body.solid, faults), 0);
            const BodyPrice price = body_price(body, Formulas::classic, 0);
            EXPECT_EQ(price.facets, std::max<std::size_t>(body.solid.facets.size(), shell > 0 ? 64 : 32));
            EXPECT_EQ(price.sectors, 8U);
            EXPECT_EQ(price.segments, 5U);
            EXPECT_GE(price.bytes, body.solid.facets.size() * 12 + body.solid.points.size() * 48);
            EXPECT_EQ(refusal(price), "");
        }
}

TEST(BodyPrice, grows_with_stations_and_with_the_points_of_the_demagnetisation) {
    ModelBody body = pipe_of(12, 2000);
    body.shell_thickness = 5;
    EXPECT_EQ(body_price(body, Formulas::classic, 1000).station_facets, 1000U * 8 * 12);
    EXPECT_EQ(body_price(body, Formulas::classic, 1000).pairs, 0U);
    body.include_demagnetisation = 1;
    EXPECT_EQ(body_price(body, Formulas::classic, 1000).pairs, 2000U * 8 * 12)
        << "in proportion to the segments, not to their square";
    EXPECT_EQ(body_price(body, Formulas::exact, 1000).pairs, 0U);
    body.shell_thickness = 0;
    EXPECT_EQ(body_price(body, Formulas::classic, 1000).pairs, 4U * 12);
}

TEST(BodyPrice, of_other_bodies_is_that_of_their_few_faces) {
    for (const BodyType type : {thin_sheet, thick_sheet, edge, sloping_step, polygon, sphere, wire}) {
        ModelBody body = pipe_of(most, most);
        body.type = type;
        const BodyPrice price = body_price(body, Formulas::exact, 1000);
        EXPECT_LE(price.station_facets, 12000U);
        if (type != wire) {
            EXPECT_EQ(refusal(price), "");
        }
    }
}

TEST(BodyPrice, counts_of_ten_million_and_of_two_milliard_are_refused_with_their_numbers) {
    struct Typed {
        std::int32_t sectors, segments;
        const char *sectors_text, *segments_text, *facets;
    };
    for (const Typed& typed :
         {Typed{10000000, 1, "10000000 sectors", "1 segments", "40000000 facets"},
          Typed{12, 10000000, "12 sectors", "10000000 segments", "240000024 facets"},
          Typed{most, 1, "2147483648 sectors", "1 segments", "8589934592 facets"},
          Typed{12, most, "12 sectors", "2147483647 segments", "51539607552 facets"},
          Typed{most, most, "2147483648 sectors", "2147483647 segments", "9223372036854775808 facets"}})
        for (const Formulas formulas : {Formulas::classic, Formulas::exact})
            for (const std::int64_t stations : {0, 100, 2000000}) {
                const std::string text =
                    refusal(body_price(pipe_of(typed.sectors, typed.segments), formulas, stations));
                EXPECT_NE(text.find(typed.facets), std::string::npos) << text;
                EXPECT_NE(text.find("the limit is 2000000"), std::string::npos) << text;
                EXPECT_NE(text.find(typed.sectors_text), std::string::npos) << text;
                EXPECT_NE(text.find(typed.segments_text), std::string::npos) << text;
            }
}

TEST(BodyPrice, every_route_refuses_such_a_pipe_and_the_other_bodies_are_calculated) {
    for (const Formulas formulas : {Formulas::classic, Formulas::exact})
        for (const float length : {250.0F, 0.0F})
            for (const auto& [sectors, segments] :
                 {std::pair{10000000, 1}, std::pair{12, 10000000}, std::pair{most, 1}, std::pair{12, most}}) {
                // Without a length the classic formulas take a pipe for a sheet, which has no sectors.
                if (formulas == Formulas::classic && length == 0) continue;
                Line line(31);
                line.workspace.formulas = formulas;
                ModelBody& body = line.add(pipe, 153, 70);
                body.length.value = length;
                body.num_sectors = sectors;
                body.num_segments = segments;
                body.include_demagnetisation = 1;
                line.add(thick_sheet, 100, 80);
                line.calculate();
                EXPECT_TRUE(told(line.faults, "An error occur"));
                EXPECT_TRUE(told(line.faults, "facets, the limit is 2000000 ("));
                EXPECT_TRUE(line.body(1).solid.points.empty()) << "nothing was allocated";
                for (int column = 1; column <= 2; ++column) {
                    EXPECT_EQ(line.body(1).response(10, column), 0);
                    EXPECT_NE(line.body(2).response(10, column), 0);
                }
                EXPECT_EQ(line.workspace.mag.data(10, row_raw, stage_calculated),
                          line.body(2).response(10, 1));
            }
}

TEST(BodyPrice, a_drawing_of_such_a_pipe_is_refused_in_the_same_words) {
    ModelBody body = pipe_of(10000000, 1);
    body.name = "Shaft";
    Faults faults;
    EXPECT_EQ(setup_cylinder_body(body, body.solid, faults), -1);
    EXPECT_TRUE(told(faults,
                     "An error occurred while setting up the cylinder body: the solid would have "
                     "40000000 facets, the limit is 2000000 (body Shaft: 10000000 sectors, 1 segments; "));
    EXPECT_THROW(pipe_shape(body), Fault);
}

TEST(BodyPrice, the_comparison_of_the_formulas_leaves_such_a_pipe_out_with_the_reason) {
    Line line(31);
    ModelBody& body = line.add(pipe, 153, 70);
    body.length.value = 0;
    body.dip.value = 60;
    body.num_sectors = 10000000;
    line.workspace.definition.grav_column = 0;
    line.calculate();
    EXPECT_TRUE(line.faults.empty()) << "classic, a sheet";
    EXPECT_NE(line.body().response(10, 1), 0);
    const FormulaDifference difference = formula_difference(line.workspace, 1, line.faults);
    EXPECT_NE(difference.left_out.find("40000000 facets, the limit is 2000000"), std::string::npos)
        << difference.left_out;
    EXPECT_EQ(difference.largest(), 0);
    body.num_sectors = 12;
    EXPECT_EQ(formula_difference(line.workspace, 1, line.faults).left_out, "");
}

TEST(BodyPrice, a_comparison_that_would_be_felt_is_left_out) {
    Line line(1001);
    ModelBody& body = line.add(pipe, 5000, 70);
    body.num_sectors = 100000;
    line.workspace.definition.grav_column = 0;
    body.mag_response_valid = true;
    const FormulaDifference difference = formula_difference(line.workspace, 1, line.faults);
    EXPECT_NE(difference.left_out.find("takes too long: 400400000 facets"), std::string::npos)
        << difference.left_out;
    EXPECT_TRUE(line.faults.empty());
}

TEST(BodyPrice, stations_times_facets_beyond_an_hour_are_refused) {
    const ModelBody body = pipe_of(200000, 1);
    EXPECT_EQ(refusal(body_price(body, Formulas::exact, 1000000)), "");
    EXPECT_NE(refusal(body_price(body, Formulas::exact, 2000000))
                  .find("1600000000000 facets in all, the limit is 1000000000000"),
              std::string::npos);
}

TEST(BodyPrice, the_work_ahead_is_that_of_responses_out_of_date) {
    Line line(101);
    line.add(thin_sheet, 500);
    line.add(pipe, 600);
    const double all = work_ahead(line.workspace);
    EXPECT_GT(all, 101 * 48 * 2);
    line.workspace.definition.grav_column = 0;
    const double sheet = work_of(body_price(line.body(1), Formulas::classic, 101), 101);
    const double round = work_of(body_price(line.body(2), Formulas::classic, 101), 101);
    EXPECT_NEAR(work_ahead(line.workspace), sheet + round, 1e-9 * all);
    EXPECT_NEAR(all, 2 * sheet + 1.1 * round, 1e-9 * all) << "a pass gives both channels of a pipe";
    line.calculate();
    EXPECT_EQ(work_ahead(line.workspace), 0);
    line.body(2).mag_response_valid = false;
    EXPECT_GT(work_ahead(line.workspace), 101 * 48);
    line.body(2).num_sectors = most;
    EXPECT_EQ(work_ahead(line.workspace), 0) << "what is refused takes no time";
}

TEST(BodyPrice, the_memory_ahead_is_that_of_columns_that_are_not_held_yet) {
    Line line(1000);
    line.add(thin_sheet, 500).length.value = 0;
    line.add(sphere, 600);
    const auto threads = static_cast<std::uint64_t>(thread_count());
    const std::uint64_t column = 4000, scratch = 16000;
    EXPECT_EQ(memory_ahead(line.workspace), 3 * column + threads * scratch) << "a sphere has no classic mass";
    line.workspace.formulas = Formulas::exact;
    EXPECT_EQ(memory_ahead(line.workspace), 4 * column + threads * scratch);
    line.calculate();
    EXPECT_EQ(memory_ahead(line.workspace), 0U);
    invalidate_body(line.body());
    EXPECT_EQ(memory_ahead(line.workspace), 0U) << "its columns are there";
}

TEST(BodyPrice, a_model_that_no_memory_holds_is_refused_before_work_begins) {
    Line line(10);
    for (int b = 0; b < 2000; ++b) line.add(thin_sheet, 50);
    line.workspace.mag.data(4, row_raw, stage_calculated) = 7;
    // Nobody looks at stations before the price is known.
    line.workspace.station_count = 2'000'000'000;
    line.calculate();
    ASSERT_EQ(line.faults.entries().size(), 1U);
    const std::string& text = line.faults.entries().front().text;
    EXPECT_NE(text.find("Out of memory (the responses of 2000 bodies at 2000000000 stations need 320"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("fewer bodies, or a larger station spacing, take less)"), std::string::npos) << text;
    EXPECT_FALSE(line.body(1).mag_response_valid);
    EXPECT_EQ(line.workspace.mag.data(4, row_raw, stage_calculated), 7);
}

}  // namespace anomalis::forward
