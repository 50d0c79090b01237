#include <gtest/gtest.h>
#include <regex>

#include "core/version.h"
#include "house/source_files.h"

namespace anomalis::house {

namespace {

struct Release {
    std::string version, date;
};

/// The headings of CHANGELOG.md, newest first.
std::vector<Release> releases() {
    static const std::regex heading(R"(## \[(.*)\] - (.*))");
    std::vector<Release> found;
    std::smatch parts;
    for (const std::string& line : lines_of(project() / "CHANGELOG.md"))
        if (std::regex_match(line, parts, heading)) found.push_back({parts[1], parts[2]});
    return found;
}

std::vector<int> numbers_of(const std::string& version) {
    static const std::regex semantic(R"((0|[1-9]\d*)\.(0|[1-9]\d*)\.(0|[1-9]\d*))");
    std::smatch parts;
    if (!std::regex_match(version, parts, semantic)) return {};
    return {std::stoi(parts[1]), std::stoi(parts[2]), std::stoi(parts[3])};
}

}  // namespace

TEST(Releases, the_newest_in_the_changelog_is_this_version) {
    ASSERT_FALSE(releases().empty());
    EXPECT_EQ(releases().front().version, application_version());
}

TEST(Releases, versions_are_semantic_and_dates_are_iso_newest_first) {
    static const std::regex iso(R"(\d{4}-(0[1-9]|1[0-2])-(0[1-9]|[12]\d|3[01]))");
    const std::vector<Release> all = releases();
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_FALSE(numbers_of(all[i].version).empty()) << all[i].version;
        EXPECT_TRUE(std::regex_match(all[i].date, iso)) << all[i].date;
        if (i == 0) continue;
        EXPECT_GT(numbers_of(all[i - 1].version), numbers_of(all[i].version));
        EXPECT_GE(all[i - 1].date, all[i].date);
    }
}

TEST(Releases, sources_do_not_repeat_the_version) {
    const std::string version = "\"" + std::string(application_version()) + "\"";
    const auto builds = [](const fs::path& path) {
        return is_source(path) || path.extension() == ".cmake" || path.filename() == "CMakeLists.txt";
    };
    for (const std::string folder : {"src", "cmake", "examples", "bench"}) {
        for (const fs::path& path : files_below(folder)) {
            if (!builds(path)) continue;
            EXPECT_EQ(text_of(project() / path).find(version), std::string::npos) << path;
        }
    }
}

}  // namespace anomalis::house
