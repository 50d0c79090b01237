#include "survey/run/line_store.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "core/digest.h"
#include "core/failure.h"
#include "core/process_mark.h"
#include "core/safe_file.h"
#include "survey/results/results_folder.h"
#include "survey/run/machine_failure.h"

namespace anomalis::survey {

namespace {

namespace fs = std::filesystem;

constexpr const char* result_name = "result.json";

[[noreturn]] void fail(const std::error_code& error, const std::string& path) {
    throw MachineFailure(error.message() + " (" + path + ")");
}

void check(const std::error_code& error, const std::string& path) {
    if (error) fail(error, path);
}

std::string lines_folder(const std::string& folder) {
    return folder + "/lines";
}

std::string digest_text(std::string_view contents) {
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(digest_of(contents)));
    return text.data();
}

/// ".NAME-MARK" (core/process_mark.h): the mark are its last three words.
std::string_view writer_of(std::string_view name) {
    if (!name.starts_with('.')) return {};
    std::size_t end = name.size();
    for (int word = 0; word < 3; ++word) {
        end = name.rfind('-', end - 1);
        if (end == std::string_view::npos || end == 0) return {};
    }
    return name.substr(end + 1);
}

void remove_dead_folders(const std::string& lines) {
    std::error_code error;
    std::vector<fs::path> dead;
    for (fs::directory_iterator entry(lines, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (process_has_ended(writer_of(name))) dead.push_back(entry->path());
    }
    check(error, lines);
    // What cannot be removed is in nobody's way.
    for (const fs::path& path : dead) fs::remove_all(path, error);
}

bool is_as_written(const std::string& folder, const LineFile& file) {
    std::error_code error;
    const std::string path = folder + "/" + file.name;
    const auto bytes = fs::file_size(path, error);
    if (error || bytes != static_cast<std::uintmax_t>(file.bytes)) return false;
    return digest_text(on_machine([&] { return read_whole_file(path); })) == file.digest;
}

std::vector<LineFile> files_in(const std::string& folder) {
    std::vector<LineFile> files;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const std::string path = entry->path().string();
        const std::string contents = on_machine([&] { return read_whole_file(path); });
        files.push_back({.name = entry->path().filename().string(),
                         .bytes = static_cast<std::int64_t>(contents.size()),
                         .digest = digest_text(contents)});
    }
    check(error, folder);
    std::ranges::sort(files, {}, &LineFile::name);
    return files;
}

/// Where `path` of the folder `place` goes while another takes its place: a name that tells of this process.
std::string hidden_beside(const std::string& place, const char* more) {
    const std::size_t name = place.rfind('/') + 1;
    return place.substr(0, name) + "." + place.substr(name) + more + "-" + own_process_mark();
}

}  // namespace

void prepare_lines(const std::string& folder) {
    const std::string lines = lines_folder(folder);
    std::error_code error;
    fs::create_directories(lines, error);
    check(error, lines);
    if (::access(lines.c_str(), W_OK | X_OK) != 0) fail({errno, std::generic_category()}, lines);
    remove_dead_folders(lines);
}

std::optional<LineResult> kept_line(const std::string& folder, const std::string& line) {
    const std::string path = line_result_file(folder, line);
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) return {};
    check(error, path);
    const std::string text = on_machine([&] { return read_whole_file(path); });
    try {
        LineResult result = read_line_result(text, path);
        const std::string place = line_folder(folder, line);
        for (const LineFile& file : result.files)
            if (!is_as_written(place, file)) return {};
        return result;
    } catch (const Fault&) {  // damaged
        return {};
    }
}

LineFolder::LineFolder(const std::string& folder, const std::string& line)
    : place_(line_folder(folder, line)), path_(hidden_beside(place_, "") + "/") {
    std::error_code error;
    fs::create_directory(path_, error);
    check(error, path_);
}

LineFolder::~LineFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void LineFolder::write(const std::string& name, std::string_view contents) const {
    const std::string path = path_ + name;
    std::error_code error;
    fs::remove(path, error);
    check(error, path);
    on_machine([&] { append_to_file(path, contents); });
}

void LineFolder::deliver(LineResult& result) const {
    result.files = files_in(path_);
    write(result_name, line_result_json(result));
    // A folder with files in it cannot be renamed over: the old one goes first, and the line with it if the
    // program ends right here.
    const std::string old = hidden_beside(place_, "-old");
    std::error_code error;
    fs::rename(place_, old, error);
    const bool replaces = !error;
    if (error && error != std::errc::no_such_file_or_directory) fail(error, place_);
    fs::rename(path_, place_, error);
    if (error && replaces) {
        std::error_code ignored;
        fs::rename(old, place_, ignored);
    }
    check(error, place_);
    if (replaces) fs::remove_all(old, error);
}

}  // namespace anomalis::survey
