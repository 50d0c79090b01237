#pragma once

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

struct LineColumns;
struct RowNotes;

/// The whole load of the observed data, without a window: checks, the reading of the file, the profile, the
/// station window and the elevations. Messages are shown once each.
/// Returns 0; -1 when it stopped before the stations were filled: `station_count` is then 0; 1 when the
/// stations are there but the line has no length, so that all distances are 0 and nothing can be modelled.
/// `notes`, where given, gets what the reader passed over in silence and what the rows are like.
int load_locations(Workspace& workspace, Prompts& prompts, RowNotes* notes = nullptr);

/// The same of a line that is in memory: the definition is made to be that of a table with its columns. The
/// transform of coordinates is not applied.
int load_columns(const LineColumns& line, Workspace& workspace, Prompts& prompts, RowNotes* notes = nullptr);

}  // namespace anomalis::intake
