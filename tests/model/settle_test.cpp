#include "model/settle.h"

#include <gtest/gtest.h>

#include "inversion/line_session.h"

namespace anomalis::model {

namespace {

/// A line of 101 stations with settings as they were before it was loaded.
struct BeforeLoad : inversion::LineSession {
    BeforeLoad() {
        Workspace& w = workspace();
        w.read_from = w.read_as = line_inputs(w);
        w.mag.base = unset;
        w.mag.mean_at_load = 7;
        w.first_station = w.last_station = 0;
        w.first_distance = w.last_distance = 0;
    }
};

}  // namespace

TEST(SettleOnLine, finds_window_and_base_levels_as_a_load_does) {
    BeforeLoad line;
    Workspace& w = line.workspace();
    settle_on_line(w);
    EXPECT_EQ(w.mag.base, 7);
    EXPECT_EQ(w.grav.base, 0) << "typed levels stay";
    EXPECT_EQ(w.first_station, 1);
    EXPECT_EQ(w.last_station, 101);
    EXPECT_EQ(w.last_distance, 1000);
    w.first_station = w.last_station = 0;
    w.first_distance = 200;
    w.last_distance = 400;
    settle_on_line(w);
    EXPECT_EQ(w.first_station, 21);
    EXPECT_EQ(w.last_station, 41);
}

TEST(SettleOnLine, takes_the_way_of_reading_that_the_load_left) {
    BeforeLoad line;
    Workspace& w = line.workspace();
    w.read_as->station_spacing = 2.5F;
    w.read_from->station_spacing = 0.1F;
    w.station_spacing = 0.1F;
    settle_on_line(w);
    EXPECT_EQ(w.station_spacing, 2.5F);
    EXPECT_EQ(w.station_count, 101);
    w.station_spacing = 0.2F;
    settle_on_line(w);
    EXPECT_EQ(w.station_count, 0) << "this line would be read in another way";
}

TEST(SettleOnLine, without_a_line_leaves_the_settings_alone) {
    BeforeLoad line;
    Workspace& w = line.workspace();
    drop_stations(w);
    settle_on_line(w);
    EXPECT_EQ(w.mag.base, unset);
    EXPECT_EQ(w.first_station, 0);
}

TEST(SettleOnLine, empties_the_rows_that_the_filters_leave_out) {
    BeforeLoad line;
    Workspace& w = line.workspace();
    const auto filled = [&](int row) {
        for (const Stage stage : {stage_observed, stage_calculated})
            for (float& value : w.grav.data.row(row, stage)) value = 1;
    };
    for (int row = row_raw; row <= row_total_gradient; ++row) filled(row);
    settle_on_line(w);
    EXPECT_EQ(w.grav.data(5, row_gradient, stage_observed), 1);
    EXPECT_EQ(w.grav.data(5, row_horizontal, stage_observed), 0);
    EXPECT_EQ(w.grav.data(5, row_total_gradient, stage_calculated), 0);
    w.processing.vg_filter_width = 0;
    settle_on_line(w);
    EXPECT_EQ(w.grav.data(5, row_gradient, stage_calculated), 0);
    EXPECT_EQ(w.grav.data(5, row_residual, stage_calculated), 1);
}

}  // namespace anomalis::model
