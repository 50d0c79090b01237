#include <filesystem>
#include <system_error>

#include "chart/ax_grapher.h"

// The small services for paths.
namespace anomalis::chart {

namespace {

std::string folder_of(std::string_view path) {
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string() : std::string(path.substr(0, slash + 1));
}

}  // namespace

std::string AX_Grapher::file_dir(std::string_view path) {
    std::string folder = folder_of(path);
    if (!folder.empty() && folder.front() != '/') folder.insert(folder.begin(), '/');
    return folder;
}

std::string AX_Grapher::file_path(std::string_view path) {
    return folder_of(path);
}

int AX_Grapher::change_dir(const std::string& path) {
    if (path.empty()) return 0;
    std::error_code error;
    const std::string folder = std::filesystem::is_directory(path, error) ? path : folder_of(path);
    if (folder.empty()) return 0;
    std::filesystem::current_path(folder, error);
    return error ? -1 : 0;
}

}  // namespace anomalis::chart
