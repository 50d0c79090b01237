#pragma once

#include <string>
#include <string_view>

#include "core/told_write.h"

namespace anomalis {
class Prompts;
class Settings;
struct Workspace;
}  // namespace anomalis

// The workspace file (extension "axm"): the definition of the observed data, the processing settings, the
// coordinate transform, all bodies with their limits and the window layout. It holds no observed data.
// Written is format 7; formats 0 to 7 are read.
namespace anomalis::workspace_file {

/// Writes a workspace file. Mode below 0: the definitions alone; otherwise bodies and display block follow.
/// Both end widths of a body are written as its width. The data file is named so that it is found from the
/// folder of `path`; a name that was read from that folder stays as it was, byte for byte. The file that
/// stood there before survives every failure. Returns 0, or -1 after a failure, which was shown.
int write_model_parameters(int mode, const std::string& path, const Workspace& workspace, Prompts& prompts);
/// The same with another way to write the text.
int write_model_parameters(int mode, const std::string& path, const Workspace& workspace, Prompts& prompts,
                           const FileWriter& write);
/// The text that it would write, with the data file as it is found from the current folder.
std::string model_parameters_text(int mode, const Workspace& workspace);

/// What becomes of a file that cannot be read whole.
enum class Damaged {
    refused,  ///< the workspace stays as it was
    kept      ///< it holds what was read until then, bodies only whole: for showing what a damaged file has
};

/// Reads a workspace file. Mode 0: everything; below 0: definitions and display block; above 0: the bodies
/// alone. `settings` holds the body defaults that an old file does not overrule. The data file is looked for
/// from the folder of the workspace file, then in the current one; where the current one matters a remark
/// says so. One that is nowhere is asked for. The stations are dropped. Numbers that are missing, no numbers
/// or too many are told with line and text; what the format takes for them stands. Returns 0, or -1 after a
/// failure, which was shown with its line; a file of another kind is told as such and never read to its end.
/// In modes 0 and below a success sets `model_file` and its date.
int read_model_parameters(int mode, Workspace& workspace, const std::string& path, const Settings& settings,
                          Prompts& prompts, Damaged damaged = Damaged::refused);
/// The same from a text in memory; `path` is the file that it stands for.
int read_model_parameters_text(int mode, Workspace& workspace, std::string_view text, const std::string& path,
                               const Settings& settings, Prompts& prompts,
                               Damaged damaged = Damaged::refused);

}  // namespace anomalis::workspace_file
