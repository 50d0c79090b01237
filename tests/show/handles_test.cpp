#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

#include "core/angles.h"
#include "edit/body_drag.h"
#include "edit/line_sample.h"
#include "forward/shape/reference_point.h"
#include "show/handles/plan_handles.h"
#include "show/handles/section_handles.h"

namespace anomalis::show {

namespace {

constexpr HandleView section_view{{0, 2500, -600, 200}, 30, 30, -600, 2500};
constexpr HandleView plan_view{{498500, 504000, 6997250, 7002750}, 2, 2, 0, 0};

/// A line due east with one body on it, and its handles as a hand has them.
struct Handled : edit::LineSample {
    explicit Handled(std::int32_t type = thick_sheet, Formulas formulas = Formulas::classic) {
        load();
        workspace().formulas = formulas;
        add_body(1260, 60, type);
        workbench.view.current_body = 1;
        place();
    }
    ModelBody& body() { return workspace().body(1); }
    void place() {
        ModelBody& b = body();
        forward::update_body_reference_point(workspace(), static_cast<double>(b.distance.value), b.east,
                                             b.north);
    }
    void set(BodyParam& param, double value) {
        param.value = static_cast<float>(value);
        place();
    }
    std::vector<Handle> handles(bool plan) {
        return plan ? plan_handles(workspace(), body(), plan_view)
                    : section_handles(workspace(), body(), section_view);
    }
    bool has(bool plan, HandleKind kind) {
        const auto all = handles(plan);
        return std::any_of(all.begin(), all.end(), [&](const Handle& h) { return h.kind == kind; });
    }
    Handle handle(bool plan, HandleKind kind) {
        for (const Handle& h : handles(plan))
            if (h.kind == kind) return h;
        ADD_FAILURE() << "no handle " << static_cast<int>(kind);
        return {kind, {}, {}};
    }
    void drag(bool plan, HandleKind kind, chart::Point target) {
        edit::BodyDrag hand(workbench);
        const auto values = plan ? drag_plan_handle(workspace(), hand.start(), plan_view, kind, target)
                                 : drag_section_handle(workspace(), hand.start(), section_view, kind, target);
        hand.set(values);
    }
};

struct Chance {
    std::mt19937 engine{20};
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine);
    }
    template <class List>
    auto of(const List& list) {
        return list[static_cast<std::size_t>(between(0, static_cast<double>(list.size()) - 1e-9))];
    }
    void set(BodyParam& param, double low, double high) {
        param.value = static_cast<float>(between(low, high));
    }
};

/// Any body that a file may bring, its strike well off the line.
void make_any(Chance& chance, Handled& sample) {
    ModelBody& b = sample.body();
    sample.workspace().formulas = chance.between(0, 1) < 0.5 ? Formulas::classic : Formulas::exact;
    b.type = chance.of(std::array{thin_sheet, thick_sheet, edge, sloping_step, sphere, pipe, wire});
    chance.set(b.distance, 900, 1600);
    chance.set(b.top, -200, 90);
    chance.set(b.strike, -60, 60);
    if (chance.between(0, 1) < 0.5) b.strike.value += 180;
    chance.set(b.dip, is_round(b.type) ? -40 : 15, is_round(b.type) ? 40 : 165);
    chance.set(b.width, 70, 200);
    chance.set(b.depth_extent, 210, 380);
    chance.set(b.length, 200, 900);
    chance.set(b.offset, 200, 350);  // its middle stays far enough from the line to have a handle
    if (chance.between(0, 1) < 0.5) b.offset.value = -b.offset.value;
    chance.set(b.plunge, -20, 20);
    b.slope.value = chance.of(std::array{0.0F, 0.0F, 8.0F, -8.0F});
    sample.place();
}

/// Where a lever comes to rest for a hand at `target`: on the way there, as long as it was.
chart::Point on_lever(const Handle& lever, chart::Point target) {
    const chart::Point pivot = *lever.pivot;
    const double length = std::hypot(lever.at.x - pivot.x, lever.at.y - pivot.y);
    const double away = std::hypot(target.x - pivot.x, target.y - pivot.y);
    return {pivot.x + (target.x - pivot.x) * length / away, pivot.y + (target.y - pivot.y) * length / away};
}

