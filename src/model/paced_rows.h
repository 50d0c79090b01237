#pragma once

#include <functional>

#include "core/pacer.h"

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::model {

/// About what the filters may have to do, in units of core/pacer.h; 0 while all rows are up to date.
double filter_work_ahead(const Workspace& workspace);

/// Runs `work`, which brings responses and rows of the channels up to date and hands `pacer` to the filters.
/// Where these take long enough to be left among them, the channels are put back as they were before Stopped
/// goes on: curves on show are never those of two models. For that the rows that may be written are copied,
/// where they are not 0; the rest of the time nothing is, and the filters have a pacer that never stops.
/// `work` leaves the trial rows and the raw observed ones alone.
void with_rows_kept(Workspace& workspace, Pacer& pacer, const std::function<void(Pacer& filters)>& work);

}  // namespace anomalis::model
