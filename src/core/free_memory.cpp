#include "core/free_memory.h"

#include <algorithm>
#include <fstream>
#include <optional>
#include <sys/resource.h>
#include <unistd.h>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/saturating.h"

namespace anomalis {

namespace {

std::optional<std::uint64_t> first_number(const std::string& path) {
    std::ifstream file(path);
    std::uint64_t number = 0;
    if (file >> number) return number;
    return std::nullopt;
}

/// Of the line that begins with this name.
std::optional<std::uint64_t> number_of_line(const std::string& path, std::string_view name) {
    std::ifstream file(path);
    std::string word;
    std::uint64_t number = 0;
    while (file >> word) {
        if (word == name && file >> number) return number;
        std::getline(file, word);
    }
    return std::nullopt;
}

std::uint64_t left_by_system() {
    const std::string path = "/proc/meminfo";  // in kB
    const auto available = number_of_line(path, "MemAvailable:");
    if (!available) return largest_count;
    return saturating_product(saturating_sum(*available, number_of_line(path, "SwapFree:").value_or(0)),
                              1024);
}

std::uint64_t less(std::uint64_t limit, std::uint64_t taken) {
    return limit > taken ? limit - taken : 0;
}

/// What the process has taken of address space, and of data.
struct Taken {
    std::uint64_t space = 0, data = 0;
};

Taken taken() {
    std::ifstream file("/proc/self/statm");
    std::uint64_t size = 0, resident = 0, shared = 0, text = 0, library = 0, data = 0;
    file >> size >> resident >> shared >> text >> library >> data;
    const auto page = static_cast<std::uint64_t>(std::max(::sysconf(_SC_PAGESIZE), 1L));
    return {size * page, data * page};
}

std::uint64_t left_by_limit(decltype(RLIMIT_AS) resource, std::uint64_t has) {
    rlimit limit{};
    if (::getrlimit(resource, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return largest_count;
    return less(limit.rlim_cur, has);
}

/// The group of processes that a container is.
std::uint64_t left_by_group() {
    std::ifstream file("/proc/self/cgroup");
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("0::")) continue;
        const std::string folder = "/sys/fs/cgroup" + line.substr(3) + "/";
        const auto most = first_number(folder + "memory.max");
        if (!most) continue;
        const std::uint64_t taken = first_number(folder + "memory.current").value_or(0);
        // Pages of files are given back when memory is asked for.
        const std::uint64_t files = number_of_line(folder + "memory.stat", "file").value_or(0);
        return less(*most, less(taken, files));
    }
    return largest_count;
}

}  // namespace

std::uint64_t free_memory() {
    const Taken has = taken();
    return std::min({left_by_system(), left_by_limit(RLIMIT_AS, has.space),
                     left_by_limit(RLIMIT_DATA, has.data), left_by_group()});
}

std::string memory_text(std::uint64_t bytes) {
    constexpr double megabyte = 1e6, gigabyte = 1e9;
    const auto size = static_cast<double>(bytes);
    if (size < gigabyte) return format_number(size / megabyte, "0") + " MB";
    return format_number(size / gigabyte, "0.0") + " GB";
}

void require_memory(std::uint64_t bytes, std::uint64_t free, const std::string& what,
                    const std::string& way_out) {
    if (bytes <= free) return;
    throw Fault(FaultKind::out_of_memory,
                what + " need " + memory_text(bytes) + ", " + memory_text(free) + " are free: " + way_out);
}

void require_free_memory(std::uint64_t bytes, const std::string& what, const std::string& way_out) {
    if (bytes > little_memory) require_memory(bytes, free_memory(), what, way_out);
}

}  // namespace anomalis
