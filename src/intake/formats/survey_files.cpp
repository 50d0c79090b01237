#include "intake/formats/survey_files.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "core/text.h"

namespace anomalis::intake {

namespace {

namespace fs = std::filesystem;

struct NameParts {
    std::string stem, ending;  ///< "survey", ".dat", without a ".gz"
};

NameParts parts_of(const std::string& path) {
    fs::path name = fs::path(path).filename();
    if (equal_ignoring_case(name.extension().string(), ".gz")) name = name.stem();
    return {name.stem().string(), name.extension().string()};
}

/// The file beside `path` with its stem and another ending; one spelled alike is preferred.
std::string sibling(const std::string& path, std::string_view ending) {
    const NameParts own = parts_of(path);
    fs::path folder = fs::path(path).parent_path();
    std::string found;
    bool alike = false;
    std::error_code error;
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const NameParts parts = parts_of(name);
        if (!equal_ignoring_case(parts.ending, ending) || !equal_ignoring_case(parts.stem, own.stem))
            continue;
        std::error_code ignored;
        if (!entry->is_regular_file(ignored)) continue;
        const bool same = parts.stem == own.stem;
        if (found.empty() || (same && !alike) || (same == alike && name < found)) {
            found = name;
            alike = same;
        }
    }
    return found.empty() ? "" : (folder / found).string();
}

}  // namespace

SurveyFiles survey_files(const std::string& path) {
    const std::string ending = parts_of(path).ending;
    SurveyFiles files;
    constexpr std::array<std::string_view, 4> beside{".dfn", ".des", ".met", ".prj"};
    const bool of_pair = std::any_of(beside.begin(), beside.end(),
                                     [&](std::string_view one) { return equal_ignoring_case(ending, one); });
    files.definition = equal_ignoring_case(ending, ".dfn") ? path : sibling(path, ".dfn");
    files.rows = of_pair && !files.definition.empty() ? sibling(path, ".dat") : path;
    if (!of_pair && !equal_ignoring_case(ending, ".dat")) files.definition.clear();
    for (const char* one : {".prj", ".met"})
        if (const std::string found = sibling(path, one); !found.empty()) files.metadata.push_back(found);
    return files;
}

}  // namespace anomalis::intake