/// Where a handle comes to rest that moves along one line alone.
chart::Point on_line(const Handle& handle, chart::Point target) {
    const double angle = handle.rise * radians_per_degree;
    const double t = (target.x - handle.at.x) * std::cos(angle) + (target.y - handle.at.y) * std::sin(angle);
    return {handle.at.x + t * std::cos(angle), handle.at.y + t * std::sin(angle)};
}

bool at_the_flattest(const ModelBody& body) {
    return std::abs(std::abs(body.dip.value - 90) - (90 - flattest_dip)) < 1e-4;
}

/// How wide of its target a rim passes, m: across the line a circle is drawn wider than it is.
double off_the_rim(const Handle& now, const ModelBody& body, chart::Point target) {
    const double radius = static_cast<double>(body.width.value) / 2;
    const double stretch = (now.at.x - static_cast<double>(body.distance.value)) / radius;
    return std::hypot((target.x - static_cast<double>(body.distance.value)) / stretch, target.y - now.at.y) -
           radius;
}

/// The section draws a sheet upright that is so within a tenth of a degree.
double tolerance_of(const ModelBody& body) {
    return std::abs(body.dip.value - 90) < 0.1F ? 1.0 : 0.01;
}

}  // namespace

TEST(Handles, of_the_section_come_to_where_they_are_dragged_whatever_the_body) {
    Chance chance;
    Handled sample;
    int tried = 0;
    for (int turn = 0; turn < 400; ++turn) {
        make_any(chance, sample);
        const ModelBody before = sample.body();
        for (const Handle& handle : sample.handles(false)) {
            const chart::Point target{handle.at.x + chance.between(-15, 15),
                                      handle.at.y + chance.between(-15, 15)};
            sample.drag(false, handle.kind, target);
            const Handle now = sample.handle(false, handle.kind);
            chart::Point wanted = target;
            if (handle.kind == HandleKind::bottom) wanted.x = now.at.x;
            if (handle.kind == HandleKind::dip) wanted = on_lever(handle, target);
            if (handle.kind == HandleKind::dip && at_the_flattest(sample.body())) {
                EXPECT_GT(target.y, handle.pivot->y - 1) << "only for a hand at the level or above";
                wanted = now.at;
            }
            if (handle.kind == HandleKind::rim) {
                EXPECT_NEAR(off_the_rim(now, sample.body(), target), 0, 0.01) << turn;
                wanted = now.at;
            }
            const double near = tolerance_of(sample.body());
            EXPECT_NEAR(now.at.x, wanted.x, near) << turn << " kind " << static_cast<int>(handle.kind);
            EXPECT_NEAR(now.at.y, wanted.y, near) << turn << " kind " << static_cast<int>(handle.kind);
            sample.body() = before;
            ++tried;
        }
    }
    EXPECT_GT(tried, 1000);
}

TEST(Handles, of_the_plan_come_to_where_they_are_dragged_whatever_the_body) {
    Chance chance;
    Handled sample;
    int tried = 0;
    for (int turn = 0; turn < 400; ++turn) {
        make_any(chance, sample);
        const ModelBody before = sample.body();
        for (const Handle& handle : sample.handles(true)) {
            const chart::Point target{handle.at.x + chance.between(-40, 40),
                                      handle.at.y + chance.between(-40, 40)};
            sample.drag(true, handle.kind, target);
            const Handle now = sample.handle(true, handle.kind);
            chart::Point wanted = on_line(handle, target);  // the line is due east, a place has no rise
            if (handle.kind == HandleKind::strike) wanted = on_lever(handle, target);
            EXPECT_NEAR(now.at.x, wanted.x, 0.05) << turn << " kind " << static_cast<int>(handle.kind);
            EXPECT_NEAR(now.at.y, wanted.y, 0.05) << turn << " kind " << static_cast<int>(handle.kind);
            sample.body() = before;
            ++tried;
        }
    }
    EXPECT_GT(tried, 800);
}

TEST(Handles, one_that_stays_changes_nothing) {
    Chance chance;
    Handled sample;
    for (int turn = 0; turn < 200; ++turn) {
        make_any(chance, sample);
        const ModelBody before = sample.body();
        for (const bool plan : {false, true})
            for (const Handle& handle : sample.handles(plan)) {
                sample.drag(plan, handle.kind, handle.at);
                for (const BodyParameter& row : body_parameters())
                    EXPECT_NEAR((sample.body().*row.slot).value, (before.*row.slot).value, 0.12)
                        << row.name << " kind " << static_cast<int>(handle.kind);
                sample.body() = before;
            }
    }
}

