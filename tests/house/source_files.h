#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace anomalis::house {

namespace fs = std::filesystem;

inline const fs::path& project() {
    static const fs::path folder = PROJECT_SOURCE_DIR;
    return folder;
}

inline std::string text_of(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

inline std::vector<std::string> lines_of(const fs::path& path) {
    std::istringstream text(text_of(path));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
}

/// All files below a folder of the project, as paths relative to the project.
inline std::vector<fs::path> files_below(const std::string& folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(project() / folder))
        if (entry.is_regular_file()) files.push_back(fs::relative(entry.path(), project()));
    return files;
}

inline bool is_source(const fs::path& path) {
    return path.extension() == ".cpp";
}

inline bool is_code(const fs::path& path) {
    return is_source(path) || path.extension() == ".h";
}

}  // namespace anomalis::house
