#include "flow/examples.h"

#include <algorithm>
#include <filesystem>

#include "flow/guide_file.h"

namespace anomalis::flow {

namespace fs = std::filesystem;

namespace {

std::string title_of(const fs::path& file) {
    std::string title = file.stem().string();
    std::replace(title.begin(), title.end(), '_', ' ');
    if (!title.empty() && title[0] >= 'a' && title[0] <= 'z')
        title[0] = static_cast<char>(title[0] - 'a' + 'A');
    return title;
}

std::vector<ExampleFile> workspaces_in(const fs::path& folder) {
    std::vector<ExampleFile> found;
    std::error_code failure;
    for (const auto& entry : fs::directory_iterator(folder, failure))
        if (entry.path().extension() == ".axm")
            found.push_back({entry.path().lexically_normal().string(), title_of(entry.path())});
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.path < b.path; });
    return found;
}

}  // namespace

std::vector<ExampleFile> find_examples(const std::string& exe_folder) {
    if (exe_folder.empty()) return {};
    const fs::path here(exe_folder);
    for (const char* place : {"../share/anomalis/examples", "examples", "../examples", "../../examples"}) {
        auto found = workspaces_in(here / place);
        if (!found.empty()) return found;
    }
    return {};
}

std::vector<std::string> supporting_files(const std::string& exe_folder) {
    std::vector<std::string> files;
    std::error_code failure;
    for (const ExampleFile& example : find_examples(exe_folder)) {
        const fs::path workspace(example.path);
        for (const auto& entry : fs::directory_iterator(workspace.parent_path(), failure))
            if (entry.path().stem() == workspace.stem()) files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    if (const std::string guide = find_guide_file(exe_folder); !guide.empty()) files.push_back(guide);
    return files;
}

}  // namespace anomalis::flow
