#include "house/floors.h"

#include <map>
#include <regex>
#include <set>

namespace anomalis::house {

namespace {

const std::map<std::string, int> floors{
    {"core", 0},     {"vector", 0},    {"transform", 1}, {"intake", 1},       {"forward", 1},
    {"filter", 1},   {"field", 1},     {"manual", 1},    {"model", 2},        {"workspace_file", 2},
    {"edit", 3},     {"inversion", 3}, {"show", 4},      {"output", 4},       {"diagnostics", 4},
    {"flow", 5},     {"report", 6},    {"survey", 7},    {"transform/qt", 5}, {"diagnostics/qt", 5},
    {"chart/qt", 5}, {"batch", 8},     {"window", 8},    {"app", 9},          {"python", 9},
};

const std::set<std::string> chart_may_include{"core/numbers.h", "core/text.h", "core/failure.h",
                                              "core/safe_file.h", "core/utf8.h"};

/// Neighbours on one floor that know each other: a load applies the transform, and takes the earth's field
/// out of readings.
const std::set<std::pair<std::string, std::string>> neighbours{
    {"intake", "transform"},
    {"intake", "field"},
};

/// Each foreign library stays in one place, and out of its headers.
const std::multimap<std::string, std::string> library_places{
    {"libEMF/", "chart/emf_device"},
    {"Eigen/", "inversion/"},
    {"CLI/", "batch/"},
    {"nlohmann/", "batch/"},
    {"nlohmann/", "output/geojson"},
    {"proj.h", "intake/coordinates/"},
    {"zlib.h", "intake/formats/"},
    {"sqlite3.h", "output/geopackage"},
    {"nlohmann/", "report/"},
    {"nlohmann/", "survey/"},
    {"toml++/", "survey/"},
    {"pybind11/", "python/"},
};

bool starts_with(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

bool may_use_qt(const std::string& room) {
    return room == "app" || room == "window" || room.find("/qt") != std::string::npos;
}

}  // namespace

std::string room_of(const std::string& path) {
    const auto first = path.find('/');
    if (first == std::string::npos) return "";
    return path.substr(0, path.compare(first, 4, "/qt/") == 0 ? first + 3 : first);
}

std::optional<int> floor_of(const std::string& room) {
    const auto found = floors.find(room);
    return found == floors.end() ? std::nullopt : std::optional(found->second);
}

std::string own_include_error(const std::string& from, const std::string& included) {
    const std::string room = room_of(from);
    const std::string other = room_of(included);
    if (other.empty()) return "an include must name its room";
    if (room == other || neighbours.contains({room, other})) return "";
    if (room == "chart") return chart_may_include.contains(included) ? "" : "chart stands beside the floors";
    const auto floor = floor_of(room);
    if (!floor) return "the folder " + room + " is no room";
    if (other == "chart") return *floor >= 4 ? "" : "only floor 4 and above know the charts";
    const auto below = floor_of(other);
    if (!below) return "the folder " + other + " is no room";
    return *below < *floor ? "" : other + " does not stand below " + room;
}

std::string foreign_include_error(const std::string& from, const std::string& included) {
    if (starts_with(included, "Q")) return may_use_qt(room_of(from)) ? "" : "no window system here";
    std::string places;
    for (const auto& [library, place] : library_places) {
        if (!starts_with(included, library)) continue;
        if (!starts_with(from, place)) {
            places += (places.empty() ? "" : " and ") + place;
            continue;
        }
        // The matrices of a fit go between the files of its room; its folder alone finds the library. So do
        // JSON values of a survey's files and the objects of Python.
        const bool in_room = library == "Eigen/" || place == "survey/" || place == "python/";
        return from.ends_with(".h") && !in_room ? "a header must not show types of this library" : "";
    }
    return places.empty() ? "" : "this library is used in " + places + " alone";
}

std::optional<Include> parse_include(const std::string& line) {
    static const std::regex pattern(R"(\s*#\s*include\s*([<"])([^>"]+)[>"].*)");
    std::smatch match;
    if (!std::regex_match(line, match, pattern)) return std::nullopt;
    return Include{match[2], match[1] == "\""};
}

}  // namespace anomalis::house
