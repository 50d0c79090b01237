#include "flow/recent_files.h"

#include <algorithm>
#include <filesystem>

#include "core/failure.h"
#include "core/numbers.h"
#include "core/paths.h"
#include "core/settings.h"
#include "core/shown_text.h"
#include "core/text.h"

namespace anomalis::flow {

namespace {

std::string key_of(int number) {
    return "MRU" + format_number(number, "0");
}

}  // namespace

std::vector<std::string> read_recent_files(const Settings& settings, std::string_view section) {
    std::vector<std::string> recent_files;
    for (int number = 1; number <= most_recent_files; ++number) {
        const std::string path = settings.get(section, key_of(number));
        if (path == no_setting || path.empty()) break;
        if (!file_exists(path).empty()) recent_files.push_back(path);
    }
    return recent_files;
}

void add_to_recent_files(const std::string& path, std::string_view section, Settings& settings,
                         std::vector<std::string>& recent_files, Prompts& prompts) {
    report_failure(prompts, "An error occurred adding the file name to the MRU list: ", [&] {
        const std::string absolute = std::filesystem::absolute(path).lexically_normal().string();
        auto place = std::find(recent_files.begin(), recent_files.end(), absolute);
        if (place == recent_files.end()) {
            if (recent_files.size() == most_recent_files) recent_files.pop_back();
            place = recent_files.insert(recent_files.end(), absolute);
        }
        std::rotate(recent_files.begin(), place, place + 1);
        for (std::size_t i = 0; i < most_recent_files; ++i)
            settings.set(section, key_of(static_cast<int>(i) + 1),
                         i < recent_files.size() ? recent_files[i] : std::string());
    });
}

std::string recent_file_caption(int number, const std::string& path) {
    std::string caption = format_number(number, "0") + ": ";
    for (const char letter : shown_text(path)) caption += letter == '&' ? "&&" : std::string(1, letter);
    return caption;
}

}  // namespace anomalis::flow
