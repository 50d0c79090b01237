#include <algorithm>

#include "core/body_parameters.h"
#include "show/sketch/sample_shapes.h"
#include "show/sketch/sketch_maker.h"

namespace anomalis::show {

void SketchMaker::set_up_plan() {
    sketch_.frame = plan_frame;
    sketch_.reference = chart::Point{0, 0};
    sample_.strike.value = 30;
    name_view("Plan");
    const auto end = [](double length) { return along({0, 0}, length, 90 - line_bearing); };
    add({Role::line, {end(-125), end(125)}});
    write({128, end(125).y + 13}, "line", Side::left, true);
}

void SketchMaker::in_plan() {
    set_up_plan();
    if (code_ == param_length || code_ == param_offset) {
        sample_.length.value = 78;
        if (code_ == param_offset) sample_.offset.value = 34;
    }
    if (is_round(sample_.type)) sample_.width.value = 30;
    if (code_ == param_rem_d) return measure_declination();
    take(plan_outlines(sample_), plan_outlines(grown()));
    if (!changes_something_) return;
    const double strike = 90 - static_cast<double>(sample_.strike.value);
    if (code_ == param_strike) return measure_bearing(strike);
    measure_along(strike);
}

void SketchMaker::add_north() {
    add({Role::lead, {{0, 0}, {0, 80}}, false, true});
    write({-6, 74}, "N", Side::left, true);
}

void SketchMaker::measure_bearing(double direction) {
    add_north();
    add(lead({0, 0}, along({0, 0}, 88, direction)));
    add(arc({0, 0}, arc_radius, 90, direction));
    write({-6, arc_radius - 4}, caption_, Side::left);
}

void SketchMaker::measure_declination() {
    changes_something_ = true;
    add_north();
    const double declination = 60;
    add({Role::measure, {{0, 0}, along({0, 0}, 84, 90 - declination)}, false, true});
    add({Role::grown,
         {{0, 0}, along({0, 0}, 84, 90 - declination - sketch_growth(sample_.type, code_))},
         false,
         true});
    add(arc({0, 0}, arc_radius, 90, 90 - declination));
    write({-6, arc_radius - 4}, caption_, Side::left);
    write({0, -34}, "remanent magnetisation", Side::middle, true);
}

void SketchMaker::measure_along(double strike) {
    const double across = strike + 90;  // away from the body, on its other side
    const double from = code_ == param_length ? -sample_.length.value / 2.0 : 0;
    const double to = code_ == param_length ? sample_.length.value / 2.0 : sample_.offset.value;
    const auto at = [&](double reach, double beside) {
        return along(along({0, 0}, reach, strike), beside, across);
    };
    for (const double reach : {from, to}) add(lead(at(reach, 0), at(reach, gap + 4)));
    add(measured(at(from, gap), at(to, gap), code_ == param_length));
    const chart::Point label = at((from + to) / 2, gap + 10);
    write(label, caption_, Side::left);
    if (code_ == param_offset) write({label.x, label.y - 14}, "to the middle", Side::left, true);
}

void SketchMaker::seen_across_strike() {
    sketch_.frame = section_frame;
    sketch_.frame.x_low = -130;
    sketch_.frame.x_high = 130;
    name_view("Along strike");
    sample_.length.value = 130;
    sample_.depth_extent.value = 60;
    sample_.width.value = sample_.type == pipe ? 40 : sample_.width.value;
    sample_.top.value = 88;
    if (code_ == param_dip) sample_.dip.value = 18;
    if (code_ == param_plunge) sample_.plunge.value = 14;
    if (code_ == param_offset) sample_.offset.value = 26;
    const auto outlines = [&](const ModelBody& body) { return side_outlines(formulas_, body); };
    take(outlines(sample_), outlines(grown()));
    if (!changes_something_) return;
    sketch_.reference = chart::Point{0, sample_.top.value};
    add({Role::ground, {{-130, ground_level}, {130, ground_level}}});
    add({Role::line, {{0, -12}, {0, ground_level}}});
    write({6, -12}, "line", Side::right, true);
    write({126, -12}, "strike \xE2\x86\x92", Side::left, true);
    if (code_ == param_length || code_ == param_offset) return measure_from_side();
    const bool classic_pipe = sample_.type == pipe && formulas_ == Formulas::classic;
    const chart::Point turn{classic_pipe ? -sample_.length.value / 2.0 : 0.0, sample_.top.value};
    if (classic_pipe) sketch_.reference = turn;
    const double fall = code_ == param_dip ? sample_.dip.value : sample_.plunge.value;
    add(lead(turn, {turn.x + 84, turn.y}));
    if (sample_.type == pipe) add(lead(turn, along(turn, 84, -fall)));
    add(arc(turn, 66, 0, -fall));
    write({turn.x + 78, turn.y + 10}, caption_, Side::right);
}

void SketchMaker::measure_from_side() {
    const SketchPoints& corners = outline();
    const auto [low, high] = std::ranges::minmax_element(corners, {}, &chart::Point::x);
    const double y = sample_.top.value - sample_.width.value / 2.0 - 12;
    const double from = code_ == param_length ? low->x : 0;
    const double to = code_ == param_length ? high->x : (low->x + high->x) / 2;
    for (const double x : {from, to}) add(lead({x, sample_.top.value}, {x, y - 4}));
    add(measured({from, y}, {to, y}, code_ == param_length));
    write({(from + to) / 2, y - 13}, caption_, Side::middle);
}

}  // namespace anomalis::show
