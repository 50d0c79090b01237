#include "core/link_target.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <system_error>

namespace anomalis {

std::string behind_links(std::string path) {
    constexpr int most_links = 40;
    for (int links = 0; links <= most_links; ++links) {
        const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
        if (real) return real.get();
        // An open pipe looks like a link to a place that is none.
        if (struct stat there{}; ::stat(path.c_str(), &there) == 0) break;
        std::error_code error;
        const std::filesystem::path link = std::filesystem::read_symlink(path, error);
        if (error) break;
        path = (std::filesystem::path(path).parent_path() / link).string();
    }
    return path;
}

}  // namespace anomalis
