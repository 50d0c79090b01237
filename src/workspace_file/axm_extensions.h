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
/// the block.
void write_extensions(const Workspace& workspace, AxmWriter& out);

/// Reads that block from the lines after the display block, where there is one. An entry with an unknown
/// name is passed over; one with an unknown value is shown and leaves the default.
void read_extensions(AxmLines& lines, Workspace& workspace, Prompts& prompts);

}  // namespace anomalis::workspace_file
