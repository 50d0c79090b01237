#pragma once

#include <string>
#include <string_view>
#include <vector>

// The folders in which this system looks for programs.
namespace anomalis::diagnostics {

/// The path list that the machine gives everybody: of /etc/environment, else the system's default one.
std::string system_search_path();
/// The path list of this process.
std::string user_search_path();

/// The folders of a path list, in its order and with every repetition, each with a separator at its end. An
/// empty entry means the current folder.
std::vector<std::string> split_search_path(std::string_view path_list);

/// The folders of both lists, each once.
std::vector<std::string> build_path_list(std::string_view system_list, std::string_view user_list);

/// One line a folder; one that occurred before is marked "PATH duplicated", a missing one "Folder does not
/// exist".
std::vector<std::string> search_path_lines(std::string_view path_list);

/// The paths of a file name in these folders, in their order.
std::vector<std::string> find_in_folders(const std::string& name, const std::vector<std::string>& folders);

}  // namespace anomalis::diagnostics
