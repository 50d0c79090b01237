#pragma once

#include "core/body_parameters.h"

// Steps and limits that follow from the body and the line; for the table of the parameters alone.
namespace anomalis {

// Coarse steps of the bars.
double distance_bar_step(const Workspace& workspace, const ModelBody& body);
double top_bar_step(const Workspace& workspace, const ModelBody& body);
double width_bar_step(const Workspace& workspace, const ModelBody& body);
double depth_extent_bar_step(const Workspace& workspace, const ModelBody& body);
double length_bar_step(const Workspace& workspace, const ModelBody& body);
double offset_bar_step(const Workspace& workspace, const ModelBody& body);
double susceptibility_bar_step(const Workspace& workspace, const ModelBody& body);

// When the inversion may change a parameter that is marked to vary.
bool not_round_or_a_pipe(const ModelBody& body, const Workspace& workspace);
bool ends_downwards(const ModelBody& body, const Workspace& workspace);
bool ends_along_strike(const ModelBody& body, const Workspace& workspace);
bool lies_beside_line(const ModelBody& body, const Workspace& workspace);
bool susceptibility_stays(const ModelBody& body, const Workspace& workspace);
bool has_remanence_direction(const ModelBody& body, const Workspace& workspace);

// Steps and limits of the inversion.
float depth_extent_fit_step(const ModelBody& body, const Workspace& workspace);
float susceptibility_fit_step(const ModelBody& body, const Workspace& workspace);
float highest_top(const ModelBody& body, const Workspace& workspace);
float highest_susceptibility(const ModelBody& body, const Workspace& workspace);

}  // namespace anomalis
