#include "workspace_file/data_file_place.h"

#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "core/paths.h"
#include "core/same_file.h"
#include "core/workspace.h"
#include "workspace_file/axm_text.h"

namespace anomalis::workspace_file {

namespace {

namespace fs = std::filesystem;

bool from_root(std::string_view name) {
    return name.starts_with('/');
}

bool is_there(const std::string& path) {
    return !file_exists(path).empty();
}

std::string first_there(const std::vector<std::string>& paths) {
    for (const std::string& path : paths)
        if (is_there(path)) return path;
    return {};
}

/// The name as it stands, in this system's separators, and without its folders.
std::vector<std::string> forms_of(const std::string& name) {
    return {name, native_path(name), file_name(name)};
}

std::string place_beside(const std::string& name, const std::string& folder) {
    return from_root(name) ? name : folder + name;
}

std::string find_beside(const std::string& name, const std::string& folder) {
    std::vector<std::string> paths;
    for (const std::string& form : forms_of(name)) paths.push_back(place_beside(form, folder));
    return first_there(paths);
}

/// The way from a folder to a file, "" when it does not lead there: ".." behind a link goes elsewhere.
std::string way_between(const fs::path& folder, const fs::path& file) {
    const std::string way = file.lexically_relative(folder).string();
    return !way.empty() && same_file((folder / way).string(), file.string()) ? way : "";
}

std::string relative_name(const std::string& file, const std::string& folder) {
    std::error_code error;
    const fs::path file_from_root = fs::absolute(file, error).lexically_normal();
    const fs::path folder_from_root = fs::absolute(folder.empty() ? "." : folder, error).lexically_normal();
    const std::string plain = way_between(folder_from_root, file_from_root);
    if (!plain.empty()) return plain;
    const std::string straight = way_between(whole_path(folder.empty() ? "." : folder), whole_path(file));
    return straight.empty() ? file_from_root.string() : straight;
}

}  // namespace

DataFilePlace find_data_file(std::string_view name_text, const std::string& workspace_path) {
    const std::string name(name_text);
    const std::string folder = folder_name(workspace_path);
    DataFilePlace place;
    place.path = find_beside(name, folder);
    place.beside = !place.path.empty();
    if (from_root(name)) return place;
    for (const std::string& here : forms_of(name)) {
        if (!is_there(here)) continue;
        if (!place.beside) {
            place.path = here;
        } else if (!same_file(here, place.path)) {
            place.passed_over = here;
        }
        break;
    }
    return place;
}

std::string data_file_of(const std::string& path) {
    constexpr std::size_t longest_name = 1 << 16;
    // What flows through a pipe can be read once.
    if (std::error_code error; !fs::is_regular_file(path, error)) return {};
    std::string text(longest_name, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    AxmLines lines(text);
    const std::string name(lines.at_end() ? "" : lines.next());
    const std::string found = find_data_file(name, path).path;
    return found.empty() && !name.empty() ? place_beside(native_path(name), folder_name(path)) : found;
}

std::string data_file_name_for(const DataDefinition& definition, const std::string& workspace_path) {
    const std::string& file = definition.data_file;
    if (!is_there(file)) return file;
    const std::string folder = folder_name(workspace_path);
    const std::string& named = definition.data_file_as_named;
    if (!named.empty() && same_file(find_beside(named, folder), file)) return named;
    if (from_root(file) && (named.empty() || from_root(named))) return file;
    const bool found_as_it_is = !from_root(file) && same_file(find_beside(file, folder), file);
    return found_as_it_is ? file : relative_name(file, folder);
}

}  // namespace anomalis::workspace_file
