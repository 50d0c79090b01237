#include "core/process_mark.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <unistd.h>

#include "core/digest.h"
#include "core/failure.h"
#include "core/numbers.h"
#include "core/safe_file.h"

namespace anomalis {

namespace {

std::string contents_or_nothing(const std::string& path) {
    try {
        return read_whole_file(path);
    } catch (const FileFault&) {
        return "";
    }
}

/// Numbers of processes mean something within one machine and one space of numbers alone: a folder on the
/// network is written to from many.
std::string machine_mark() {
    std::array<char, 256> host{};
    ::gethostname(host.data(), host.size() - 1);
    std::error_code error;
    const std::string numbers = std::filesystem::read_symlink("/proc/self/ns/pid", error).string();
    const auto digest =
        digest_of(contents_or_nothing("/etc/machine-id") + "\n" + host.data() + "\n" + numbers);
    std::array<char, 9> text{};
    std::snprintf(text.data(), text.size(), "%08x", static_cast<unsigned>(digest ^ (digest >> 32)));
    return text.data();
}

/// The word of that number (1 is the first) of /proc/PID/stat; the name in brackets, word 2, may hold blanks.
std::string stat_word(const std::string& process, int number) {
    const std::string stat = contents_or_nothing("/proc/" + process + "/stat");
    auto at = stat.rfind(") ");
    if (at == std::string::npos) return "";
    at += 2;
    for (int word = 3; word < number && at < stat.size(); ++word) {
        at = stat.find(' ', at);
        if (at == std::string::npos) return "";
        ++at;
    }
    return stat.substr(at, stat.find(' ', at) - at);
}

constexpr int state_word = 3;
constexpr int start_word = 22;  // ticks since the machine started

std::string start_of(const std::string& process) {
    const std::string start = stat_word(process, start_word);
    return start.empty() ? "0" : start;
}

std::optional<pid_t> number_in(std::string_view text) {
    constexpr std::size_t most_digits = 9;
    const bool digits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    double number = 0;
    if (!digits || text.size() > most_digits || !parse_number(text, number) || number < 1) return {};
    return static_cast<pid_t>(number);
}

}  // namespace

std::string own_process_mark() {
    const std::string number = std::to_string(::getpid());
    return machine_mark() + "-" + number + "-" + start_of(number);
}

bool process_has_ended(std::string_view mark) {
    const auto first = mark.find('-');
    const auto last = mark.rfind('-');
    if (first == std::string_view::npos || first == last) return false;
    if (mark.substr(0, first) != machine_mark()) return false;
    const std::string number(mark.substr(first + 1, last - first - 1));
    const auto process = number_in(number);
    if (!process) return false;
    if (::kill(*process, 0) != 0 && errno == ESRCH) return true;
    const std::string state = stat_word(number, state_word);
    if (state.empty()) return false;
    return state == "Z" || state == "X" || start_of(number) != mark.substr(last + 1);
}

}  // namespace anomalis
