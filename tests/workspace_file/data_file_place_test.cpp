#include "workspace_file/data_file_place.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "core/safe_file.h"
#include "core/workspace.h"
#include "workspace_file/axm_samples.h"

namespace anomalis::workspace_file {
namespace {

namespace fs = std::filesystem;

/// Two survey folders side by side, each with a line of the same name, and a program started in the second.
struct TwoSurveys {
    TempFolder folder;
    std::string north = folder.write("north/line.dat", "north");
    std::string south = folder.write("south/line.dat", "south");
    std::string model = folder.path("north/model.axm");
    CurrentFolder here{folder.path("south")};
};

struct Opened {
    Workspace workspace;
    ScriptedPrompts prompts;

    int read(const std::string& path) {
        return read_model_parameters(0, workspace, path, Settings{}, prompts);
    }
    const std::string& data() const { return workspace.definition.data_file; }
};

/// A workspace file whose first line is `name`.
std::string naming(const std::string& name) {
    std::vector<std::string> lines = definition_lines();
    lines[0] = name;
    return joined(lines);
}

std::string first_line(const std::string& path) {
    const std::string text = read_whole_file(path);
    return text.substr(0, text.find("\r\n"));
}

TEST(DataFilePlace, the_folder_of_the_workspace_goes_before_the_current_one) {
    const TwoSurveys surveys;
    write_file_safely(surveys.model, naming("line.dat"));
    Opened opened;
    ASSERT_EQ(opened.read(surveys.model), 0);
    EXPECT_EQ(opened.data(), surveys.north);
    ASSERT_EQ(opened.prompts.messages.size(), 1U) << "both files fit the name, so which was taken is told";
    for (const std::string& file : {surveys.north, surveys.south})
        EXPECT_TRUE(opened.prompts.told(file)) << opened.prompts.messages[0];
    EXPECT_EQ(data_file_of(surveys.model), surveys.north);
}

TEST(DataFilePlace, a_name_with_folders_is_looked_for_from_the_workspace_too) {
    const TwoSurveys surveys;
    const std::string deep = surveys.folder.write("north/raw/line.dat", "");
    surveys.folder.write("south/raw/line.dat", "");
    for (const std::string name : {"raw/line.dat", "./raw/line.dat", "raw\\line.dat"}) {
        write_file_safely(surveys.model, naming(name));
        Opened opened;
        ASSERT_EQ(opened.read(surveys.model), 0);
        EXPECT_TRUE(fs::equivalent(opened.data(), deep)) << opened.data();
        EXPECT_EQ(opened.prompts.messages.size(), 1U) << name;
    }
}

TEST(DataFilePlace, a_file_of_the_current_folder_alone_is_taken_and_told) {
    const TwoSurveys surveys;
    fs::remove(surveys.north);
    write_file_safely(surveys.model, naming("line.dat"));
    Opened opened;
    ASSERT_EQ(opened.read(surveys.model), 0);
    EXPECT_EQ(opened.data(), "line.dat");
    ASSERT_EQ(opened.prompts.messages.size(), 1U);
    EXPECT_TRUE(opened.prompts.told(surveys.south)) << opened.prompts.messages[0];
}

TEST(DataFilePlace, one_file_that_is_reached_in_two_ways_needs_no_word) {
    const TwoSurveys surveys;
    fs::remove(surveys.south);
    fs::create_symlink(surveys.north, surveys.south);
    write_file_safely(surveys.model, naming("line.dat"));
    const std::string here = surveys.folder.write("south/model.axm", naming("line.dat"));
    for (const std::string& model : {surveys.model, here, std::string("model.axm")}) {
        Opened opened;
        ASSERT_EQ(opened.read(model), 0);
        EXPECT_TRUE(fs::equivalent(opened.data(), surveys.north));
        EXPECT_TRUE(opened.prompts.messages.empty());
    }
}

TEST(DataFilePlace, saved_into_its_own_folder_a_workspace_keeps_the_name_to_the_byte) {
    const TwoSurveys surveys;
    const std::string deep = surveys.folder.write("north/raw/line.dat", "");
    for (const std::string& name :
         {std::string("line.dat"), std::string("./line.dat"), std::string("raw//line.dat"),
          std::string("C:\\surveys\\line.dat"), std::string("../north/line.dat"), surveys.north,
          std::string("/gone/line.dat"), std::string("vanished.dat")}) {
        write_file_safely(surveys.model, naming(name));
        Opened opened;
        ASSERT_EQ(opened.read(surveys.model), 0);
        for (const char* target : {"north/model.axm", "north/second.axm"}) {
            const std::string path = surveys.folder.path(target);
            ASSERT_EQ(write_model_parameters(0, path, opened.workspace, opened.prompts), 0);
            EXPECT_EQ(first_line(path), name);
        }
    }
}

TEST(DataFilePlace, written_into_another_folder_a_workspace_finds_its_data_from_there) {
    const TwoSurveys surveys;
    const std::vector<std::pair<std::string, std::string>> expected{
        {"other.axm", "north/line.dat"},
        {"south/other.axm", "../north/line.dat"},
        {"fits/best/other.axm", "../../north/line.dat"},
        {"north/fits/other.axm", "../line.dat"}};
    fs::create_directories(surveys.folder.path("fits/best"));
    fs::create_directories(surveys.folder.path("north/fits"));
    write_file_safely(surveys.model, naming("line.dat"));
    for (const auto& [target, name] : expected) {
        Opened opened;
        ASSERT_EQ(opened.read(surveys.model), 0);
        const std::string path = surveys.folder.path(target);
        ASSERT_EQ(write_model_parameters(0, path, opened.workspace, opened.prompts), 0);
        EXPECT_EQ(first_line(path), name);
        Opened again;
        ASSERT_EQ(again.read(path), 0);
        EXPECT_TRUE(fs::equivalent(again.data(), surveys.north)) << again.data();
        // Back home it is named as it was.
        ASSERT_EQ(write_model_parameters(0, surveys.model, opened.workspace, opened.prompts), 0);
        EXPECT_EQ(first_line(surveys.model), "line.dat");
    }
}

TEST(DataFilePlace, a_name_from_the_root_stays_one_and_a_chosen_file_too) {
    const TwoSurveys surveys;
    write_file_safely(surveys.model, naming(surveys.north));
    Opened opened;
    ASSERT_EQ(opened.read(surveys.model), 0);
    const std::string other = surveys.folder.path("other.axm");
    ASSERT_EQ(write_model_parameters(0, other, opened.workspace, opened.prompts), 0);
    EXPECT_EQ(first_line(other), surveys.north);
    opened.workspace.definition.data_file = surveys.south;
    opened.workspace.definition.data_file_as_named.clear();
    ASSERT_EQ(write_model_parameters(0, other, opened.workspace, opened.prompts), 0);
    EXPECT_EQ(first_line(other), surveys.south);
}

TEST(DataFilePlace, a_folder_behind_a_link_is_named_by_the_way_that_leads_there) {
    const TwoSurveys surveys;
    fs::create_directories(surveys.folder.path("far/away/deep"));
    fs::create_directory_symlink(surveys.folder.path("far/away/deep"), surveys.folder.path("link"));
    write_file_safely(surveys.model, naming("line.dat"));
    Opened opened;
    ASSERT_EQ(opened.read(surveys.model), 0);
    const std::string path = surveys.folder.path("link/other.axm");
    ASSERT_EQ(write_model_parameters(0, path, opened.workspace, opened.prompts), 0);
    EXPECT_EQ(first_line(path), "../../../north/line.dat");
    Opened again;
    ASSERT_EQ(again.read(path), 0);
    EXPECT_TRUE(fs::equivalent(again.data(), surveys.north)) << again.data();
}

}  // namespace
}  // namespace anomalis::workspace_file
