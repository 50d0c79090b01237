#include "flow/program_folder.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "core/failure.h"
#include "core/leftovers.h"
#include "core/paths.h"
#include "core/private_folder.h"
#include "core/process_mark.h"
#include "core/safe_file.h"

namespace anomalis::flow {

namespace {

namespace fs = std::filesystem;

constexpr const char* model_name = "model.axm";
constexpr const char* mark_name = "anomalis-program";
constexpr const char* open_file_name = "open-file";
constexpr std::string_view mark_line = "A running Anomalis keeps here what a crash must not take.\n";

std::string in(const std::string& folder, const char* name) {
    return folder + "/" + name;
}

std::string contents_or_nothing(const std::string& path) {
    try {
        return read_whole_file(path);
    } catch (const FileFault&) {
        return "";
    }
}

std::unique_ptr<FolderLock> try_lock(const std::string& folder) {
    try {
        return std::make_unique<FolderLock>(folder, std::chrono::milliseconds(0));
    } catch (const FileFault&) {
        return nullptr;
    }
}

/// The program that made the folder; no value without a mark of ours.
std::optional<std::string> owner_of(const std::string& folder) {
    const std::string mark = contents_or_nothing(in(folder, mark_name));
    if (!mark.starts_with(mark_line)) return {};
    return mark.substr(mark_line.size());
}

/// A folder is named after the process that made it, which may have ended before it wrote the mark.
bool bears_name_of_ended_process(const std::string& folder) {
    const std::string name = file_name(folder);
    return process_has_ended(std::string_view(name).substr(0, name.rfind('-')));
}

/// What nobody claims is left over; without locks the mark tells who lived there.
bool is_left(const std::string& folder, const FolderLock& lock) {
    if (lock.excludes_others() || bears_name_of_ended_process(folder)) return true;
    const auto owner = owner_of(folder);
    return owner && process_has_ended(*owner);
}

/// Earlier versions named a folder by process and number, and wrote no mark.
bool has_early_name(const std::string& folder) {
    const std::string name = file_name(folder);
    const auto dash = name.find('-');
    const auto digits = [&](std::size_t begin, std::size_t end) {
        return begin < end && std::all_of(name.begin() + static_cast<std::ptrdiff_t>(begin),
                                          name.begin() + static_cast<std::ptrdiff_t>(end),
                                          [](char c) { return c >= '0' && c <= '9'; });
    };
    return dash != std::string::npos && digits(0, dash) && digits(dash + 1, name.size());
}

/// Their temporary names had no writer.
bool is_early_temporary_name(std::string_view name) {
    constexpr std::string_view start = ".anomalis-";
    return name.starts_with(start) && name.size() == start.size() + 6;
}

bool is_name_of_ours(std::string_view name) {
    return name == model_name || name == mark_name || name == open_file_name || is_temporary_name(name) ||
           is_early_temporary_name(name);
}

bool is_plain_file(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() == fs::file_type::regular;
}

struct Contents {
    std::vector<fs::path> ours;
    bool others = false;  ///< something that is not ours stands there
};

Contents contents_of(const std::string& folder) {
    Contents contents;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        const bool ours =
            is_plain_file(entry->path().string()) && is_name_of_ours(entry->path().filename().string());
        if (ours) contents.ours.push_back(entry->path());
        contents.others = contents.others || !ours;
    }
    contents.others = contents.others || error;
    return contents;
}

/// By name, one after the other, the mark last: a stranger's file is never gone with a folder.
bool remove_own_files(const std::string& folder) {
    const Contents contents = contents_of(folder);
    if (contents.others && !owner_of(folder)) return false;
    std::error_code error;
    for (const fs::path& file : contents.ours)
        if (file.filename() != mark_name) fs::remove(file, error);
    if (contents.others) return true;
    fs::remove(in(folder, mark_name), error);
    ::rmdir(folder.c_str());
    return true;
}

std::vector<std::string> folders_below(const std::string& root) {
    std::vector<std::string> folders;
    std::error_code error;
    for (fs::directory_iterator entry(root, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (entry->symlink_status(error).type() == fs::file_type::directory)
            folders.push_back(entry->path().string());
    return folders;
}

}  // namespace

std::string recovery_root() {
    const std::string folder = user_state_folder();
    return folder.empty() ? "" : folder + "anomalis/recovery";
}

ProgramFolder::ProgramFolder(const std::string& root) : root_(root) {
    make_private_folder(root);
    set_private(root, S_IRWXU);  // others may have made it wider
    for (int number = 1; folder_.empty(); ++number) {
        const std::string folder = root + "/" + own_process_mark() + "-" + std::to_string(number);
        if (make_private_folder(folder) && claim(folder)) folder_ = folder;
    }
}

ProgramFolder::~ProgramFolder() = default;

/// Another program that looks for what was left may hold the folder for a moment: the next one is taken then.
bool ProgramFolder::claim(const std::string& folder) {
    lock_ = try_lock(folder);
    try {
        if (!lock_) throw FileFault(EWOULDBLOCK, folder);
        write_file_safely(in(folder, mark_name), std::string(mark_line) + own_process_mark(),
                          FileRights::owner_only);
    } catch (const FileFault&) {
        ::rmdir(folder.c_str());
        if (lock_) throw;
        return false;
    }
    return true;
}

void ProgramFolder::remove() {
    remove_own_files(folder_);
    lock_.reset();
}

std::string ProgramFolder::model_file() const {
    return in(folder_, model_name);
}

void ProgramFolder::show_open_file(const std::string& path) const {
    try {
        write_file_safely(in(folder_, open_file_name), path.empty() ? "" : whole_path(path),
                          FileRights::owner_only);
    } catch (const FileFault&) {
        // Work goes on without; whether models can be kept here is told elsewhere.
    }
}

int ProgramFolder::others_with(const std::string& path) const {
    const std::string whole = whole_path(path);
    int others = 0;
    for (const std::string& folder : folders_below(root_)) {
        if (folder == folder_ || contents_or_nothing(in(folder, open_file_name)) != whole) continue;
        const auto lock = try_lock(folder);
        if (!lock || !is_left(folder, *lock)) ++others;
    }
    return others;
}

LeftFolder::LeftFolder(std::string folder, std::unique_ptr<FolderLock> lock)
    : folder_(std::move(folder)), lock_(std::move(lock)) {}

LeftFolder::~LeftFolder() = default;
LeftFolder::LeftFolder(LeftFolder&&) noexcept = default;
LeftFolder& LeftFolder::operator=(LeftFolder&&) noexcept = default;

std::string LeftFolder::model_file() const {
    return in(folder_, model_name);
}

std::time_t LeftFolder::kept() const {
    struct stat status {};
    return ::stat(model_file().c_str(), &status) == 0 ? status.st_mtime : 0;
}

bool LeftFolder::remove() const {
    return remove_own_files(folder_);
}

std::vector<LeftFolder> find_left_folders(const std::string& root) {
    std::vector<LeftFolder> found;
    for (const std::string& folder : folders_below(root)) {
        const bool ours = owner_of(folder) || bears_name_of_ended_process(folder);
        if (!ours && !has_early_name(folder)) continue;
        auto lock = try_lock(folder);
        if (!lock || !is_left(folder, *lock)) continue;
        LeftFolder left(folder, std::move(lock));
        if (is_plain_file(left.model_file())) {
            set_private(folder, S_IRWXU);
            set_private(left.model_file(), S_IRUSR | S_IWUSR);
            found.push_back(std::move(left));
        } else if (ours) {
            left.remove();
        }
    }
    std::sort(found.begin(), found.end(),
              [](const LeftFolder& a, const LeftFolder& b) { return a.kept() > b.kept(); });
    return found;
}

}  // namespace anomalis::flow
