#include "show/handles/handle_marks.h"

#include <gtest/gtest.h>

#include "chart/ax_grapher.h"
#include "support/recording_device.h"

namespace anomalis::show {

namespace {

/// A chart whose plot is 100 m by 40 m.
struct Marked {
    chart::RecordingDevice device{15000, 6000};
    chart::AX_Grapher chart;
    std::vector<Handle> handles{{HandleKind::place, {50, 20}, {}},
                                {HandleKind::bottom, {50, 10}, {0, 60}, {}, 90}};

    Marked() {
        chart.SetSurface(&device);
        chart.XAxisMin(0);
        chart.XAxisMax(100);
        chart.YAxisMin(0);
        chart.YAxisMax(40);
        const std::vector<double> xs{0, 100}, ys{0, 0};
        const std::vector<chart::ChartRow> rows{{chart::x_row, xs}, {chart::line_series, ys}};
        chart.RegisterData(rows);
        chart.DisplayChart();
    }
    const Handle* under(double dx, double dy, double reach) {
        const chart::Point at = handle_place(chart, handles[1]);
        return handle_under(chart, handles, {at.x + dx, at.y + dy}, reach);
    }
};

}  // namespace

TEST(HandleMarks, a_press_near_enough_takes_hold_and_a_finger_from_further_off) {
    Marked sample;
    EXPECT_EQ(sample.under(0, 0, mouse_reach), &sample.handles[1]);
    EXPECT_EQ(sample.under(5 * handle_pixel, 4 * handle_pixel, mouse_reach), &sample.handles[1]);
    EXPECT_EQ(sample.under(12 * handle_pixel, 0, mouse_reach), nullptr);
    EXPECT_EQ(sample.under(18 * handle_pixel, 0, finger_reach), &sample.handles[1]);
    EXPECT_GE(2 * mouse_reach / handle_pixel, 9);
    EXPECT_GE(finger_reach / handle_pixel, 20);
}

TEST(HandleMarks, the_nearer_of_two_is_meant) {
    Marked sample;
    sample.handles[0].at = {50, 10};
    EXPECT_EQ(sample.under(0, 10, finger_reach), &sample.handles[1]);
    EXPECT_EQ(sample.under(0, -50, finger_reach), &sample.handles[0]);
}

TEST(HandleMarks, the_hot_one_is_filled_and_a_lever_has_its_line) {
    Marked sample;
    sample.handles[1].pivot = chart::Point{50, 20};
    const chart::TopMarks cold = handle_marks(sample.handles, std::nullopt);
    const chart::TopMarks hot = handle_marks(sample.handles, HandleKind::bottom);
    ASSERT_EQ(cold.marks.size(), 2U);
    EXPECT_EQ(cold.lines.size(), 1U);
    EXPECT_EQ(cold.marks[1].fill, chart::white);
    EXPECT_NE(hot.marks[1].fill, chart::white);
    EXPECT_EQ(hot.marks[0], cold.marks[0]);
}

TEST(HandleMarks, the_pointer_says_which_way_a_handle_goes) {
    const auto shape = [](double rise) { return handle_pointer({HandleKind::far_end, {}, {}, {}, rise}); };
    EXPECT_EQ(shape(0), chart::PointerShape::across);
    EXPECT_EQ(shape(180), chart::PointerShape::across);
    EXPECT_EQ(shape(-90), chart::PointerShape::upright);
    EXPECT_EQ(shape(45), chart::PointerShape::rising);
    EXPECT_EQ(shape(135), chart::PointerShape::falling);
    EXPECT_EQ(shape(-135), chart::PointerShape::rising);
    EXPECT_EQ(handle_pointer({HandleKind::place, {}, {}}), chart::PointerShape::move);
    EXPECT_EQ(handle_pointer({HandleKind::dip, {}, {}, chart::Point{}}), chart::PointerShape::turn);
}

}  // namespace anomalis::show
