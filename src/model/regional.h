#pragma once

#include "core/workspace.h"

// The regional: a polynomial for each channel that joins the observed curve to the calculated one, so that a
// body is never bent to explain what comes from far beyond the line.
namespace anomalis::model {

/// Whether a channel has a regional: one was chosen, there is a column, and no residual filter has taken the
/// long wavelengths off already.
bool regional_in_force(const Workspace& workspace, int channel);

/// Finds the regional of each channel that has one, and takes it off the observed residual row of the tables.
/// It is the polynomial nearest, in the sum of squares over the station window, to observed less calculated:
/// whatever the bodies are, it is their best one (variable projection, Golub and Pereyra 1973). The rows of
/// both stages must be filtered; base levels are taken off before. With fewer stations in the window than
/// coefficients the degree falls. Repeated calls give the same bits. `Channel::regional` holds what was
/// found.
void lay_regionals(Workspace& workspace, ChannelTable& mag_rows, ChannelTable& grav_rows);

}  // namespace anomalis::model
