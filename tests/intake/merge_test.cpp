#include "intake/merge.h"

#include <cstddef>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "core/threads.h"
#include "intake/profile_line.h"
#include "support/survey.h"

namespace anomalis::intake {
namespace {

using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::Pointwise;

/// Merges and gives the distances of the kept stations.
std::vector<double> merged(Workspace& w) {
    w.distances.assign(w.station_count);
    set_line_geometry(profile_line(w.stations, w.station_count), w.stations, w);
    const int kept = merge_close_stations(w);
    const auto all = w.distances.span();
    return {all.begin(), all.begin() + kept};
}

Workspace eastwards(std::initializer_list<TestStation> stations, float spacing = 0) {
    Workspace w;
    set_stations(w, stations);
    w.min_station_spacing = spacing;
    return w;
}

TEST(Merge, stations_that_advance_are_all_kept) {
    Workspace w = eastwards({{1.1, 0}, {2.3, 0}, {2.4, 0}, {9.7, 0}});
    const Workspace before = w;
    EXPECT_THAT(merged(w), Pointwise(::testing::DoubleNear(1e-12), {0.0, 1.2, 1.3, 8.6}));
    EXPECT_EQ(w.stations, before.stations);
}

TEST(Merge, close_stations_become_their_mean) {
    Workspace w = eastwards({{0, 0, 1}, {4, 1, 2, 10, 20, 5}, {8, 3, 4, 30, 40, 7}, {20, 0, 9}}, 5);
    EXPECT_THAT(merged(w), ElementsAre(0, 6, 20));
    EXPECT_EQ(w.stations(2, column_east), 6);
    EXPECT_EQ(w.stations(2, column_north), 2);
    EXPECT_EQ(w.stations(2, column_sensor), 20);
    EXPECT_EQ(w.stations(2, column_ground), 30);
    EXPECT_EQ(w.mag.data(2, row_raw, stage_observed), 3);
    EXPECT_EQ(w.grav.data(2, row_raw, stage_observed), 6);
}

TEST(Merge, a_gap_of_exactly_the_spacing_is_too_close) {
    Workspace w = eastwards({{0, 0}, {5, 0}, {10, 0}, {20, 0}}, 5);
    EXPECT_THAT(merged(w), ElementsAre(0, 7.5, 20));
}

TEST(Merge, a_station_that_runs_back_merges_with_the_next_even_without_a_spacing) {
    Workspace w = eastwards({{0, 0, 0}, {10, 0, 1}, {8, 0, 2}, {14, 0, 4}, {30, 0, 5}});
    EXPECT_THAT(merged(w), ElementsAre(0, 10, 11, 30));
    EXPECT_EQ(w.mag.data(3, row_raw, stage_observed), 3);
    Workspace repeated = eastwards({{0, 0, 0}, {10, 0, 1}, {10, 0, 2}, {14, 0, 4}, {30, 0, 5}});
    EXPECT_THAT(merged(repeated), ElementsAre(0, 10, 12, 30));
}

TEST(Merge, an_unfinished_group_before_the_last_station_is_dropped) {
    Workspace w = eastwards({{0, 0, 0}, {10, 0, 1}, {11, 0, 2}, {12, 0, 3}, {13, 0, 9}}, 5);
    EXPECT_THAT(merged(w), ElementsAre(0, 10, 13));
    EXPECT_EQ(w.mag.data(3, row_raw, stage_observed), 9);
}

TEST(Merge, the_last_station_is_kept_even_behind_others) {
    Workspace w = eastwards({{0, 0}, {30, 0}, {20, 0}});
    EXPECT_THAT(merged(w), ElementsAre(0, 30, 20));
    Workspace two = eastwards({{0, 0}, {3, 0}}, 100);
    EXPECT_THAT(merged(two), ElementsAre(0, 3));
}

TEST(Merge, a_negative_spacing_counts_as_0) {
    Workspace w = eastwards({{0, 0}, {10, 0}, {9, 0}, {30, 0}}, -50);
    EXPECT_EQ(merged(w).size(), 3U);
}

constexpr int long_line = 200'000;

/// Long enough to be shared among cores: 2 m apart, the height of a station tells its number.
Workspace long_eastwards() {
    Workspace w;
    w.station_count = long_line;
    w.stations.assign(long_line);
    w.mag.data.assign(long_line);
    w.grav.data.assign(long_line);
    for (int i = 1; i <= long_line; ++i) {
        w.stations(i, column_east) = 1000.3 + 2 * i;
        w.stations(i, column_ground) = i;
    }
    return w;
}

TEST(Merge, a_long_line_is_laid_out_alike_on_any_number_of_cores) {
    std::vector<double> distances[2];
    for (const int threads : {1, 3}) {
        limit_threads(threads);
        Workspace w = long_eastwards();
        distances[threads == 1 ? 0 : 1] = merged(w);
        limit_threads(0);
        for (int i = 2; i <= long_line; ++i) {
            ASSERT_EQ(w.distances[i],
                      distance_along(w, w.stations(i, column_east), w.stations(i, column_north)));
        }
    }
    EXPECT_EQ(distances[0].size(), static_cast<std::size_t>(long_line));
    EXPECT_EQ(distances[0], distances[1]);
}

TEST(Merge, one_station_of_a_long_line_that_runs_back_is_found_wherever_it_stands) {
    for (const int back : {3, 16384, 16385, 16386, 100'000, long_line - 1}) {
        Workspace w = long_eastwards();
        w.stations(back, column_east) -= 3;
        EXPECT_EQ(merged(w).size(), static_cast<std::size_t>(long_line - 1)) << back;
    }
}

TEST(CutToKept, rows_pass_through_single_precision) {
    Workspace w =
        eastwards({{500000.03, 7000000.3, 1.5}, {500000.03, 7000000.3, 9}, {500100.07, 7000000.3, 2.5}});
    const auto kept = static_cast<int>(merged(w).size());
    ASSERT_EQ(kept, 2);
    ASSERT_TRUE(cut_to_kept_stations(kept, w));
    EXPECT_EQ(w.station_count, 2);
    EXPECT_EQ(w.allocated_stations, 2);
    EXPECT_EQ(w.stations.rows(), 2);
    EXPECT_EQ(w.mag.data.stations(), 2);
    EXPECT_EQ(w.grav.data.stations(), 2);
    EXPECT_EQ(w.stations(1, column_east), static_cast<double>(500000.03F));
    EXPECT_EQ(w.stations(1, column_north), static_cast<double>(7000000.3F));
    EXPECT_EQ(w.origin_east, static_cast<double>(500000.03F));
    EXPECT_EQ(w.mag.data(1, row_raw, stage_observed), 1.5F);
    EXPECT_EQ(w.mag.data(2, row_raw, stage_observed), 2.5F);
    EXPECT_THAT(w.distances.span(),
                ElementsAre(0, DoubleEq(static_cast<double>(500100.07F) - static_cast<double>(500000.03F))));
}

TEST(CutToKept, a_line_that_collapses_when_rounded_is_refused) {
    Workspace w = eastwards({{5000000.01, 0}, {5000000.01, 0}, {5000000.02, 0}});
    const auto kept = static_cast<int>(merged(w).size());
    ASSERT_EQ(kept, 2);
    EXPECT_FALSE(cut_to_kept_stations(kept, w));
    EXPECT_EQ(w.station_count, 3);
    EXPECT_EQ(w.stations.rows(), 3);
}

TEST(CutToKept, a_coordinate_too_large_for_a_single_is_an_overflow) {
    Workspace w = eastwards({{0, 0}, {0, 0}, {1e39, 0}});
    const auto kept = static_cast<int>(merged(w).size());
    EXPECT_THROW(cut_to_kept_stations(kept, w), Fault);
}

}  // namespace
}  // namespace anomalis::intake
