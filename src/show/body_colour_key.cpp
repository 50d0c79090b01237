#include "show/body_colour_key.h"

#include <algorithm>
#include <limits>
#include <string>

#include "chart/linked_crosshair.h"
#include "core/susceptibility.h"
#include "core/workspace.h"
#include "edit/body_colours.h"
#include "edit/colour_ramp.h"

namespace anomalis::show {

namespace {

constexpr int key_shades = 32;

/// A quantity as the key tells it.
struct Told {
    std::string title;
    double factor = 1;  ///< from the unit of the records
};

Told susceptibility_in(SusceptibilityUnit unit) {
    const bool micro = unit == SusceptibilityUnit::micro_si;
    const std::string name = micro ? std::string("micro SI") : std::string(unit_name(unit));
    return {"Susceptibility (" + name + ")", of_micro_si(unit)};
}

Told told(edit::ColourProperty property, SusceptibilityUnit unit) {
    switch (property) {
        case edit::ColourProperty::susceptibility:
            return susceptibility_in(unit);
        case edit::ColourProperty::remanence:
            return {"Remanent magnetisation (nT)"};
        case edit::ColourProperty::density:
            break;
    }
    return {"Density contrast (g/cc)"};
}

}  // namespace

std::optional<chart::ColourKey> body_colour_key(const Workspace& workspace,
                                                std::optional<edit::ColourProperty> last,
                                                SusceptibilityUnit unit) {
    const auto property = edit::coloured_by(workspace, last);
    if (!property) return {};
    double low = std::numeric_limits<double>::infinity(), high = -low;
    for (int i = 1; i <= workspace.body_count; ++i) {
        const double value = edit::colour_value(workspace, workspace.body(i), *property);
        low = std::min(low, value);
        high = std::max(high, value);
    }
    const Told quantity = told(*property, unit);
    const double step = (high - low) * quantity.factor / 100;
    chart::ColourKey key{quantity.title,
                         chart::value_text(low * quantity.factor, step),
                         chart::value_text(high * quantity.factor, step),
                         {}};
    for (int i = 0; i < key_shades; ++i)
        key.colours.push_back(edit::ramp_colour(static_cast<double>(i) / (key_shades - 1)));
    return key;
}

}  // namespace anomalis::show
