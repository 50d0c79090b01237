#include "forward/driver.h"

#include <gtest/gtest.h>

#include "core/threads.h"
#include "forward/line.h"
#include "support/response_values.h"
#include "support/stale_body.h"

namespace anomalis::forward {

namespace {

std::vector<float> raw_sum(Workspace& workspace, bool magnetic = true) {
    const auto row = (magnetic ? workspace.mag.data : workspace.grav.data).row(row_raw, stage_calculated);
    return {row.begin(), row.end()};
}

void fill(std::span<float> values, float value) {
    std::fill(values.begin(), values.end(), value);
}

}  // namespace

TEST(Driver, the_sum_is_all_bodies_station_by_station) {
    Line line(40);
    line.add(thin_sheet, 100);
    line.add(thick_sheet, 200);
    line.add(sphere, 300);
    line.calculate();
    for (const bool magnetic : {true, false}) {
        const std::vector<float> sum = raw_sum(line.workspace, magnetic);
        for (int i = 1; i <= 40; ++i) {
            float expected = 0;
            for (int b = 1; b <= 3; ++b) expected += line.body(b).response(i, magnetic ? 1 : 2);
            EXPECT_EQ(sum[static_cast<std::size_t>(i - 1)], expected);
        }
    }
    EXPECT_GT(std::abs(raw_sum(line.workspace)[20]), 1);
}

TEST(Driver, without_stations_nothing_is_touched) {
    Line line(10);
    line.add(thin_sheet);
    fill(line.workspace.mag.data.span(), 5);
    line.workspace.mag.calculated_filtered = true;
    line.workspace.station_count = 0;
    line.calculate();
    EXPECT_EQ(line.workspace.mag.data(3, row_raw, stage_calculated), 5);
    EXPECT_TRUE(line.workspace.mag.calculated_filtered);
    EXPECT_FALSE(line.body().mag_response_valid);
}

TEST(Driver, with_every_body_valid_nothing_is_touched) {
    Line line(10);
    line.add(thin_sheet, 50);
    line.calculate();
    fill(line.workspace.mag.data.span(), 5);
    fill(line.workspace.grav.data.span(), 6);
    line.workspace.mag.calculated_filtered = true;
    line.calculate();
    EXPECT_EQ(line.workspace.mag.data(3, row_raw, stage_calculated), 5);
    EXPECT_EQ(line.workspace.grav.data(3, row_gradient, stage_calculated), 6);
    EXPECT_TRUE(line.workspace.mag.calculated_filtered);
}

TEST(Driver, only_the_body_that_is_out_of_date_is_calculated) {
    Line line(10);
    line.add(thin_sheet, 20);
    line.add(thin_sheet, 70);
    line.calculate();
    // A response that no calculation gives shows whether it was kept.
    fill(line.body(1).response.column(1), 1000);
    fill(line.body(2).response.column(1), 500);
    line.body(2).mag_response_valid = false;
    line.calculate();
    EXPECT_EQ(line.body(1).response(4, 1), 1000);
    EXPECT_NE(line.body(2).response(4, 1), 500);
    EXPECT_EQ(raw_sum(line.workspace)[3], 1000 + line.body(2).response(4, 1));
}

TEST(Driver, the_channels_are_rebuilt_apart) {
    Line line(10);
    line.add(thin_sheet, 20);
    line.calculate();
    fill(line.workspace.mag.data.span(), 5);
    fill(line.body().response.column(1), 9);
    line.body().grav_response_valid = false;
    line.calculate();
    EXPECT_EQ(raw_sum(line.workspace)[3], 5) << "the magnetic sum stays";
    EXPECT_EQ(line.body().response(3, 1), 9);
    EXPECT_TRUE(line.body().grav_response_valid);
}

TEST(Driver, a_rebuild_clears_all_calculated_rows_and_leaves_the_observed_ones) {
    Line line(10);
    line.add(polygon);
    fill(line.workspace.mag.data.span(), 5);
    line.calculate();
    for (int row = row_raw; row <= row_total_gradient; ++row) {
        EXPECT_EQ(line.workspace.mag.data(7, row, stage_calculated), 0);
        EXPECT_EQ(line.workspace.mag.data(7, row, stage_observed), 5);
    }
}

TEST(Driver, a_rebuild_puts_the_filtered_rows_out_of_date) {
    Line line(10);
    line.add(thin_sheet);
    Workspace& w = line.workspace;
    w.mag.calculated_filtered = w.grav.calculated_filtered = w.mag.observed_filtered = true;
    line.calculate();
    EXPECT_FALSE(w.mag.calculated_filtered);
    EXPECT_FALSE(w.grav.calculated_filtered);
    EXPECT_TRUE(w.mag.observed_filtered);
}

TEST(Driver, a_channel_without_a_column_is_left_alone) {
    Line line(10);
    line.workspace.definition.mag_column = 0;
    line.add(thick_sheet, 50);
    fill(line.workspace.mag.data.span(), 5);
    line.calculate();
    EXPECT_EQ(raw_sum(line.workspace)[3], 5);
    EXPECT_FALSE(line.body().mag_response_valid);
    EXPECT_TRUE(line.body().grav_response_valid);
}

TEST(Driver, a_body_that_is_switched_off_counts_exactly_zero_and_is_valid) {
    Line line(10);
    ModelBody& body = line.add(thin_sheet, 50);
    line.calculate();
    fill(body.response.column(4), 3);
    body.turned_off = 1;
    invalidate_body(body);
    line.calculate();
    for (int i = 1; i <= 10; ++i)
        for (int column = 1; column <= 5; ++column) EXPECT_EQ(body.response(i, column), 0);
    EXPECT_TRUE(body.mag_response_valid && body.grav_response_valid);
    EXPECT_EQ(raw_sum(line.workspace), std::vector<float>(10, 0.0F));
}

TEST(Driver, only_a_mark_of_exactly_1_switches_off) {
    Line line(10);
    line.add(thin_sheet, 50).turned_off = 2;
    line.calculate();
    EXPECT_NE(line.body().response(5, 1), 0);
}

TEST(Driver, without_bodies_the_calculated_channels_are_zero) {
    Line line(10);
    Workspace& w = line.workspace;
    fill(w.mag.data.span(), 5);
    fill(w.grav.data.span(), 5);
    line.calculate();
    for (int row = row_raw; row <= row_total_gradient; ++row) {
        EXPECT_EQ(w.mag.data(10, row, stage_calculated), 0);
        EXPECT_EQ(w.grav.data(1, row, stage_calculated), 0);
        EXPECT_EQ(w.mag.data(10, row, stage_observed), 5);
    }
}

TEST(Driver, sums_into_working_copies) {
    Line line(10);
    line.add(thin_sheet, 50);
    line.calculate();
    const std::vector<float> own = raw_sum(line.workspace);
    ChannelTable mag, grav;
    mag.assign(10);
    grav.assign(10);
    invalidate_body(line.body());
    fill(line.workspace.mag.data.span(), 5);
    calculate_model(line.workspace, mag, grav, line.faults);
    EXPECT_EQ(raw_sum(line.workspace)[3], 5);
    EXPECT_EQ(mag(4, row_raw, stage_calculated), own[3]);
}

TEST(Driver, a_response_table_of_another_length_is_reported) {
    Line line(10);
    line.add(thin_sheet, 50).response.assign(4);
    line.calculate();
    EXPECT_TRUE(told(line.faults, "Subscript out of range"));
}

TEST(Driver, a_message_that_repeats_is_shown_once_with_its_count) {
    Line line(10);
    for (int i = 0; i < 3; ++i) {
        ModelBody& body = line.add(thin_sheet, 50);
        body.susc.value = 0;
        body.rem_q.value = 1;
    }
    line.calculate();
    ASSERT_EQ(line.faults.entries().size(), 1U);
    EXPECT_TRUE(told(line.faults, "Division by zero (3 times)"));
    EXPECT_EQ(raw_sum(line.workspace), std::vector<float>(10, 0.0F));
}

TEST(Driver, a_sum_beyond_single_precision_is_reported_and_counts_as_zero) {
    Line line(10, 10, 90);
    for (int i = 0; i < 4; ++i) {
        ModelBody& body = line.add(wire, 50, 0);
        body.susc.value = 3e38F;
        body.top.value = 99.5F;
    }
    line.calculate();
    EXPECT_TRUE(told(line.faults, "An error occurred calculating the maginv model: Overflow"));
    EXPECT_EQ(raw_sum(line.workspace), std::vector<float>(10, 0.0F));
}

namespace {

/// One body of each type, with and without ends, as files can say them too.
void add_each_type(Line& line) {
    for (const BodyType type : {thin_sheet, thick_sheet, edge, sloping_step, polygon, sphere, pipe, wire})
        for (const float length : {0.0F, 250.0F}) {
            ModelBody& body = line.add(type, 40.0 * line.workspace.body_count, 75);
            body.length.value = length;
            body.rem_q.value = 0.5F;
            body.include_demagnetisation = line.workspace.body_count % 2;
            body.shell_thickness = length > 0 ? 10 : 0;
        }
}

}  // namespace

TEST(Driver, both_channels_at_once_have_the_bits_that_each_has_alone) {
    for (const Formulas formulas : {Formulas::classic, Formulas::exact}) {
        Line both(61), mag(61), grav(61);
        for (Line* line : {&both, &mag, &grav}) {
            line->workspace.formulas = formulas;
            add_each_type(*line);
        }
        mag.workspace.definition.grav_column = 0;
        grav.workspace.definition.mag_column = 0;
        for (Line* line : {&both, &mag, &grav}) line->calculate();
        for (int b = 1; b <= both.workspace.body_count; ++b) {
            EXPECT_EQ(column_values(both.body(b).response, 1), column_values(mag.body(b).response, 1)) << b;
            EXPECT_EQ(column_values(both.body(b).response, 2), column_values(grav.body(b).response, 2)) << b;
        }
        EXPECT_EQ(raw_sum(both.workspace), raw_sum(mag.workspace));
        EXPECT_EQ(raw_sum(both.workspace, false), raw_sum(grav.workspace, false));
    }
}

TEST(Driver, a_response_holds_the_columns_of_its_channels_and_no_others) {
    for (const Formulas formulas : {Formulas::classic, Formulas::exact}) {
        Line line(61);
        line.workspace.formulas = formulas;
        add_each_type(line);
        line.workspace.definition.grav_column = 0;
        line.calculate();
        for (int b = 1; b <= line.workspace.body_count; ++b)
            EXPECT_LE(held_columns(line.body(b).response), 1) << b;
        line.workspace.definition.grav_column = 4;
        line.calculate();
        for (int b = 1; b <= line.workspace.body_count; ++b)
            EXPECT_LE(held_columns(line.body(b).response), 2) << b;
        for (const int b : {3, 4, 13, 14}) {
            EXPECT_EQ(held_columns(line.body(b).response), 2) << b;
            line.body(b).turned_off = 1;
            invalidate_body(line.body(b));
        }
        line.calculate();
        for (const int b : {3, 4, 13, 14}) EXPECT_EQ(held_columns(line.body(b).response), 0) << b;
    }
}

TEST(Driver, failures_are_told_channel_by_channel_in_the_order_of_the_bodies) {
    for (const Formulas formulas : {Formulas::classic, Formulas::exact}) {
        Line line(10);
        line.workspace.formulas = formulas;
        for (int i = 0; i < 40; ++i) line.add(thick_sheet, 50).width.value = std::nanf("");
        line.calculate();
        const auto entries = line.faults.entries();
        ASSERT_EQ(entries.size(), 80U);
        for (std::size_t i = 0; i < 80; ++i) {
            const std::string what = i < 40 ? "the magnetic response of body " : "the gravity of body ";
            EXPECT_NE(entries[i].text.find(what + std::to_string(i % 40 + 1) + ", "), std::string::npos)
                << entries[i].text;
        }
    }
}

namespace {

/// So many cores while it lives.
struct Cores {
    explicit Cores(int count) { limit_threads(count); }
    ~Cores() { limit_threads(0); }
    Cores(const Cores&) = delete;
    Cores& operator=(const Cores&) = delete;
};

/// Bodies of all types in their turn, some of which fail, and one that is most of the work.
void add_many(Line& line, int bodies, bool with_large) {
    while (line.workspace.body_count < bodies) add_each_type(line);
    line.body(5).width.value = line.body(9).width.value = std::nanf("");
    line.body(11).turned_off = 1;
    if (with_large) line.body(14).num_sectors = 3000;
}

struct Calculated {
    std::vector<float> mag, grav;
    std::vector<ResponseTable> responses;
    std::vector<std::string> texts;
    bool operator==(const Calculated&) const = default;
};

Calculated calculated_on(int cores, int stations, Formulas formulas, bool with_large) {
    const Cores machine(cores);
    Line line(stations, 3);
    line.workspace.formulas = formulas;
    add_many(line, 64, with_large);
    line.calculate();
    Calculated all{raw_sum(line.workspace), raw_sum(line.workspace, false), {}, {}};
    for (int b = 1; b <= line.workspace.body_count; ++b) all.responses.push_back(line.body(b).response);
    for (const Faults::Entry& entry : line.faults.entries()) all.texts.push_back(counted_text(entry));
    return all;
}

}  // namespace

TEST(Driver, any_count_of_cores_gives_the_same_bits_and_the_same_texts_in_their_order) {
    for (const Formulas formulas : {Formulas::classic, Formulas::exact})
        for (const bool with_large : {false, true}) {
            const Calculated alone = calculated_on(1, 61, formulas, with_large);
            EXPECT_FALSE(alone.texts.empty());
            EXPECT_EQ(calculated_on(3, 61, formulas, with_large), alone);
        }
}

TEST(Driver, one_body_on_a_long_line_has_the_same_bits_on_any_count_of_cores) {
    struct Case {
        Formulas formulas;
        int stations;  ///< enough to be worth two threads
        BodyType type;
    };
    for (const auto& [formulas, stations, type] :
         {Case{Formulas::classic, 60001, thin_sheet}, Case{Formulas::classic, 50001, sphere},
          Case{Formulas::classic, 30001, wire}, Case{Formulas::exact, 15001, thick_sheet},
          Case{Formulas::exact, 15001, pipe}}) {
        std::vector<float> alone;
        for (const int cores : {1, 3}) {
            const Cores machine(cores);
            Line line(stations, 0.1);
            line.workspace.formulas = formulas;
            line.add(type, 300, 70).length.value = 0;
            line.calculate();
            if (cores == 1) alone = raw_sum(line.workspace);
            EXPECT_EQ(raw_sum(line.workspace), alone) << type;
            EXPECT_NE(alone[3000], 0) << type;
        }
    }
}

TEST(Driver, a_stop_on_many_cores_leaves_the_curves_and_the_next_calculation_ends_it) {
    struct Leaving : Pacer {
        int left = 20;
        void done(double) override {
            if (--left < 0) throw Stopped();
        }
    };
    const Cores machine(3);
    Line line(151, 3);
    add_many(line, 64, false);
    const ChannelTable before = line.workspace.mag.data;
    Leaving pacer;
    EXPECT_THROW(calculate_model(line.workspace, line.workspace.mag.data, line.workspace.grav.data,
                                 line.faults, pacer),
                 Stopped);
    EXPECT_EQ(line.workspace.mag.data, before);
    line.faults.clear();
    line.calculate();
    const Calculated whole = calculated_on(1, 151, Formulas::classic, false);
    EXPECT_EQ(raw_sum(line.workspace), whole.mag);
    EXPECT_EQ(raw_sum(line.workspace, false), whole.grav);
}

TEST(Driver, twenty_thousand_bodies_are_summed_in_their_order) {
    Line line(2);
    for (int b = 0; b < 20000; ++b) line.add(thin_sheet, 200 + 0.01 * b).length.value = 0;
    line.calculate();
    float sum = 0;
    for (int b = 1; b <= 20000; ++b) sum += line.body(b).response(2, 1);
    EXPECT_EQ(raw_sum(line.workspace)[1], sum);
    EXPECT_NE(sum, 0);
    EXPECT_TRUE(line.faults.empty());
}

}  // namespace anomalis::forward
