#pragma once

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

struct RowNotes;

/// One pass over the observed data file that the definition names. Mode 0 counts the records, finds the
/// ranges of all quantities and makes room for the stations; mode 1 fills the stations and the observed rows
/// of both channels; a negative mode only counts. The file streams through a small buffer. Returns 0 (also
/// without any record; `station_count` then stays), or -1 with a message. A pass that counts gives what it
/// met in `notes`, where one is given.
int read_location_file(int mode, Workspace& workspace, Prompts& prompts, RowNotes* notes = nullptr);

}  // namespace anomalis::intake
