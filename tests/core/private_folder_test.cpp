#include "core/private_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/failure.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

namespace fs = std::filesystem;

TEST(PrivateFolder, is_its_owner_s_alone_with_all_that_were_missing_above_it) {
    for (const mode_t mask : {mode_t{0}, mode_t{0777}}) {
        const TempFolder folder;
        fs::create_directory(folder.path("there"));
        fs::permissions(folder.path("there"), fs::perms::all);
        const mode_t before = ::umask(mask);
        EXPECT_TRUE(make_private_folder(folder.path("there/one/two")));
        EXPECT_FALSE(make_private_folder(folder.path("there/one/two")));
        ::umask(before);
        EXPECT_EQ(fs::status(folder.path("there/one")).permissions(), fs::perms::owner_all);
        EXPECT_EQ(fs::status(folder.path("there/one/two")).permissions(), fs::perms::owner_all);
        EXPECT_EQ(fs::status(folder.path("there")).permissions(), fs::perms::all) << "not ours to change";
    }
}

TEST(PrivateFolder, a_file_in_the_way_is_told) {
    const TempFolder folder;
    const std::string file = folder.write("file", "x");
    EXPECT_THROW(make_private_folder(file), FileFault);
    EXPECT_THROW(make_private_folder(file + "/below"), FileFault);
    EXPECT_THROW(make_private_folder(""), FileFault);
}

}  // namespace
}  // namespace anomalis
