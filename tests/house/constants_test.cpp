#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <regex>

#include "house/source_files.h"

namespace anomalis::house {

namespace {

/// The name of the constant that a line defines at namespace scope, where nothing is indented.
std::optional<std::string> constant_defined_by(const std::string& line) {
    static const std::regex pattern(
        R"((?:(?:inline|static) )*(?:constexpr|const|constinit) [^=({;]*?\b(\w+)(?:\[\w*\])*\s*[={].*)");
    std::smatch match;
    if (line.starts_with(' ') || !std::regex_match(line, match, pattern)) return std::nullopt;
    return match[1];
}

}  // namespace

TEST(Constants, definitions_at_namespace_scope_are_recognised) {
    EXPECT_EQ(constant_defined_by("inline constexpr double micro = 1e-6;"), "micro");
    EXPECT_EQ(constant_defined_by("constexpr std::array<BodyType, 2> both{edge, pipe};"), "both");
    EXPECT_EQ(constant_defined_by("inline constexpr std::array shape_line{edge,"), "shape_line");
    EXPECT_EQ(constant_defined_by("static const char* const names[] = {\"a\"};"), "names");
    EXPECT_EQ(constant_defined_by("inline constexpr bool is_sheet(int type) {"), std::nullopt);
    EXPECT_EQ(constant_defined_by("const BodyParam& body_param(const ModelBody& body, int code);"),
              std::nullopt);
    EXPECT_EQ(constant_defined_by("    static constexpr int width = 3;"), std::nullopt);
    EXPECT_EQ(constant_defined_by("    constexpr int width = 3;"), std::nullopt);
}

TEST(Constants, no_name_stands_in_two_headers) {
    std::map<std::string, std::string> first;
    for (const fs::path& file : files_below("src")) {
        if (file.extension() != ".h") continue;
        for (const std::string& line : lines_of(project() / file)) {
            const auto name = constant_defined_by(line);
            if (!name) continue;
            const auto [place, is_new] = first.emplace(*name, file.generic_string());
            EXPECT_TRUE(is_new || place->second == file.generic_string())
                << *name << " is defined in " << place->second << " and in " << file.generic_string();
        }
    }
    EXPECT_GT(first.size(), 30U) << "the constants were not found";
}

}  // namespace anomalis::house
