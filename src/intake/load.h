#pragma once

namespace anomalis {

class Prompts;
struct Workspace;

/// The whole load of the observed data, without a window: checks, both passes over the file, the profile, the
/// station window and the elevations. Messages are shown once each.
/// Returns 0, or -1 when it stopped before the profile was laid out: `station_count` is then 0.
int load_locations(Workspace& workspace, Prompts& prompts);

}  // namespace anomalis
