#pragma once

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

/// The whole load of the observed data, without a window: checks, both passes over the file, the profile, the
/// station window and the elevations. Messages are shown once each.
/// Returns 0; -1 when it stopped before the stations were filled: `station_count` is then 0; 1 when the
/// stations are there but the line has no length, so that all distances are 0 and nothing can be modelled.
int load_locations(Workspace& workspace, Prompts& prompts);

}  // namespace anomalis::intake
