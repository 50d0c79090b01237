#include "flow/examples.h"

#include <gtest/gtest.h>

#include "flow/guide_file.h"
#include "support/temp_folder.h"

namespace anomalis::flow {

TEST(Examples, they_are_found_where_the_program_is_installed_and_where_it_is_built) {
    const TempFolder folder;
    folder.write("share/anomalis/examples/two.axm", "");
    folder.write("share/anomalis/examples/dyke_swarm.axm", "");
    folder.write("share/anomalis/examples/dyke_swarm.dat", "");
    folder.write("bin/anomalis", "");
    const auto installed = find_examples(folder.path("bin/"));
    ASSERT_EQ(installed.size(), 2U);
    EXPECT_EQ(installed[0].title, "Dyke swarm");
    EXPECT_EQ(installed[0].path, folder.path("share/anomalis/examples/dyke_swarm.axm"));

    const TempFolder source;
    source.write("examples/a.axm", "");
    source.write("build/debug/anomalis", "");
    EXPECT_EQ(find_examples(source.path("build/")).size(), 1U);
    EXPECT_EQ(find_examples(source.path("build/debug/")).size(), 1U);
}

TEST(Examples, supporting_files_are_all_that_came_with_them) {
    const TempFolder folder;
    folder.write("share/anomalis/examples/two.axm", "");
    folder.write("share/anomalis/examples/two.dat", "");
    folder.write("share/anomalis/examples/CMakeLists.txt", "");
    folder.write("share/anomalis/anomalis.qch", "");
    folder.write("bin/anomalis", "");
    const auto files = supporting_files(folder.path("bin/"));
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files[0], folder.path("share/anomalis/examples/two.axm"));
    EXPECT_EQ(files[1], folder.path("share/anomalis/examples/two.dat"));
    EXPECT_EQ(files[2], folder.path("share/anomalis/anomalis.qch"));
    EXPECT_TRUE(supporting_files("").empty());
}

TEST(GuideFile, it_is_found_where_the_program_is_installed_and_where_it_is_built) {
    const TempFolder folder;
    EXPECT_EQ(find_guide_file(folder.path("build/debug/tests/window")), "");
    folder.write("build/debug/tests/window/test", "");
    folder.write("build/debug/anomalis.qch", "");
    EXPECT_EQ(find_guide_file(folder.path("build/debug/tests/window")),
              folder.path("build/debug/anomalis.qch"));
    EXPECT_EQ(find_guide_file(folder.path("build/debug/")), folder.path("build/debug/anomalis.qch"));
    folder.write("build/share/anomalis/anomalis.qch", "");
    EXPECT_EQ(find_guide_file(folder.path("build/debug")), folder.path("build/share/anomalis/anomalis.qch"));
    EXPECT_EQ(find_guide_file(""), "");
}

TEST(Examples, without_a_folder_there_are_none) {
    const TempFolder folder;
    EXPECT_TRUE(find_examples(folder.path("bin/")).empty());
    EXPECT_TRUE(find_examples("").empty());
}

}  // namespace anomalis::flow