TEST(Handles, a_corner_leaves_the_other_side_where_it_is) {
    Handled sample;
    sample.set(sample.body().dip, 70);
    const double far = sample.handle(false, HandleKind::far_corner).at.x;
    const double near = sample.handle(false, HandleKind::near_corner).at.x;
    sample.drag(false, HandleKind::near_corner, {near - 30, 55});
    EXPECT_NEAR(sample.handle(false, HandleKind::far_corner).at.x, far, 1e-3);
    EXPECT_NEAR(sample.body().width.value, far - near + 30, 1e-3);
    EXPECT_EQ(sample.body().top.value, 55);
    sample.drag(false, HandleKind::far_corner, {far + 20, 40});
    EXPECT_NEAR(sample.body().distance.value, near - 30, 1e-3);
    EXPECT_EQ(sample.body().top.value, 40);
}

TEST(Handles, sizes_stay_above_nothing) {
    Handled sample;
    const Handle far = sample.handle(false, HandleKind::far_corner);
    sample.drag(false, HandleKind::far_corner, {far.at.x - 5000, 60});
    EXPECT_NEAR(sample.body().width.value, least_size, 1e-6);
    sample.set(sample.body().width, 100);
    const double right = sample.handle(false, HandleKind::far_corner).at.x;
    sample.drag(false, HandleKind::near_corner, {right + 300, 60});
    EXPECT_NEAR(sample.body().width.value, least_size, 1e-6);
    EXPECT_NEAR(sample.handle(false, HandleKind::far_corner).at.x, right, 0.02);
    sample.drag(false, HandleKind::bottom, {1300, 500});
    EXPECT_NEAR(sample.body().depth_extent.value, least_size, 1e-6);
    sample.set(sample.body().length, 300);
    sample.drag(true, HandleKind::far_end, {501260, 6990000});
    EXPECT_NEAR(sample.body().length.value, least_size, 1e-6);
}

TEST(Handles, a_body_without_lower_end_gets_one_when_its_bottom_is_raised) {
    Handled sample;
    sample.set(sample.body().depth_extent, 0);
    EXPECT_FALSE(sample.has(false, HandleKind::near_foot));
    const Handle bottom = sample.handle(false, HandleKind::bottom);
    EXPECT_NEAR(bottom.at.y, section_view.bottom, 1e-6);
    EXPECT_GT(bottom.shift.y, 0) << "inside the plot";
    sample.drag(false, HandleKind::bottom, {bottom.at.x, bottom.at.y - 50});
    EXPECT_EQ(sample.body().depth_extent.value, 0);
    sample.drag(false, HandleKind::bottom, bottom.at);
    EXPECT_EQ(sample.body().depth_extent.value, 0);
    sample.drag(false, HandleKind::bottom, {bottom.at.x, -200});
    EXPECT_NEAR(sample.body().depth_extent.value, 260, 1e-3);
    EXPECT_TRUE(sample.has(false, HandleKind::near_foot));
}

TEST(Handles, a_body_without_ends_gets_two_when_one_is_drawn_in) {
    Handled sample;
    sample.set(sample.body().length, 0);
    const Handle far = sample.handle(true, HandleKind::far_end);
    EXPECT_TRUE(plan_view.shown.contains(far.at));
    EXPECT_FALSE(sample.has(true, HandleKind::offset));
    sample.drag(true, HandleKind::far_end, {far.at.x, far.at.y + 20});
    EXPECT_EQ(sample.body().length.value, 0);
    sample.drag(true, HandleKind::far_end, {far.at.x, 7000200});
    EXPECT_NEAR(sample.body().length.value, 400, 1e-2);
    EXPECT_EQ(sample.body().offset.value, 0);
    sample.drag(true, HandleKind::near_end, {far.at.x, 7000150});
    EXPECT_NEAR(sample.body().length.value, 50, 1e-2);
    EXPECT_NEAR(sample.body().offset.value, 175, 1e-2) << "the other end stays";
    EXPECT_TRUE(sample.has(true, HandleKind::offset));
}

