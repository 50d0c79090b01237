#include "core/paths.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <pwd.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "core/prompts.h"
#include "core/text.h"

namespace anomalis {

namespace {

constexpr std::string_view separators = "/\\";

std::string home_folder() {
    const char* home = std::getenv("HOME");
    if (home && *home == '/') return home;
    const passwd* user = ::getpwuid(::getuid());
    return user && user->pw_dir && *user->pw_dir == '/' ? user->pw_dir : "";
}

/// The rules ask that a relative path in the variable is ignored.
std::string user_folder(const char* variable, const char* below_home) {
    const char* set = std::getenv(variable);
    std::string folder = set && *set == '/' ? set : home_folder();
    if (folder.empty()) return "";
    if (folder.back() != '/') folder += '/';
    return set && *set == '/' ? folder : folder + below_home;
}

std::string data_file_filter(const std::string& path) {
    std::string all = "All files (*.*)|*.*";
    const std::string name = file_name(path);
    const auto dot = name.rfind('.');
    if (dot == std::string::npos || dot + 1 == name.size()) return all;
    const std::string pattern = "*." + name.substr(dot + 1);
    return "Data files (" + pattern + ")|" + pattern + "|" + all;
}

}  // namespace

std::string file_exists(const std::string& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (error || !std::filesystem::exists(status) || std::filesystem::is_directory(status)) return "";
    return file_name(path);
}

std::string file_name(std::string_view path) {
    const auto last = path.find_last_of(separators);
    return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

std::string folder_name(std::string_view path) {
    const auto last = path.find_last_of(separators);
    return std::string(last == std::string_view::npos ? std::string_view() : path.substr(0, last + 1));
}

std::string base_name(std::string_view path) {
    const std::string name = file_name(path);
    return name.substr(0, name.rfind('.'));
}

std::string native_path(std::string_view path) {
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

std::string whole_path(const std::string& path) {
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (error) return path;
    const std::filesystem::path whole = std::filesystem::weakly_canonical(absolute, error);
    return error ? absolute.string() : whole.string();
}

bool folder_exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

void change_to_folder(const std::string& path) {
    if (trim_blanks(path).empty()) return;
    const std::string folder = folder_exists(path) ? path : folder_name(native_path(path));
    if (!folder_exists(folder)) return;
    std::error_code error;
    std::filesystem::current_path(folder, error);
}

std::string current_folder() {
    std::error_code error;
    return std::filesystem::current_path(error).string();
}

double file_date(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return 0;
    std::tm local{};
    if (!::localtime_r(&status.st_mtime, &local)) return 0;
    constexpr double seconds_per_day = 86400;
    constexpr double days_to_1970 = 25569;  // from 30 December 1899
    return days_to_1970 + static_cast<double>(status.st_mtime + local.tm_gmtoff) / seconds_per_day;
}

std::string user_config_folder() {
    return user_folder("XDG_CONFIG_HOME", ".config/");
}

std::string user_data_folder() {
    return user_folder("XDG_DATA_HOME", ".local/share/");
}

std::string user_state_folder() {
    return user_folder("XDG_STATE_HOME", ".local/state/");
}

LocateResult locate_file(const std::string& description, const std::string& path, const std::string& folder,
                         Prompts& prompts) {
    const std::string native = native_path(path);
    if (!file_exists(native).empty()) return {native};
    if (!folder.empty()) {
        const std::string slash = folder_name(folder) == folder ? "" : "/";
        for (const std::string& name : {native, file_name(native)}) {
            if (name.starts_with('/')) continue;
            const std::string candidate = folder + slash + name;
            if (!file_exists(candidate).empty()) return {candidate};
        }
    }
    prompts.message("Could not find " + description + " please specify its location");
    FileRequest request;
    request.filter = data_file_filter(native);
    request.default_name = native;
    if (auto chosen = prompts.open_file(request)) return {*chosen};
    return {"", prompts.ask_yes_no("Cancel reading rest of specification file?")};
}

}  // namespace anomalis
