#pragma once

#include <string>
#include <string_view>

namespace anomalis {
struct DataDefinition;
}  // namespace anomalis

// Where the data file that a workspace names lies, and how a workspace names it.
namespace anomalis::workspace_file {

struct DataFilePlace {
    std::string path;         ///< "" when there is none
    bool beside = false;      ///< found from the folder of the workspace
    std::string passed_over;  ///< another file that the name fits, in the current folder
};

/// Looks for the file that a workspace at `workspace_path` names. A name from the root is taken as it stands.
/// Any other is looked for from the workspace's folder, then in the current one: what a workspace means must
/// not hang on where the program was started. A file that moved is found by its name beside the workspace.
DataFilePlace find_data_file(std::string_view name, const std::string& workspace_path);

/// The data file of the workspace at `path`, without reading more than its name; where it should be when it
/// is not there. "" when none is named or the workspace cannot be read.
std::string data_file_of(const std::string& path);

/// The name under which a workspace that is written to `workspace_path` finds its data file: as the file that
/// was read has it wherever that still leads there, else relative to the new folder where it was relative
/// before, else from the root. A data file that is not there keeps its name.
std::string data_file_name_for(const DataDefinition& definition, const std::string& workspace_path);

}  // namespace anomalis::workspace_file
