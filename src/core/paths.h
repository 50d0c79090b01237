#pragma once

#include <string>
#include <string_view>

namespace anomalis {

class Prompts;

// Path texts are UTF-8. Both "/" and "\" are understood when a path is taken apart, "/" is written.

/// The file's name when it exists (a folder is no file), else "". An error counts as absent.
std::string file_exists(const std::string& path);
/// The part after the last separator.
std::string file_name(std::string_view path);
/// The folder with its trailing separator; "" when there is none.
std::string folder_name(std::string_view path);
/// `file_name` less the last "." and what follows.
std::string base_name(std::string_view path);
/// The path with every separator written as this system's own.
std::string native_path(std::string_view path);
/// The path from the root with links followed, as far as it exists: one file, one text.
std::string whole_path(const std::string& path);
/// True when the path is an existing folder.
bool folder_exists(const std::string& path);
/// Changes the current folder to the path when it is a folder, else to the folder of the path. A blank path
/// or a missing folder leaves it as it was.
void change_to_folder(const std::string& path);
/// Without a trailing separator; "" when the current folder is gone.
std::string current_folder();
/// Day number of the file's last change in local time, 0 when it does not exist.
double file_date(const std::string& path);

/// The user's folders by the XDG base directory rules, with a trailing "/": $XDG_CONFIG_HOME or ~/.config,
/// $XDG_DATA_HOME or ~/.local/share, $XDG_STATE_HOME or ~/.local/state. "" when the user has no home.
std::string user_config_folder();
std::string user_data_folder();
std::string user_state_folder();

struct LocateResult {
    std::string path;           ///< "" when it was not found
    bool stop_reading = false;  ///< after a cancel: the rest of the file that names it stays unread
};
/// Looks for a file in the current folder, then in `folder`, then asks the person. `description` tells what
/// the file is for.
LocateResult locate_file(const std::string& description, const std::string& path, const std::string& folder,
                         Prompts& prompts);

}  // namespace anomalis
