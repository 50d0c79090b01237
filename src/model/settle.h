#pragma once

namespace anomalis {
struct Workspace;
}  // namespace anomalis

namespace anomalis::model {

/// What a load settles, for settings that came back while a line is there: what a load finds belongs to the
/// line and not to the change that is taken back. The way of reading is as the load left it, an unset base
/// level becomes the mean of the readings, the station window is found again, and rows that the filters leave
/// out are empty. So every row is, once it is brought up to date, that of a fresh load with these settings.
/// Stations that would be read in another way are dropped; without a line there is nothing to settle.
void settle_on_line(Workspace& workspace);

}  // namespace anomalis::model
