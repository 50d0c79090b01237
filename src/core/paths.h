#pragma once

#include <optional>
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
/// Changes the current folder to the folder of a path, or to the path itself when it is a folder.
/// A blank or missing one leaves it as it was.
void change_to_folder(const std::string& path);
std::string current_folder();
/// Day number of the file's last change, 0 when it does not exist.
double file_date(const std::string& path);

/// Looks for a file in the current folder, then in `folder`, then asks the person.
struct LocateResult {
    std::string path;       ///< "" when it was not found
    bool cancelled = false; ///< the person refused
    bool stop_reading = false;  ///< and wants the rest of the specification file left unread
};
LocateResult locate_file(const std::string& description, const std::string& path, const std::string& folder,
                         Prompts& prompts);

}  // namespace anomalis
