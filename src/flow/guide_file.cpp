#include "flow/guide_file.h"

#include <algorithm>
#include <filesystem>

namespace anomalis::flow {

namespace fs = std::filesystem;

std::vector<std::string> guide_file_places(const std::string& exe_folder) {
    if (exe_folder.empty()) return {};
    std::vector<std::string> places;
    for (const char* folder : {"../share/anomalis", ".", "..", "../.."})
        places.push_back((fs::path(exe_folder) / folder / "anomalis.qch").lexically_normal().string());
    return places;
}

std::string find_guide_file(const std::string& exe_folder) {
    const std::vector<std::string> places = guide_file_places(exe_folder);
    const auto found = std::find_if(places.begin(), places.end(), [](const std::string& place) {
        std::error_code failure;
        return fs::is_regular_file(place, failure);
    });
    return found == places.end() ? std::string() : *found;
}

}  // namespace anomalis::flow
