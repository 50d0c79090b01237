#include <cmath>
#include <gtest/gtest.h>

#include "chart_rig.h"

namespace anomalis::chart {
namespace {

/// A host that keeps presses near one place.
class Holder : public EventLog {
  public:
    bool HoldPress(int button, int, float x, float) override {
        if (button != 1 || std::abs(x - 5000.0F) > 100.0F) return false;
        names.emplace_back("HoldPress");
        return true;
    }
    void HeldMoved(int shift, float x, float) override {
        names.push_back("HeldMoved(" + std::to_string(shift) + ")");
        last_x = x;
        if (on_move) on_move();
    }
    void HeldEnded(bool given_up) override { names.emplace_back(given_up ? "GivenUp" : "Released"); }
    void PointerLeft() override { names.emplace_back("PointerLeft"); }
    float last_x = 0;
    std::function<void()> on_move;
};

struct Held : Rig {
    Held() {
        make_plain();
        register_series({0.0, 7400.0}, {690.0, 690.0});
        chart.SetEvents(&holder);
        chart.DisplayChart();
    }
    std::vector<std::string> told() {
        std::vector<std::string> without_moves;
        for (const std::string& name : holder.names)
            if (name != "MouseMove") without_moves.push_back(name);
        return without_moves;
    }
    Holder holder;
};

using Told = std::vector<std::string>;

TEST(HeldPress, goes_to_the_host_alone_until_it_is_released) {
    Held rig;
    rig.press(1, 5000.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 16);
    rig.move(1, 6000.0, 1000.0);
    rig.move(1, 6100.0, 1000.0, shift_mark);
    rig.release(1, 6100.0, 1000.0);
    EXPECT_EQ(rig.told(), (Told{"HoldPress", "HeldMoved(0)", "HeldMoved(1)", "Released"}));
    EXPECT_EQ(rig.holder.last_x, 6100.0F);
    EXPECT_EQ(rig.chart.CurrentZoom(), ZoomValues{});
    EXPECT_EQ(rig.chart.MouseMode(), 0);
}

TEST(HeldPress, elsewhere_the_chart_has_its_own_gestures) {
    Held rig;
    rig.press(1, 3000.0, 2000.0);
    EXPECT_EQ(rig.chart.MouseMode(), 4);
    rig.move(1, 3000.0, 1850.0);
    rig.release(1, 3000.0, 1850.0);
    EXPECT_NEAR(rig.chart.CurrentZoom().zoom_x, 1.21, 1e-9);
    EXPECT_EQ(rig.told(), (Told{"MouseDown(1, 0)", "ViewChanged", "MouseUp(1, 0)", "Click"}));
}

TEST(HeldPress, is_given_up_by_escape_another_button_and_two_fingers) {
    for (int way = 0; way < 3; ++way) {
        Held rig;
        rig.press(1, 5000.0, 2000.0);
        if (way == 0) rig.chart.HandleKeyDown(27, 0);
        if (way == 1) rig.press(2, 5000.0, 2000.0);
        if (way == 2) rig.chart.HandlePinch(1.5, 5000.0F, 2000.0F);
        EXPECT_EQ(std::count(rig.holder.names.begin(), rig.holder.names.end(), "GivenUp"), 1) << way;
        EXPECT_EQ(rig.chart.MouseMode(), 0) << way;
        rig.move(1, 6000.0, 1000.0);
        EXPECT_EQ(rig.holder.count("HeldMoved"), 0) << way;
    }
}

TEST(HeldPress, whose_release_was_lost_ends_where_it_was) {
    Held rig;
    rig.press(1, 5000.0, 2000.0);
    rig.move(1, 5500.0, 2000.0);
    rig.move(0, 9000.0, 2000.0);
    EXPECT_EQ(rig.told(), (Told{"HoldPress", "HeldMoved(0)", "Released"}));
    EXPECT_EQ(rig.holder.last_x, 5500.0F);
}

TEST(HeldPress, holds_through_redraws_of_the_host_and_stops_wheel_and_panning) {
    Held rig;
    rig.holder.on_move = [&] {
        rig.register_series({0.0, 7400.0}, {600.0, 600.0});
        rig.chart.DisplayChart();
    };
    rig.chart.SetZoomValues(2.0, 0.5, 2.0, 0.5);
    const ZoomValues zoom = rig.chart.CurrentZoom();
    rig.press(1, 5000.0, 2000.0);
    rig.move(1, 5500.0, 2000.0);
    rig.chart.HandleWheel(0, 120, 5500.0F, 2500.0F);
    rig.chart.PanBy(500.0, 0.0);
    rig.move(1, 5600.0, 2000.0);
    EXPECT_EQ(rig.holder.count("HeldMoved"), 2);
    EXPECT_EQ(rig.chart.CurrentZoom(), zoom);
    rig.chart.LetGo();
    rig.move(1, 5700.0, 2000.0);
    EXPECT_EQ(rig.holder.count("HeldMoved"), 2);
    EXPECT_EQ(rig.holder.count("Released"), 0) << "the host knows";
}

TEST(HeldPress, before_the_first_display_nobody_is_asked) {
    Rig rig;
    Holder holder;
    rig.chart.SetEvents(&holder);
    rig.press(1, 5000.0, 2000.0);
    EXPECT_FALSE(rig.chart.HandleHold(1, 0, 5000.0F, 2000.0F));
    EXPECT_EQ(holder.count("HoldPress"), 0);
}

TEST(HeldPress, a_host_hears_that_the_pointer_left) {
    Held rig;
    rig.chart.HandleMouseLeave();
    EXPECT_EQ(rig.told(), Told{"PointerLeft"});
}

TEST(TopMarks, are_painted_over_the_picture_and_are_in_no_output) {
    Held rig;
    TopMarks top;
    top.marks.push_back({{{3700.0, 200.0}, {}}, MarkShape::square, 60.0, black, white, 1});
    top.marks.push_back({{{9000.0, 200.0}, {}}, MarkShape::circle, 60.0, black, white, 1});
    top.lines.push_back({{{3700.0, 200.0}, {}}, {{3700.0, 300.0}, {}}, {}});
    top.note = TopNote{{{7300.0, 690.0}, {}}, 100.0, {"Top 4 m", "Width 12.5 m"}};
    rig.chart.ShowTopMarks(top);
    RecordingDevice layer(13500.0, 4500.0);
    layer.stamps = false;
    rig.chart.DrawTopLayer(layer);
    EXPECT_EQ(layer.of_kind(Kind::polygon_fill).size(), 2U) << "a mark in the plot, the box of the note";
    ASSERT_EQ(layer.of_kind(Kind::text).size(), 2U);
    for (const auto& text : layer.of_kind(Kind::text)) {
        EXPECT_GT(text.points.front().x, 0);
        EXPECT_LT(text.points.front().x, 13500.0 - 90.0 * 8) << "the note turns away from the edge";
    }
    RecordingDevice sheet(13500.0, 4500.0);
    rig.chart.DrawTo(sheet, OutputTarget::metafile, screen_mapping(4500.0));
    EXPECT_EQ(sheet.of_kind(Kind::polygon_fill).size(), 1U) << "the ground of the page";
    EXPECT_TRUE(sheet.of_kind(Kind::markers).empty());
    EXPECT_EQ(rig.chart.SavedCount(), 0);
}

TEST(TopMarks, follow_the_zoom_and_keep_their_size) {
    Held rig;
    TopMarks top;
    top.marks.push_back({{{3700.0, 200.0}, {150.0, 0.0}}, MarkShape::square, 60.0, black, white, 1});
    rig.chart.ShowTopMarks(top);
    const auto width = [&] {
        RecordingDevice layer(13500.0, 4500.0);
        layer.stamps = false;
        rig.chart.DrawTopLayer(layer);
        const auto fills = layer.of_kind(Kind::polygon_fill);
        double low = 1e9, high = -1e9;
        for (const Point& p : fills.at(0).points) {
            low = std::min(low, p.x);
            high = std::max(high, p.x);
        }
        return std::pair(high - low, (low + high) / 2);
    };
    const auto [before, place] = width();
    rig.chart.SetZoomValues(2.0, 0.5, 2.0, 0.5);
    const auto [after, other_place] = width();
    EXPECT_NEAR(before, 120.0, 1.0);
    EXPECT_NEAR(after, before, 1e-6);
    EXPECT_NEAR(place, other_place, 1.0) << "the middle of the chart stays";
}

}  // namespace
}  // namespace anomalis::chart
