#pragma once

#include <optional>

#include "chart/colour_key.h"
#include "core/preferences.h"
#include "edit/colour_property.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::show {

/// The scale of the bodies' colours, as long as these are by a property: its name and unit, its lowest and
/// highest value. `last` is the property that they were coloured by last.
std::optional<chart::ColourKey> body_colour_key(const Workspace& workspace,
                                                std::optional<edit::ColourProperty> last,
                                                SusceptibilityUnit unit);

}  // namespace anomalis::show
