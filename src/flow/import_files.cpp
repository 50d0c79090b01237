#include "flow/import_files.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "core/failure.h"
#include "core/leftovers.h"
#include "core/link_target.h"
#include "core/paths.h"
#include "core/prompts.h"
#include "core/safe_file.h"

namespace anomalis::flow {

namespace {

namespace fs = std::filesystem;

bool holds(const std::string& path, std::string_view contents) {
    std::error_code error;
    if (!fs::is_regular_file(path, error) || fs::file_size(path, error) != contents.size()) return false;
    return read_whole_file(path) == contents;
}

void move_file(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error) throw FileFault(error.value(), to);
}

std::string list_of(const std::vector<std::string>& paths) {
    constexpr std::size_t most = 3;
    std::string text;
    for (std::size_t i = 0; i < paths.size() && i < most; ++i)
        text += (i == 0 ? "" : ", ") + file_name(paths[i]);
    if (paths.size() > most) text += " and " + std::to_string(paths.size() - most) + " more";
    return text;
}

}  // namespace

StagedFiles::StagedFiles(const std::string& folder) {
    if (!folder.empty() && !folder_exists(folder)) throw FileFault(ENOENT, folder);
    remove_leftovers(folder);
    std::string name = temporary_name(folder);
    if (!::mkdtemp(name.data())) throw FileFault(errno, folder);
    folder_ = name + "/";
}

StagedFiles::~StagedFiles() {
    std::error_code ignored;
    for (const File& file : files_) fs::remove(file.staged, ignored);
    fs::remove(folder_, ignored);
}

void StagedFiles::add(const std::string& path, std::string_view contents) {
    const std::string target = behind_links(path);
    if (holds(target, contents)) return;
    const std::string number = std::to_string(files_.size());
    files_.push_back({.staged = folder_ + number, .target = target, .old = folder_ + "old" + number});
    write_file_safely(files_.back().staged, contents);
}

std::vector<std::string> StagedFiles::in_the_way() const {
    std::vector<std::string> paths;
    std::error_code ignored;
    for (const File& file : files_)
        if (fs::exists(file.target, ignored)) paths.push_back(file.target);
    return paths;
}

void StagedFiles::take_back(std::size_t delivered) {
    std::error_code ignored;
    for (std::size_t i = 0; i < delivered; ++i) {
        fs::remove(files_[i].target, ignored);
        if (files_[i].replaces) fs::rename(files_[i].old, files_[i].target, ignored);
    }
}

void StagedFiles::deliver() {
    std::size_t delivered = 0;
    try {
        for (File& file : files_) {
            if (folder_exists(file.target)) throw FileFault(EISDIR, file.target);
            std::error_code ignored;
            file.replaces = fs::exists(file.target, ignored);
            if (file.replaces) move_file(file.target, file.old);
            ++delivered;  // the old file is away
            move_file(file.staged, file.target);
        }
    } catch (...) {
        take_back(delivered);
        throw;
    }
    std::error_code ignored;
    for (const File& file : files_) fs::remove(file.old, ignored);
}

bool may_replace(const StagedFiles& files, ReplaceExisting replace, Prompts& prompts) {
    const std::vector<std::string> paths = files.in_the_way();
    if (paths.empty() || replace == ReplaceExisting::agreed) return true;
    const std::string what = list_of(paths) + (paths.size() == 1 ? " is" : " are") + " in " +
                             native_path(folder_name(paths.front())) + " already, with other contents";
    if (replace == ReplaceExisting::ask) return prompts.ask_yes_no(what + ". Replace?");
    prompts.message(what + ": nothing was written. --force replaces what is there");
    return false;
}

}  // namespace anomalis::flow
