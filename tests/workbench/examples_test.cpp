#include "workbench/examples.h"

#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace anomalis {

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

TEST(Examples, without_a_folder_there_are_none) {
    const TempFolder folder;
    EXPECT_TRUE(find_examples(folder.path("bin/")).empty());
    EXPECT_TRUE(find_examples("").empty());
}

}  // namespace anomalis
