#include "core/leftovers.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "core/process_mark.h"

namespace anomalis {

namespace {

constexpr std::string_view temporary_start = ".anomalis-";
constexpr std::size_t random_letters = 6;
/// Looking further would cost more than what it gives.
constexpr int most_names = 10'000;

/// Text between the fixed start and the random letters; no value for a name that is not ours.
std::optional<std::string_view> writer_in(std::string_view name) {
    if (!name.starts_with(temporary_start)) return {};
    name.remove_prefix(temporary_start.size());
    const auto last = name.rfind('-');
    if (last == std::string_view::npos || name.size() - last - 1 != random_letters) return {};
    const std::string_view writer = name.substr(0, last);
    return std::count(writer.begin(), writer.end(), '-') == 2 ? std::optional(writer) : std::nullopt;
}

bool is_own_file(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == ::geteuid();
}

}  // namespace

std::string temporary_name(const std::string& folder) {
    return folder + std::string(temporary_start) + own_process_mark() + "-XXXXXX";
}

bool is_temporary_name(std::string_view name) {
    return writer_in(name).has_value();
}

void remove_leftovers(const std::string& folder) {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (int names = 0; !error && entry != fs::directory_iterator() && names < most_names; ++names) {
        const std::string path = entry->path().string();
        const auto writer = writer_in(std::string_view(path).substr(path.rfind('/') + 1));
        if (writer && is_own_file(path) && process_has_ended(*writer)) ::unlink(path.c_str());
        entry.increment(error);
    }
}

}  // namespace anomalis
