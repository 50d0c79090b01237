#include "core/same_file.h"

#include <sys/stat.h>

#include "core/link_target.h"
#include "core/paths.h"

namespace anomalis {

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
