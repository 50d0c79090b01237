#include "core/body_parameters.h"
#include "show/sketch/sample_shapes.h"
#include "show/sketch/sketch_maker.h"

namespace anomalis::show {

void SketchMaker::of_the_rock() {
    changes_something_ = true;
    if (code_ == param_susc && sample_.type == wire) return show_current();
    set_up_section();
    if (code_ == param_rem_i) return measure_inclination();
    sample_.width.value = is_tabular(sample_.type) ? 70 : sample_.width.value;
    sketch_.bodies = section_outlines(formulas_, sample_);
    const chart::Point middle = middle_of_body();
    if (code_ == param_density) {
        sketch_.reference.reset();
        write(middle, "body", Side::middle);
        write({side_ > 0 ? 4.0 : 256.0, 40}, "rock around", side_ > 0 ? Side::right : Side::left);
        write({130, -12}, caption_ + " = body \xE2\x88\x92 rock around", Side::middle);
        return;
    }
    const double induced = -60;
    if (code_ == param_susc) {
        const chart::Point field{side_ > 0 ? 20.0 : 200.0, 128};
        add({Role::lead, {field, along(field, 60, induced)}, false, true});
        write({field.x + 14, field.y - 10}, "field", Side::right, true);
        const chart::Point from = along(middle, -20, induced);
        add(measured(from, along(from, 40, induced), false));
        add({Role::grown, {from, along(from, 62, induced)}, false, true});
        write({130, -12}, "magnetised along the field by " + caption_, Side::middle);
        return;
    }
    const chart::Point from{middle.x, middle.y + 24};
    add({Role::lead, {from, along(from, 52, induced)}, false, true});
    add(measured(from, along(from, 34, -140), false));
    add({Role::grown, {from, along(from, 54, -140)}, false, true});
    const chart::Point induced_tip = along(from, 52, induced), remanent_tip = along(from, 54, -140);
    write({induced_tip.x + 6, induced_tip.y - 6}, "induced", Side::right, true);
    write({remanent_tip.x - 6, remanent_tip.y - 6}, "remanent", Side::left, true);
    write({130, -12}, caption_ + " = remanent / induced", Side::middle);
}

chart::Point SketchMaker::middle_of_body() const {
    if (sketch_.bodies.empty()) return {130, 70};
    double x = 0, y = 0;
    const SketchPoints& points = outline();
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        x += points[i].x;
        y += points[i].y;
    }
    const auto count = static_cast<double>(points.size() - 1);
    return {x / count, y / count};
}

void SketchMaker::measure_inclination() {
    sketch_.bodies.clear();
    const chart::Point at{60, 112};
    sketch_.reference = at;
    sketch_.texts.clear();
    name_view("Upright plane towards Rem D");
    add(lead(at, {at.x + 120, at.y}));
    const double inclination = 35;
    add({Role::measure, {at, along(at, 104, -inclination)}, false, true});
    add({Role::grown, {at, along(at, 104, -inclination - 25)}, false, true});
    add(arc(at, 62, 0, -inclination));
    write(along(at, 70, -inclination / 2), caption_, Side::right);
    write({130, -12}, "remanent magnetisation", Side::middle, true);
}

void SketchMaker::show_current() {
    set_up_plan();
    const double strike = 90 - static_cast<double>(sample_.strike.value);
    sample_.width.value = 14;
    sketch_.bodies = plan_outlines(sample_);
    add(measured(along({0, 0}, -50, strike), along({0, 0}, 50, strike), false));
    write({4, -80}, caption_ + " above 0 along strike", Side::middle);
}

}  // namespace anomalis::show
