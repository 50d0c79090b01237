#pragma once

#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/shape/prism.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// One edge of the line integral of Talwani, Worzel and Landisman (1959, J. Geophys. Res. 64) for a polygon
/// of unlimited strike, from (x1, z1) to (x2, z2) relative to the station, z up, m. An edge shorter than
/// 0.001 across or up is drawn out to that. A station straight over an end of the edge has no value: this
/// is noted and the edge gives 0.
double talwani_edge(double x1, double x2, double z1, double z2, Faults& faults);

/// Fills column 2 with the sum of the four edges of a sheet's section, `width` across and down to its
/// bottom. Before density and constant. What the edges note is told once for a body where it stands: as long
/// as section, place and those stations are the last that were told, a calculation is silent about them.
void fill_talwani(const Workspace& workspace, ModelBody& body, const SheetBottom& bottom, Faults& faults,
                  Pacer& pacer = no_pace());

}  // namespace anomalis::forward
