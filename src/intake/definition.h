#pragma once

#include <string>
#include <vector>

namespace anomalis {
class Prompts;
struct Workspace;
}  // namespace anomalis

// What an observed data file is: checks of the definition, and a look at the file's head.
namespace anomalis::intake {

/// Tests the definition; the first test that fails shows its message. Returns 0 when all pass (the transform
/// is then brought up to date), 1 when one fails, -1 after an error.
int check_data_definitions(Workspace& workspace, Prompts& prompts);

/// What keeps the data from being read; "" when nothing does.
std::string definition_objection(const Workspace& workspace);

/// The first lines of a data file, for counting columns by eye.
struct FileHead {
    static constexpr int longest = 64;
    std::vector<std::string> lines;
    std::string text;  ///< the lines joined with CR LF
};

/// Reads up to 64 lines of the data file. A blank or absent file leaves `head` as it was.
/// Returns 0, or -1 with a message when the file cannot be read.
int show_data_file_head(const Workspace& workspace, FileHead& head, Prompts& prompts);

}  // namespace anomalis::intake
