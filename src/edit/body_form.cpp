#include "edit/body_form.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/body_parameters.h"
#include "core/failure.h"
#include "core/formulas.h"
#include "core/numbers.h"
#include "core/text.h"
#include "edit/change.h"
#include "edit/workbench.h"
#include "model/burial_depth.h"

namespace anomalis::edit {

namespace {

constexpr float quarter_turn = 90;

void tell(Workbench& workbench, std::string_view what) {
    note_change(workbench, {of_current_body(workbench, what), "", false});
}

/// Stores `value` in a field of the current body. False without one, and when it holds the value already.
template <class Field, class Value>
bool store(Workbench& workbench, Field ModelBody::*field, const Value& value) {
    ModelBody* body = current_body(workbench);
    if (!body || body->*field == value) return false;
    body->*field = value;
    return true;
}

/// Null for the two counts.
float ModelBody::*size_of(PipeBox box) {
    switch (box) {
        case PipeBox::shell_thickness:
            return &ModelBody::shell_thickness;
        case PipeBox::end_thickness:
            return &ModelBody::end_thickness;
        case PipeBox::max_triangle_size:
            return &ModelBody::max_triangle_size;
        default:
            return nullptr;
    }
}

std::int32_t ModelBody::*count_of(PipeBox box) {
    return box == PipeBox::sectors ? &ModelBody::num_sectors : &ModelBody::num_segments;
}

std::string_view box_name(PipeBox box) {
    switch (box) {
        case PipeBox::shell_thickness:
            return "shell thickness";
        case PipeBox::end_thickness:
            return "end thickness";
        case PipeBox::sectors:
            return "sectors";
        case PipeBox::segments:
            return "segments";
        case PipeBox::max_triangle_size:
            return "triangle size";
    }
    return "";
}

}  // namespace

const ModelBody* current_body(const Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    const int number = workbench.view.current_body;
    return number >= 1 && number <= workspace.body_count ? &workspace.body(number) : nullptr;
}

ModelBody* current_body(Workbench& workbench) {
    return const_cast<ModelBody*>(current_body(static_cast<const Workbench&>(workbench)));
}

std::string of_current_body(const Workbench& workbench, std::string_view what) {
    return std::string(what) + " of body " + std::to_string(workbench.view.current_body);
}

void settle_body(ModelBody& body) {
    if (!is_named(body.type)) body.type = thin_sheet;
    if (body.type != wire) return;
    for (const BodyParameter& row : body_parameters())
        if (row.held_by_wires) (body.*row.slot).vary = 0;
}

void settle_bodies(Workspace& workspace) {
    for (int number = 1; number <= workspace.body_count; ++number) settle_body(workspace.body(number));
}

bool change_body_type(Workbench& workbench, std::int32_t type) {
    ModelBody* body = current_body(workbench);
    if (!body || workbench.session.workspace.station_count <= 0 || type == body->type) return false;
    if (!is_round(body->type)) {
        if (is_round(type)) body->dip.value -= quarter_turn;
    } else {
        body->dip.value += quarter_turn;
    }
    body->type = type;
    settle_body(*body);
    note_change(workbench, {of_current_body(workbench, "type"), "", true});
    return true;
}

bool change_body_name(Workbench& workbench, std::string_view name) {
    if (!store(workbench, &ModelBody::name, trim_at_nul(single_line(name)))) return false;
    tell(workbench, "name");
    return true;
}

bool change_body_fixed(Workbench& workbench, bool fixed) {
    if (!store(workbench, &ModelBody::vary, fixed ? 0 : 1)) return false;
    tell(workbench, "fix");
    return true;
}

bool change_body_turned_off(Workbench& workbench, bool turned_off) {
    if (!store(workbench, &ModelBody::turned_off, turned_off ? 1 : 0)) return false;
    tell(workbench, "turning off");
    return true;
}

bool change_body_demagnetisation(Workbench& workbench, bool include) {
    if (!store(workbench, &ModelBody::include_demagnetisation, include ? 1 : 0)) return false;
    tell(workbench, "demagnetisation");
    return true;
}

bool change_body_colour(Workbench& workbench, std::int32_t colour) {
    if (!store(workbench, &ModelBody::colour, colour)) return false;
    tell(workbench, "colour");
    return true;
}

std::string burial_text(const Workbench& workbench) {
    const Workspace& workspace = workbench.session.workspace;
    const ModelBody* body = current_body(workbench);
    if (!body || !line_loaded(workspace)) return {};
    return format_number(model::burial_depth(workspace, *body), "0.00") + " m";
}

std::string demagnetisation_tip(const Workbench& workbench) {
    const bool exact = workbench.session.workspace.formulas == Formulas::exact;
    std::string tip =
        "Weaken the induced magnetisation by the field that the body makes inside itself (above about 0.1 "
        "SI)\n";
    tip += exact ? "Every body by the shape of its own\nWithout effect on wires and polygons"
                 : "Sheets, edges, steps and spheres: along the normal of the sheet, by 1 + susceptibility\n"
                   "Pipes with a length: along and across the axis, by the shape of the solid\n"
                   "Without effect on wires, on polygons and on thick sheets that have a length or a slope";
    const ModelBody* body = current_body(workbench);
    if (!body) return tip;
    const bool limited =
        !exact && body->type == thick_sheet && (body->length.value > 0 || body->slope.value != 0);
    if (body->type == wire || body->type == polygon || limited) tip += "\nThis body: without effect";
    return tip;
}

BoxChange change_pipe_box(Workbench& workbench, PipeBox box, std::string_view text) {
    ModelBody* body = current_body(workbench);
    double value = 0;
    if (!body || !parse_number(text, value) || !(value >= 0)) return BoxChange::refused;
    bool stored = false;
    if (const auto size = size_of(box)) {
        if (value > static_cast<double>(std::numeric_limits<float>::max())) return BoxChange::refused;
        stored = store(workbench, size, static_cast<float>(value));
    } else {
        if (value > std::numeric_limits<std::int32_t>::max()) return BoxChange::refused;
        stored = store(workbench, count_of(box), round_to_even(value));
    }
    if (!stored) return BoxChange::unchanged;
    tell(workbench, box_name(box));
    return BoxChange::stored;
}

std::string pipe_box_text(const Workbench& workbench, PipeBox box) {
    const ModelBody* body = current_body(workbench);
    if (!body) return {};
    const auto size = size_of(box);
    return size ? shortest_text(body->*size) : shortest_text(body->*count_of(box));
}

}  // namespace anomalis::edit
