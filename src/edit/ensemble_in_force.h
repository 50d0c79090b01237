#pragma once

#include <memory>
#include <optional>
#include <string>

#include "core/ensemble.h"

namespace anomalis::edit {

struct Workbench;

/// The ensemble while model, line and window are those that it was found for; null after a change of them,
/// and while a run tries values. Looked at once a change.
std::shared_ptr<const Ensemble> ensemble_in_force(const Workbench& workbench);

/// What it says of a parameter; null where it says nothing.
const EnsembleParameter* ensemble_parameter(const Workbench& workbench, int body, int param_code);

/// Where a value stands between the ends of its 90 % band.
struct ValueBand {
    double place = 0.5;  ///< 0 at the lower end, 1 at the upper one; 0.5 of a band with an open side
    bool open_below = false, open_above = false;  ///< the data leave the side open
};

ValueBand value_band(const EnsembleParameter& parameter);

/// Of the grid's row of the current body; none for a row that the ensemble says nothing of.
std::optional<ValueBand> grid_band(const Workbench& workbench, int row);

/// A line for the tip of the row: "90 % of the models: 84 to 118 m"; "" for such a row.
std::string grid_band_tip(const Workbench& workbench, int row);

}  // namespace anomalis::edit
