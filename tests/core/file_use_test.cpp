#include "core/file_use.h"

#include <array>
#include <gtest/gtest.h>

#include "support/temp_folder.h"

namespace anomalis {
namespace {

TEST(FileUse, a_refusal_names_both_files) {
    const TempFolder folder;
    const std::string data = folder.write("line.dat", "");
    const std::string model = folder.write("line.axm", "");
    const std::array kept{FileUse{"the workspace", model}, FileUse{"the data file", data}};
    const std::string output = folder.path("./line.dat");
    EXPECT_EQ(
        overwrite_refusal({"--output", output}, kept),
        "--output " + output + " would be written over the data file " + data + ". Nothing was written");
    EXPECT_EQ(overwrite_refusal({"--output", folder.path("line.csv")}, kept), "");
    EXPECT_EQ(overwrite_refusal({"--output", ""}, kept), "");
    EXPECT_EQ(overwrite_refusal({"--output", output}, {}), "");
}

}  // namespace
}  // namespace anomalis
