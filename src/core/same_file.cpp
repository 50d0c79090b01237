#include "core/same_file.h"

#include <filesystem>
#include <sys/stat.h>
#include <system_error>

#include "core/paths.h"

namespace anomalis {

namespace {

namespace fs = std::filesystem;

/// Where a link leads, also one whose target is not there yet: a write goes through it.
std::string behind_links(fs::path path) {
    constexpr int most_links = 40;  // as the system follows
    std::error_code error;
    for (int i = 0; i < most_links && fs::is_symlink(path, error); ++i) {
        const fs::path target = fs::read_symlink(path, error);
        if (error) break;
        path = path.parent_path() / target;
    }
    return path.string();
}

}  // namespace

bool same_file(const std::string& a, const std::string& b) {
    if (a.empty() || b.empty()) return false;
    struct stat first {};
    struct stat second {};
    const bool first_there = ::stat(a.c_str(), &first) == 0;
    const bool second_there = ::stat(b.c_str(), &second) == 0;
    if (first_there != second_there) return false;
    if (!first_there) return whole_path(behind_links(a)) == whole_path(behind_links(b));
    return S_ISREG(first.st_mode) && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace anomalis
