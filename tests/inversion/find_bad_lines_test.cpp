#include <gtest/gtest.h>

#include "find_line.h"
#include "inversion/find/find_bodies.h"

namespace anomalis::inversion {
namespace {

TEST(FindBadLines, pure_noise_holds_no_body) {
    FindLine line;
    line.bury(7);
    const FindResult result = line.find(at_most(2));
    EXPECT_TRUE(result.models.empty());
    EXPECT_EQ(result.label, "No body stands out of the noise");
    EXPECT_TRUE(result.faults.empty());
}

TEST(FindBadLines, a_flat_line_holds_no_body) {
    FindLine line;
    line.renew();
    const FindResult result = line.find(at_most(2));
    EXPECT_TRUE(result.models.empty());
    EXPECT_TRUE(says(result.remarks, "the same at every station"));
}

TEST(FindBadLines, a_regional_alone_holds_no_body) {
    FindLine line;
    line.bury(9);
    for (int i = 1; i <= stations; ++i)
        line.workspace().mag.data(i, row_raw, stage_observed) += static_cast<float>(100 + 3 * i);
    line.renew();
    EXPECT_TRUE(line.find(at_most(2)).models.empty());
}

TEST(FindBadLines, a_spike_of_one_station_is_told_and_is_no_body) {
    FindLine line;
    line.bury(11);
    line.workspace().mag.data(30, row_raw, stage_observed) += 500;
    line.renew();
    const FindResult result = line.find(at_most(2));
    EXPECT_TRUE(result.models.empty());
    EXPECT_TRUE(says(result.remarks, "The reading at 580 m stands alone"));
}

TEST(FindBadLines, a_step_at_the_end_puts_no_body_beyond_the_line) {
    FindLine line;
    line.add_dyke(500, 60, 30, 70, 40000);
    line.bury();
    for (int i = stations - 2; i <= stations; ++i)
        line.workspace().mag.data(i, row_raw, stage_observed) += 60;
    line.renew();
    const FindResult result = line.find(at_most(3));
    ASSERT_FALSE(result.models.empty());
    for (const ModelBody& body : result.models.front().bodies) {
        EXPECT_GE(body.distance.value, 0);
        EXPECT_LE(body.distance.value, (stations - 1) * spacing);
    }
}

TEST(FindBadLines, twenty_stations_are_enough_for_one_body) {
    FindLine line(20);
    line.add_dyke(190, 60, 30, 70, 80000);
    line.bury();
    const FindResult result = line.find(at_most(8));
    ASSERT_FALSE(result.models.empty());
    EXPECT_LE(result.models.front().found, 2);
}

TEST(FindBadLines, a_handful_of_stations_is_told) {
    FindLine line(9);
    line.bury();
    const FindResult result = line.find(at_most(2));
    EXPECT_TRUE(result.models.empty());
    EXPECT_TRUE(says(result.remarks, "too few stations"));
}

TEST(FindBadLines, a_gap_in_the_line_is_no_body) {
    FindLine line;
    Workspace& w = line.workspace();
    for (int i = 31; i <= stations; ++i) {
        w.stations(i, column_east) += 600;
        w.distances[i] += 600;
    }
    w.last_distance = w.distances[stations];
    line.add_dyke(300, 60, 30, 70, 40000);
    line.bury();
    const FindResult result = line.find(at_most(2));
    ASSERT_FALSE(result.models.empty());
    EXPECT_EQ(result.models.front().found, 1);
    expect_sheet(result.models.front().bodies.front(), 300, 60);
}

TEST(FindBadLines, a_window_outside_the_line_is_told) {
    FindLine line;
    line.bury();
    line.workspace().first_station = 200;
    line.workspace().last_station = 300;
    const FindResult result = line.find(at_most(1));
    EXPECT_TRUE(result.models.empty());
    EXPECT_FALSE(result.faults.empty());
}

TEST(FindBadLines, no_field_and_a_field_along_the_strike_are_told) {
    for (const EarthField field : {EarthField{0, -60, 0}, EarthField{50000, 0, 0}}) {
        FindLine line;
        line.bury();
        line.workspace().field = field;
        line.renew();
        const FindResult result = line.find(at_most(1));
        EXPECT_TRUE(result.models.empty());
        EXPECT_TRUE(says(result.remarks, "no anomaly in this field"));
    }
}

TEST(FindBadLines, stopped_at_any_moment_it_gives_what_was_found) {
    FindLine line;
    line.add_dyke(300, 50, 20, 80, 40000);
    line.bury();
    for (const int turns : {0, 1, 5, 20, 60}) {
        CountingObserver observer(turns);
        const FindResult result = find_bodies(line.workspace(), at_most(1), observer);
        EXPECT_EQ(!result.models.empty(), !observer.sizes.empty()) << turns;
        EXPECT_EQ(line.workspace().body_count, 0);
        EXPECT_TRUE(result.faults.empty());
    }
    CountingObserver observer(0);
    EXPECT_TRUE(find_bodies(line.workspace(), at_most(1), observer).stopped);
}

}  // namespace
}  // namespace anomalis::inversion
