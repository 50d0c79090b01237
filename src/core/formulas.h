#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "core/model_body.h"

namespace anomalis {

struct Workspace;

/// How the bodies are calculated: `classic` by the formula of each type, `exact` as the field of the
/// body that section and plan show.
enum class Formulas : std::int32_t { classic, exact };

/// "classic" or "exact", as files and command lines say it.
std::string_view formulas_name(Formulas formulas);
/// The formulas of that name, whatever its case; no value for another word.
std::optional<Formulas> formulas_of_name(std::string_view name);

/// The body types that a person can choose. Edge, step and sphere are offered with the exact formulas, which
/// give them both channels.
std::span<const BodyType> body_types_offered(const Workspace& workspace);

}  // namespace anomalis
