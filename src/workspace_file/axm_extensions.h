#pragma once

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

namespace anomalis::workspace_file {

class AxmLines;
class AxmWriter;

/// Writes the block of what came after format 7, a line `name value` for each entry that differs from its
/// default; nothing when none does, so that such a file is format 7 to the byte. Older readers stop before
/// the block. The record of the last fit is written as long as the model is as fitted.
void write_extensions(const Workspace& workspace, AxmWriter& out);

/// Reads that block from the lines after the display block, where there is one. An entry with an unknown
/// name is passed over; one with an unknown value is shown and leaves the default. The record of the last
/// fit is taken when it is whole; what else is wrong with it is noted.
void read_extensions(AxmLines& lines, Workspace& workspace, Prompts& prompts);

/// Drops a record of a fit that the model as it was read is not that of, and notes it.
void drop_fit_of_another_model(AxmLines& lines, Workspace& workspace);

}  // namespace anomalis::workspace_file
