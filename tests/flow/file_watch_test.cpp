#include "flow/file_watch.h"

#include <filesystem>
#include <gtest/gtest.h>

#include "core/safe_file.h"
#include "edit/line_sample.h"
#include "flow/program_folder.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {
namespace {

namespace fs = std::filesystem;

struct Watched : edit::LineSample {
    Watched() {
        add_body(1260, 60);
        workspace_file::write_model_parameters(0, path, workspace(), prompts);
        open_model_file(workbench, ReadMode::everything, path);
        load();
    }
    std::string news(const ProgramFolder* program = nullptr) { return watch.news(workbench, program); }

    const std::string path = folder.path("line.axm");
    FileWatch watch;
};

TEST(FileWatch, is_silent_while_nothing_changes) {
    Watched sample;
    EXPECT_EQ(sample.news(), "");
    EXPECT_EQ(sample.news(), "");
}

TEST(FileWatch, tells_once_that_the_loaded_data_changed) {
    Watched sample;
    append_to_file(sample.data_path, "1 503000 7000000 180 100 51000 12\n");
    EXPECT_EQ(sample.news(), "line.dat changed since it was loaded; load the data again to see that");
    EXPECT_EQ(sample.news(), "");
    append_to_file(sample.data_path, "1 503025 7000000 180 100 51000 12\n");
    EXPECT_NE(sample.news(), "") << "it changed again";
    sample.load();
    EXPECT_EQ(sample.news(), "");
    fs::remove(sample.data_path);
    EXPECT_EQ(sample.news(), "line.dat is no longer where it was; the loaded line stays");
    EXPECT_EQ(sample.news(), "");
}

TEST(FileWatch, data_that_are_not_loaded_are_nobody_s_concern) {
    Watched sample;
    drop_stations(sample.workspace());
    append_to_file(sample.data_path, "1 503000 7000000 180 100 51000 12\n");
    EXPECT_EQ(sample.news(), "");
}

TEST(FileWatch, tells_once_that_somebody_wrote_the_workspace_file) {
    Watched sample;
    append_to_file(sample.path, "more\r\n");
    EXPECT_EQ(sample.news(),
              "line.axm was written by another program; a save will ask before it replaces that");
    EXPECT_EQ(sample.news(), "");
    open_model_file(sample.workbench, ReadMode::everything, sample.path);
    EXPECT_EQ(sample.news(), "");
    fs::remove(sample.path);
    EXPECT_EQ(sample.news(), "line.axm is no longer where it was; a save writes it anew");
}

TEST(FileWatch, tells_of_another_window_on_the_file_and_again_after_a_save) {
    Watched sample;
    const ProgramFolder own(sample.folder.path("recovery"));
    own.show_open_file(sample.path);
    EXPECT_EQ(sample.news(&own), "");
    {
        const ProgramFolder other(sample.folder.path("recovery"));
        other.show_open_file(sample.path);
        const std::string text = "line.axm is open in another window of Anomalis too";
        EXPECT_EQ(sample.news(&own), text);
        EXPECT_EQ(sample.news(&own), "");
        sample.watch.begin();
        EXPECT_EQ(sample.news(&own), text);
        append_to_file(sample.data_path, "1 503000 7000000 180 100 51000 12\n");
        sample.watch.begin();
        EXPECT_EQ(sample.news(&own),
                  "line.dat changed since it was loaded; load the data again to see that. " + text);
    }
    sample.watch.begin();
    EXPECT_EQ(sample.news(&own), "") << "the other one was closed";
}

}  // namespace
}  // namespace anomalis::flow
