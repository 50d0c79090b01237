#include "core/body_parameters.h"
#include "show/sketch/sample_shapes.h"
#include "show/sketch/sketch_maker.h"

namespace anomalis::show {

std::vector<SketchPoints> SketchMaker::in_section(const ModelBody& body) const {
    const bool pair = body.type == wire && (code_ == param_offset || code_ == param_dip);
    if (!pair) return section_outlines(formulas_, body);
    const WirePair wires = wire_pair(body, side_);
    const double radius = body.width.value / 2.0;
    return {sketch_circle(wires.first, radius), sketch_circle(wires.second, radius)};
}

void SketchMaker::in_section() {
    set_up_section();
    if (code_ == param_slope) sample_.slope.value = 14;
    if (code_ == param_top && !is_round(sample_.type)) sample_.depth_extent.value = 60;
    if (code_ == param_depth_extent) sample_.depth_extent.value = 75;
    take(in_section(sample_), in_section(grown()));
    if (!changes_something_) return;
    measure_in_section();
}

void SketchMaker::set_up_section() {
    sketch_.frame = section_frame;
    sketch_.reference = chart::Point{sample_.distance.value, sample_.top.value};
    add({Role::ground, {{section_frame.x_low, ground_level}, {section_frame.x_high, ground_level}}});
    name_view("Section");
}

void SketchMaker::measure_in_section() {
    switch (code_) {
        case param_distance:
            return measure_distance();
        case param_top:
            return measure_elevation();
        case param_dip:
            return sample_.type == wire ? measure_rotation() : measure_dip();
        case param_slope:
            return measure_slope();
        case param_width:
            return measure_width();
        case param_depth_extent:
            return measure_depth_extent();
        case param_offset:
            return measure_separation();
        default:
            return;
    }
}

void SketchMaker::measure_distance() {
    const chart::Point above{reference().x, ground_level};
    add(lead(reference(), above));
    add(measured({section_frame.x_low + 2, ground_level - 8}, {above.x, ground_level - 8}, false));
    write({section_frame.x_low + 4, ground_level - 20}, caption_, Side::right);
    write({130, -12}, "from the first station", Side::middle, true);
}

void SketchMaker::measure_elevation() {
    add({Role::line, {{section_frame.x_low, 0}, {section_frame.x_high, 0}}});
    const double x = reference().x - side_ * (is_round(sample_.type) ? 0 : 14);
    if (x != reference().x) add(lead({x - side_ * 4, reference().y}, reference()));
    add(measured({x, 0}, {x, reference().y}, false));
    write({x - side_ * gap, reference().y / 2 - 10}, caption_, side_ > 0 ? Side::left : Side::right);
    write({section_frame.x_high - 4, -11}, "elevation 0", Side::left, true);
}

void SketchMaker::measure_dip() {
    const double level = side_ > 0 ? 0 : 180;
    const chart::Point at = reference();
    add(lead(at, {at.x + side_ * (arc_radius + 26), at.y}));
    const double dip = sample_.dip.value;
    add(arc(at, arc_radius, level, level - side_ * dip));
    write({at.x + side_ * (arc_radius + 8), at.y + 10}, caption_, side_ > 0 ? Side::right : Side::left);
}

void SketchMaker::measure_slope() {
    const chart::Point at = reference(), far = outline()[1];
    add(lead(at, {at.x + side_ * 84, at.y}));
    const double level = side_ > 0 ? 0 : 180;
    const double rise = std::atan((far.y - at.y) / (far.x - at.x)) / radians_per_degree;
    add(arc(at, 70, level, level + rise));
    write({at.x + side_ * 76, at.y + (far.y > at.y ? 9 : -9)}, caption_,
          side_ > 0 ? Side::right : Side::left);
}

void SketchMaker::measure_width() {
    if (is_round(sample_.type) || sample_.type == sphere) {
        const double radius = sample_.width.value / 2.0;
        const chart::Point at = reference();
        add(measured({at.x - radius, at.y}, {at.x + radius, at.y}));
        write({at.x + radius + 18, at.y}, caption_, Side::right);
        return;
    }
    const SketchPoints& corners = outline();
    if (sample_.type == thin_sheet && formulas_ == Formulas::exact) return measure_thickness();
    const double y = reference().y + gap;
    add(lead(corners[0], {corners[0].x, y + 4}));
    add(lead(corners[1], {corners[1].x, y + 4}));
    const double x0 = corners[0].x, x1 = corners[1].x;
    if (std::abs(x1 - x0) > narrow) {
        add(measured({x0, y}, {x1, y}));
    } else {
        add(measured({x0 - side_ * 24, y}, {x0, y}, false));
        add(measured({x1 + side_ * 24, y}, {x1, y}, false));
    }
    write({(x0 + x1) / 2, y + 14}, caption_, Side::middle);
}

void SketchMaker::measure_thickness() {
    const SketchPoints& corners = outline();
    const chart::Point half{(corners[0].x + corners[3].x) / 2, (corners[0].y + corners[3].y) / 2};
    const double across = (side_ > 0 ? 90 : 270) - side_ * static_cast<double>(sample_.dip.value);
    const chart::Point far = along(half, sample_.width.value, across);
    SketchLine from = measured(along(half, -26, across), half, false);
    SketchLine to = measured(along(far, 26, across), far, false);
    write({to.points[0].x + side_ * 4, to.points[0].y + 2}, caption_, side_ > 0 ? Side::right : Side::left);
    add(std::move(from));
    add(std::move(to));
}

void SketchMaker::measure_depth_extent() {
    const SketchPoints& corners = outline();
    const double x = side_ > 0 ? reference().x - 14 : reference().x + 14;
    const double top = reference().y, bottom = corners[3].y;
    add(lead({x - side_ * 4, top}, corners[0]));
    add(lead({x - side_ * 4, bottom}, corners[3]));
    add(measured({x, top}, {x, bottom}));
    write({x - side_ * 8, (top + bottom) / 2}, caption_, side_ > 0 ? Side::left : Side::right);
}

void SketchMaker::measure_rotation() {
    const chart::Point at = reference();
    add(lead(at, {at.x, at.y + 62}));
    add(lead(at, wire_pair(sample_, side_).first));
    add(arc(at, 24, 90, 90 - side_ * static_cast<double>(sample_.dip.value)));
    write({at.x - side_ * 8, at.y + 28}, caption_, side_ > 0 ? Side::left : Side::right);
    name_currents();
}

void SketchMaker::measure_separation() {
    const WirePair wires = wire_pair(sample_, side_);
    add(measured(wires.first, wires.second));
    write({reference().x - side_ * 14, reference().y + 10}, caption_, side_ > 0 ? Side::left : Side::right);
    name_currents();
}

void SketchMaker::name_currents() {
    const WirePair wires = wire_pair(sample_, side_);
    const double radius = sample_.width.value / 2.0 + 6;
    const Side side = side_ > 0 ? Side::right : Side::left;
    write({wires.first.x + side_ * radius, wires.first.y}, "along strike", side, true);
    write({wires.second.x + side_ * radius, wires.second.y}, "back", side, true);
}

}  // namespace anomalis::show
