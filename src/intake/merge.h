#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

/// Merges stations that do not advance along the profile by more than the minimum spacing with their
/// followers: rows 1 to the count returned then hold the means, and `distances` rise from 0. The last station
/// stands alone and is always kept; an unfinished group before it, or before a gap, is dropped. Missing
/// values are in no mean. The line must be set.
int merge_close_stations(Workspace& workspace);

/// Cuts the arrays to the kept rows, which pass through single precision here, and forms the line and the
/// distances again. False when the line has then no length: the arrays stay uncut.
/// Raises Fault overflow when a coordinate does not fit a single.
bool cut_to_kept_stations(int kept, Workspace& workspace);

}  // namespace anomalis::intake
