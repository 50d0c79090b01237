#include "core/formulas.h"

#include <array>

#include "core/text.h"
#include "core/workspace.h"

namespace anomalis {

namespace {

constexpr std::array<std::string_view, 2> names{"classic", "exact"};
constexpr std::array<BodyType, 7> offered_with_exact{thin_sheet, thick_sheet, edge, sloping_step,
                                                     sphere,     pipe,        wire};

}  // namespace

std::string_view formulas_name(Formulas formulas) {
    return names[formulas == Formulas::exact ? 1 : 0];
}

std::optional<Formulas> formulas_of_name(std::string_view name) {
    for (const Formulas formulas : {Formulas::classic, Formulas::exact})
        if (equal_ignoring_case(name, formulas_name(formulas))) return formulas;
    return std::nullopt;
}

std::span<const BodyType> body_types_offered(const Workspace& workspace) {
    if (workspace.formulas == Formulas::exact) return offered_with_exact;
    return offered_body_types;
}

}  // namespace anomalis
