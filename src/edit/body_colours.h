#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "edit/colour_property.h"

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

namespace anomalis::edit {

struct Workbench;

/// What the bodies are told apart by: susceptibility (micro SI, negative ones count as 0), remanent
/// magnetisation (nT: field intensity times Koenigsberger ratio times susceptibility over 4 pi), density
/// (g/cc).
double colour_value(const Workspace& workspace, const ModelBody& body, ColourProperty property);

/// The colours that the bodies get by a property, one each; none without a difference among them.
std::vector<std::int32_t> colours_by(const Workspace& workspace, ColourProperty property);

/// What the bodies are coloured by as they stand; where several would give these colours, `last` comes first.
std::optional<ColourProperty> coloured_by(const Workspace& workspace, std::optional<ColourProperty> last);

/// Colours all bodies from low to high. Without a difference among them the person is told and nothing
/// changes. Returns true when the bodies were coloured.
bool colour_bodies(Workbench& workbench, ColourProperty property);

}  // namespace anomalis::edit
