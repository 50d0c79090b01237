#pragma once

#include <string>
#include <vector>

namespace anomalis {
class Prompts;
struct SystemInfo;
}  // namespace anomalis

// What a supporter needs to know of the place where the program runs, as plain text that can be sent.
namespace anomalis::diagnostics {

/// What only the caller knows.
struct EnvironmentFacts {
    std::string program_path;
    std::string settings_path;
    std::vector<std::string> component_lines;   ///< window system and its versions, one a line
    std::vector<std::string> supporting_files;  ///< paths of examples and guide
};

/// "Check File Environment " with the user and the computer.
std::string environment_caption(const SystemInfo& system);

/// The whole report; lines end with LF. A section that fails is told, and the text has what came before.
std::string environment_report(const SystemInfo& system, const EnvironmentFacts& facts, Prompts& prompts);

/// Where a file name occurs in the search path, and what is known of the file; then the settings.
std::string find_file_report(const std::string& name, const EnvironmentFacts& facts, Prompts& prompts);

}  // namespace anomalis::diagnostics
