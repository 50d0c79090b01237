#include "diagnostics/file_facts.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <link.h>

#include "core/numbers.h"
#include "core/paths.h"
#include "core/text.h"

namespace anomalis::diagnostics {

namespace fs = std::filesystem;

namespace {

constexpr double days_to_1970 = 25569;  // from 30 December 1899
constexpr int minutes_a_day = 1440;

std::string size_text(const std::string& path) {
    std::error_code failure;
    const auto size = fs::file_size(path, failure);
    return failure ? "N/A" : format_number(static_cast<double>(size), "0");
}

}  // namespace

std::string day_text(double date) {
    const auto minutes = static_cast<long>(std::floor((date - days_to_1970) * minutes_a_day + 0.5));
    const long day = minutes >= 0 ? minutes / minutes_a_day : -1;
    if (day < 0) return "N/A";
    const int minute = static_cast<int>(minutes % minutes_a_day);
    const std::chrono::year_month_day when{std::chrono::sys_days{std::chrono::days{day}}};
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d", static_cast<int>(when.year()),
                  static_cast<unsigned>(when.month()), static_cast<unsigned>(when.day()), minute / 60,
                  minute % 60);
    return text.data();
}

std::vector<std::string> loaded_libraries() {
    std::vector<std::string> paths;
    ::dl_iterate_phdr(
        [](dl_phdr_info* object, std::size_t, void* list) {
            if (object->dlpi_name && *object->dlpi_name == '/')
                static_cast<std::vector<std::string>*>(list)->emplace_back(object->dlpi_name);
            return 0;
        },
        &paths);
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::string library_version(const std::string& path) {
    std::error_code failure;
    const fs::path real = fs::canonical(path, failure);
    const std::string name = failure ? file_name(path) : real.filename().string();
    const auto ending = name.find(".so.");
    return ending == std::string::npos ? "N/A" : name.substr(ending + 4);
}

std::string file_line(const std::string& path) {
    if (file_exists(path).empty()) return single_line(path) + " was not found";
    return "Full Path Name: " + single_line(path) + " Version: " + library_version(path) +
           " Size:  " + size_text(path) + " Date: " + day_text(file_date(path));
}

}  // namespace anomalis::diagnostics
