#include "diagnostics/search_path.h"

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

#include "core/paths.h"
#include "core/safe_file.h"
#include "core/text.h"

namespace anomalis::diagnostics {

namespace {

constexpr const char* environment_file = "/etc/environment";

/// The value of PATH in a text of NAME="value" lines; "" when there is none.
std::string path_line_of(std::string_view text) {
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = trim_blanks(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        if (!line.starts_with("PATH=")) continue;
        line.remove_prefix(5);
        if (line.size() >= 2 && line.front() == '"' && line.back() == '"')
            line = line.substr(1, line.size() - 2);
        return std::string(line);
    }
    return {};
}

std::string default_search_path() {
    std::string path(::confstr(_CS_PATH, nullptr, 0), '\0');
    if (path.empty()) return path;
    ::confstr(_CS_PATH, path.data(), path.size());
    path.pop_back();  // the closing NUL
    return path;
}

}  // namespace

std::string system_search_path() {
    if (!file_exists(environment_file).empty()) {
        std::string path = path_line_of(read_whole_file(environment_file));
        if (!path.empty()) return path;
    }
    return default_search_path();
}

std::string user_search_path() {
    const char* path = std::getenv("PATH");
    return path ? path : "";
}

std::vector<std::string> split_search_path(std::string_view path_list) {
    std::vector<std::string> folders;
    while (!path_list.empty()) {
        const auto end = path_list.find(':');
        std::string folder(path_list.substr(0, end));
        if (folder.empty()) folder = ".";
        if (folder.back() != '/') folder += '/';
        folders.push_back(std::move(folder));
        if (end == std::string_view::npos) break;
        path_list.remove_prefix(end + 1);
        if (path_list.empty()) folders.emplace_back("./");
    }
    return folders;
}

std::vector<std::string> build_path_list(std::string_view system_list, std::string_view user_list) {
    std::vector<std::string> folders;
    for (const std::string_view list : {system_list, user_list})
        for (std::string& folder : split_search_path(list))
            if (std::find(folders.begin(), folders.end(), folder) == folders.end())
                folders.push_back(std::move(folder));
    return folders;
}

std::vector<std::string> search_path_lines(std::string_view path_list) {
    const std::vector<std::string> folders = split_search_path(path_list);
    std::vector<std::string> lines;
    for (auto folder = folders.begin(); folder != folders.end(); ++folder) {
        std::string line = single_line(*folder);
        if (std::find(folders.begin(), folder, *folder) != folder) line += " PATH duplicated";
        if (!folder_exists(*folder)) line += " Folder does not exist";
        lines.push_back(std::move(line));
    }
    return lines;
}

std::vector<std::string> find_in_folders(const std::string& name, const std::vector<std::string>& folders) {
    std::vector<std::string> found;
    if (trim_blanks(name).empty()) return found;
    for (const std::string& folder : folders)
        if (!file_exists(folder + name).empty()) found.push_back(folder + name);
    return found;
}

}  // namespace anomalis::diagnostics
