#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <regex>

#include "house/source_files.h"

namespace anomalis::house {

namespace {

/// Lines that a file below each folder may have.
const std::map<std::string, long> longest_file{{"src", 350}, {"tests", 400}, {"bench", 400}};

/// The CMakeLists.txt that builds a file: in its folder or the nearest one above.
fs::path build_list_of(const fs::path& file) {
    fs::path folder = file.parent_path();
    while (!fs::exists(project() / folder / "CMakeLists.txt")) folder = folder.parent_path();
    return folder / "CMakeLists.txt";
}

bool has_word(const fs::path& build_list, const std::string& wanted) {
    const std::string text = text_of(project() / build_list);
    std::istringstream words(std::regex_replace(text, std::regex("#[^\n]*|[()\"]"), " "));
    for (std::string word; words >> word;)
        if (word == wanted) return true;
    return false;
}

/// True when the build list of its folder names a file, or the functions for all rooms do.
bool is_built(const fs::path& file) {
    const fs::path list = build_list_of(file);
    return has_word(list, fs::relative(file, list.parent_path()).generic_string()) ||
           has_word("cmake/AnomalisTargets.cmake", "${PROJECT_SOURCE_DIR}/" + file.generic_string());
}

bool holds_any(const std::string& line, const std::vector<std::string>& hints) {
    return std::any_of(hints.begin(), hints.end(),
                       [&](const std::string& hint) { return line.find(hint) != std::string::npos; });
}

/// Something that no line may hold. Of the lines with one of the hints (quick to find) those that the pattern
/// matches are wrong. Hints and patterns are written so that they do not match themselves here.
struct Ban {
    std::vector<std::string> hints;
    std::regex pattern;
    std::regex exempt_files{"$^"};
};

/// The lines below some folders that break a ban, as "file:line: text".
std::string offenders(const std::vector<std::string>& folders, const Ban& ban) {
    std::string found;
    for (const std::string& folder : folders) {
        if (!fs::exists(project() / folder)) continue;
        for (const fs::path& file : files_below(folder)) {
            if (!is_code(file) && file.filename() != "CMakeLists.txt" && file.extension() != ".py") continue;
            if (std::regex_search(file.generic_string(), ban.exempt_files)) continue;
            long number = 0;
            for (const std::string& line : lines_of(project() / file)) {
                ++number;
                if (holds_any(line, ban.hints) && std::regex_search(line, ban.pattern))
                    found += file.generic_string() + ":" + std::to_string(number) + ": " + line + "\n";
            }
        }
    }
    return found;
}

const std::vector<std::string> all_folders{"src", "tests", "bench", "fuzz", "examples", "cmake"};

}  // namespace

TEST(Sources, each_is_listed_in_the_build_of_its_room) {
    int seen = 0;
    for (const char* folder : {"src", "tests", "bench"}) {
        for (const fs::path& file : files_below(folder)) {
            if (!is_source(file)) continue;
            ++seen;
            EXPECT_TRUE(is_built(file))
                << file.generic_string() << " is not built by " << build_list_of(file).generic_string();
        }
    }
    EXPECT_GT(seen, 20) << "the sources were not found";
}

TEST(Sources, none_is_longer_than_a_reader_bears) {
    for (const auto& [folder, longest] : longest_file)
        for (const fs::path& file : files_below(folder))
            if (is_code(file)) {
                EXPECT_LE(static_cast<long>(lines_of(project() / file).size()), longest)
                    << file.generic_string();
            }
}

TEST(Sources, no_person_stands_in_the_physics) {
    const Ban person{{"rompts"}, std::regex(R"(\b[Pp]rompts\b)")};
    EXPECT_EQ(offenders({"src/forward", "src/filter", "src/inversion", "src/vector", "src/chart", "src/show"},
                        person),
              "");
    const Ban handed_on{{"rompts"}, std::regex(R"(\bPrompts\b|core/prompts)")};
    EXPECT_EQ(offenders({"src/model"}, handed_on), "");
}

TEST(Sources, those_that_hold_tests_are_named_so) {
    const std::regex test(R"((^|\n)(TEST(_[FP])?\(|  private slots:|TYPED_TEST\())");
    for (const fs::path& file : files_below("tests"))
        if (is_source(file)) {
            EXPECT_EQ(file.generic_string().ends_with("_test.cpp"),
                      std::regex_search(text_of(project() / file), test))
                << file.generic_string();
        }
}

TEST(Sources, nothing_is_left_for_later) {
    const Ban later{{"TO", "FIX", "XX", "GTEST", "DIS"},
                    std::regex(R"(\bTO[D]O\b|\bFIX[M]E\b|\bXX[X]\b|GTEST_SK[I]P|DIS[A]BLED_)")};
    EXPECT_EQ(offenders(all_folders, later), "");
}

TEST(Sources, numbers_and_text_meet_in_one_place) {
    const Ban conversions{
        {"strto", "ato", "sto", "sscanf", "locale", "precision", "_chars"},
        std::regex(
            R"(\b(strto[dfl]\w*|ato[fil]|sto[dfil]|sscanf|setlocale|setprecision|to_chars|from_chars)\s*\()"),
        std::regex("^src/(core/(numbers|append_number|parse_number|settings_file)|batch/picture_options)")};
    EXPECT_EQ(offenders({"src"}, conversions), "");
}

TEST(Sources, files_are_written_in_one_place) {
    const Ban writing{
        {"stream", "fopen", "O_"},
        std::regex(R"(\b(ofstream|fstream|fopen|O_WRONLY|O_RDWR|O_CREAT)\b[^>]*$)"),
        // What came in by a pipe is put to a file of the own folder, which goes with the command.
        std::regex("^src/(core/safe_file|chart/emf_device|batch/standard_streams)")};
    EXPECT_EQ(offenders({"src"}, writing), "");
}

}  // namespace anomalis::house
