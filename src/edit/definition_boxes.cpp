#include "edit/definition_boxes.h"

#include <optional>

#include "core/numbers.h"
#include "core/text.h"
#include "edit/change.h"
#include "edit/workbench.h"

namespace anomalis::edit {

namespace {

using Field = std::int32_t DataDefinition::*;

enum class Accepts { above_zero, zero_or_above, any };

struct WholeNumberBox {
    DefinitionBox box;
    Field field;
    Accepts accepts;
    bool keeps_length;
};

constexpr std::array whole_number_boxes{
    WholeNumberBox{DefinitionBox::first_data_line, &DataDefinition::first_data_line, Accepts::above_zero,
                   false},
    WholeNumberBox{DefinitionBox::read_increment, &DataDefinition::read_increment, Accepts::above_zero,
                   false},
    WholeNumberBox{DefinitionBox::last_data_line, &DataDefinition::last_data_line, Accepts::zero_or_above,
                   false},
    WholeNumberBox{DefinitionBox::x_column, &DataDefinition::x_column, Accepts::above_zero, false},
    WholeNumberBox{DefinitionBox::y_column, &DataDefinition::y_column, Accepts::any, true},
    WholeNumberBox{DefinitionBox::z_column, &DataDefinition::z_column, Accepts::any, true},
    WholeNumberBox{DefinitionBox::dtm_column, &DataDefinition::dtm_column, Accepts::any, true},
    WholeNumberBox{DefinitionBox::mag_column, &DataDefinition::mag_column, Accepts::zero_or_above, false},
    WholeNumberBox{DefinitionBox::grav_column, &DataDefinition::grav_column, Accepts::zero_or_above, false}};

const WholeNumberBox* whole_number_box(DefinitionBox box) {
    for (const auto& candidate : whole_number_boxes)
        if (candidate.box == box) return &candidate;
    return nullptr;
}

float& spacing_field(Workspace& workspace, DefinitionBox box) {
    return box == DefinitionBox::station_spacing ? workspace.station_spacing : workspace.min_station_spacing;
}

std::optional<std::int32_t> whole_number(std::string_view text, Accepts accepts) {
    double value = 0;
    if (!parse_number(text, value)) return {};
    if (accepts == Accepts::above_zero && !(value > 0)) return {};
    if (accepts == Accepts::zero_or_above && !(value >= 0)) return {};
    try {
        return round_to_even(value);
    } catch (const Fault&) {
        return {};
    }
}

/// A spacing too large for the record counts as no number.
float spacing(std::string_view text) {
    const auto value = parse_single(text);
    return value && *value > 0 ? *value : 0;
}

void forget_window(Workspace& workspace) {
    if (!(workspace.first_distance < workspace.last_distance)) return;
    workspace.first_station = 0;
    workspace.last_station = 0;
}

/// Keystrokes in one box are one step.
void note_definition(Workbench& workbench, DefinitionBox box) {
    note_change(workbench, {"data definition", "definition:" + std::to_string(static_cast<int>(box)), false});
}

}  // namespace

DefinitionChange change_definition_box(Workbench& workbench, DefinitionBox box, std::string_view text) {
    Workspace& workspace = workbench.session.workspace;
    if (const WholeNumberBox* entry = whole_number_box(box)) {
        const auto value = whole_number(text, entry->accepts);
        if (!value) return DefinitionChange::refused;
        drop_stations(workspace);
        workspace.definition.*(entry->field) = *value;
        note_definition(workbench, box);
        return entry->keeps_length ? DefinitionChange::accepted_keep_length : DefinitionChange::accepted;
    }
    if (trim_blanks(text).empty()) return DefinitionChange::unchanged;
    drop_stations(workspace);
    forget_window(workspace);
    spacing_field(workspace, box) = spacing(text);
    note_definition(workbench, box);
    return DefinitionChange::accepted;
}

std::string definition_box_text(const Workspace& workspace, DefinitionBox box) {
    if (const WholeNumberBox* entry = whole_number_box(box))
        return format_number(workspace.definition.*(entry->field), "0");
    const float value =
        box == DefinitionBox::station_spacing ? workspace.station_spacing : workspace.min_station_spacing;
    return value > 0 ? format_number(value, "0.00") : "0";
}

}  // namespace anomalis::edit
