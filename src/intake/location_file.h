#pragma once

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

namespace anomalis::intake {

struct DataRows;
struct RowNotes;

/// Reads the observed data file that the definition names: its records into `rows`; their count, if there are
/// any, and the ranges into the workspace. What was met is given in `notes`, where one is given. Returns 0,
/// or -1 with a message; workspace and notes then stay.
int read_location_file(Workspace& workspace, DataRows& rows, Prompts& prompts, RowNotes* notes = nullptr);

/// The same of rows that are in memory already.
void take_rows(const DataRows& rows, Workspace& workspace);

/// Makes stations of the rows, in the order of the file, and empties them. Returns 0, or -1 with a message
/// when a reading does not fit.
int fill_stations(DataRows& rows, Workspace& workspace, Prompts& prompts);

}  // namespace anomalis::intake
