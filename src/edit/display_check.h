#pragma once

#include <optional>
#include <string>

#include "edit/settings_boxes.h"

namespace anomalis::edit {

struct Workbench;

/// What the boxes show that a display of the model depends on.
struct DisplayTexts {
    std::string residual_filter_width, vg_filter_width, mag_base, surface_elevation, sensor_offset;
};

struct DisplayCheck {
    int status = -1;                 ///< 0: the model may be shown
    std::optional<SettingsBox> box;  ///< the one that a refusal speaks of
};

/// Looks through the boxes before the model is shown. The first one that is wrong is told, and the display
/// does not go ahead; the widths and the sensor offset are judged by what is stored, too. With all of them
/// right the filters start anew from the observed data. Without stations nothing is looked at: status -1
/// without a box.
DisplayCheck validate_model_display(Workbench& workbench, const DisplayTexts& texts);

}  // namespace anomalis::edit