TEST(Handles, a_foot_that_no_dip_brings_there_keeps_the_dip) {
    // A thin sheet gets wider along the level the flatter it lies: this far foot never comes so far left.
    Handled sample(thin_sheet, Formulas::exact);
    sample.set(sample.body().width, 200);
    sample.set(sample.body().depth_extent, 60);
    const Handle foot = sample.handle(false, HandleKind::far_foot);
    sample.drag(false, HandleKind::far_foot, {foot.at.x - 300, foot.at.y - 20});
    EXPECT_EQ(sample.body().dip.value, 90);
    EXPECT_NEAR(sample.body().depth_extent.value, 80, 1e-3);
}

TEST(Handles, a_dip_is_turned_on_its_own_side_of_the_level) {
    Handled sample;
    const chart::Point pivot = *sample.handle(false, HandleKind::dip).pivot;
    sample.drag(false, HandleKind::dip, {pivot.x + 40, pivot.y - 40});
    EXPECT_NEAR(sample.body().dip.value, 45, 1e-3);
    sample.drag(false, HandleKind::dip, {pivot.x - 40, pivot.y - 40});
    EXPECT_NEAR(sample.body().dip.value, 135, 1e-3);
    sample.drag(false, HandleKind::dip, {pivot.x + 40, pivot.y + 5});
    EXPECT_NEAR(sample.body().dip.value, flattest_dip, 1e-3);
    sample.drag(false, HandleKind::dip, {pivot.x - 40, pivot.y + 5});
    EXPECT_NEAR(sample.body().dip.value, 180 - flattest_dip, 1e-3);
}

TEST(Handles, a_strike_turns_on_through_its_whole_turns_and_no_further) {
    Handled sample;
    const chart::Point middle{sample.body().east, sample.body().north};
    const auto turn_to = [&](double bearing) {
        sample.drag(true, HandleKind::strike,
                    {middle.x + 500 * std::sin(bearing * radians_per_degree),
                     middle.y + 500 * std::cos(bearing * radians_per_degree)});
        return static_cast<double>(sample.body().strike.value);
    };
    EXPECT_NEAR(turn_to(90), 90, 1e-3);
    EXPECT_NEAR(turn_to(170), 170, 1e-3);
    EXPECT_NEAR(turn_to(-170), 190, 1e-3);
    EXPECT_NEAR(turn_to(-10), 350, 1e-3);
    EXPECT_NEAR(turn_to(20), 20, 1e-3);
}

TEST(Handles, only_what_has_a_section_has_handles_there) {
    Handled sample;
    sample.set(sample.body().strike, 90);
    EXPECT_TRUE(sample.handles(false).empty());
    EXPECT_TRUE(sample.has(true, HandleKind::strike)) << "the plan still turns it";
    Handled ball(sphere);
    EXPECT_EQ(ball.handles(false).size(), 1U) << "without an outline the middle alone";
    EXPECT_EQ(ball.handles(true).size(), 1U);
    ball.workspace().formulas = Formulas::exact;
    EXPECT_TRUE(ball.has(false, HandleKind::rim));
    Handled step(edge);
    EXPECT_FALSE(step.has(false, HandleKind::far_corner)) << "it goes on to one side";
    EXPECT_TRUE(step.has(false, HandleKind::dip));
}

TEST(Handles, what_lies_out_of_view_has_none) {
    Handled sample;
    sample.set(sample.body().distance, 5000);
    EXPECT_TRUE(sample.handles(false).empty());
    sample.set(sample.body().distance, 1260);
    sample.set(sample.body().depth_extent, 2000);
    EXPECT_FALSE(sample.has(false, HandleKind::bottom));
    EXPECT_TRUE(sample.has(false, HandleKind::dip)) << "the lever stays near the top";
}

TEST(Handles, those_of_a_narrow_body_stand_apart) {
    Handled sample;
    sample.set(sample.body().width, 1);
    EXPECT_FALSE(sample.has(false, HandleKind::near_corner));
    const Handle place = sample.handle(false, HandleKind::place);
    const Handle corner = sample.handle(false, HandleKind::far_corner);
    const double apart = (corner.at.x - place.at.x) * section_view.x_scale + corner.shift.x - place.shift.x;
    EXPECT_GE(apart, 16 * handle_pixel);
}

}  // namespace anomalis::show
