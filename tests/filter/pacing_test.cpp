// A filter tells of its work in small pieces, and can be left at each of them.

#include <gtest/gtest.h>

#include "core/faults.h"
#include "filter/filters.h"
#include "filter/plain_filter.h"
#include "support/step_pacer.h"

namespace anomalis::filter {
namespace {

/// The work that a person does not feel between two turns, a tenth of the time in which a stop must come.
constexpr double largest_piece = 2e7;
constexpr double short_turn = 1e6;
constexpr int stations = 300000;

struct Wanted {
    const char* name;
    int code, half_width;
    int tap_step = 1;
};

const Wanted passes[] = {
    {"a few taps", filter_triangular, 5},
    {"many taps one by one", filter_triangular, 40},
    {"a wide boxcar", filter_boxcar, 20000},
    {"a wide triangle", filter_triangular, 150000},
    {"a wide Sinc^2", filter_sinc2, 100000},
    {"a wide Hanning over every third station", filter_hanning, 50000, 3},
    {"a wide vertical gradient", filter_vertical_gradient, 100000},
    {"a wide horizontal derivative", filter_horizontal_derivative, 100000},
};

class Row {
  public:
    Row() {
        const std::vector<float> row = rough_row(stations, 56000);
        data.assign(stations);
        std::copy(row.begin(), row.end(), data.row(row_raw, stage_observed).begin());
    }
    void run(const Wanted& wanted, Pacer& pacer) {
        apply_filter({.filter_code = wanted.code,
                      .half_width = wanted.half_width,
                      .tap_step = wanted.tap_step,
                      .station_count = stations},
                     data, scratch, faults, pacer);
    }

    ChannelTable data;
    FilterScratch scratch;
    Faults faults;
};

TEST(FilterPacing, no_pass_works_longer_than_a_blink_between_two_turns) {
    for (const Wanted& wanted : passes) {
        Row row;
        StepPacer pacer(0, short_turn);
        row.run(wanted, pacer);
        EXPECT_GE(pacer.turns, 1) << wanted.name;
        EXPECT_LE(pacer.longest, largest_piece) << wanted.name;
        EXPECT_GE(pacer.units, stations) << wanted.name;
        EXPECT_TRUE(row.faults.empty()) << wanted.name;
    }
}

TEST(FilterPacing, turns_change_no_bit) {
    for (const Wanted& wanted : passes) {
        Row paced, unpaced;
        StepPacer pacer(0, short_turn);
        paced.run(wanted, pacer);
        unpaced.run(wanted, no_pace());
        EXPECT_EQ(paced.data, unpaced.data) << wanted.name;
    }
}

TEST(FilterPacing, a_stop_ends_the_pass_where_it_is_and_is_no_failure) {
    for (const Wanted& wanted : passes) {
        Row row;
        StepPacer pacer(1, short_turn);
        EXPECT_THROW(row.run(wanted, pacer), Stopped) << wanted.name;
        EXPECT_EQ(pacer.turns, 1) << wanted.name;
        EXPECT_TRUE(row.faults.empty()) << wanted.name;
    }
}

TEST(FilterPacing, a_chain_that_is_left_has_no_mark_and_can_be_run_again) {
    Workspace w;
    w.station_count = stations;
    w.definition.mag_column = 3;
    w.first_station = 1;
    w.last_station = stations;
    w.processing.smooth_filter_width = w.processing.residual_filter_width = 25;
    w.mag.base = 56000;
    w.mag.data = Row().data;
    Workspace whole = w;
    Faults faults;
    filter_data(whole, channel_mag, stage_observed, whole.mag.data, faults);
    for (const int turn : {1, 2, 3}) {
        StepPacer pacer(turn, short_turn);
        EXPECT_THROW(filter_data(w, channel_mag, stage_observed, w.mag.data, faults, pacer), Stopped);
        EXPECT_FALSE(w.mag.observed_filtered);
    }
    filter_data(w, channel_mag, stage_observed, w.mag.data, faults);
    EXPECT_EQ(w.mag.data, whole.mag.data);
    EXPECT_TRUE(faults.empty());
}

TEST(FilterPacing, the_work_of_a_chain_grows_with_line_and_rows) {
    Workspace w;
    w.station_count = 1000;
    const double little = chain_work(w);
    EXPECT_GT(little, 1000);
    w.station_count = 2000000;
    EXPECT_NEAR(chain_work(w), 2000 * little, 1e-9 * chain_work(w));
    const double plain = chain_work(w);
    w.processing.residual_filter_width = 1000000;
    EXPECT_GT(chain_work(w), 2 * plain);
}

}  // namespace
}  // namespace anomalis::filter
