// Values at the end of single precision, from the data file to everything that is written.
#include <gtest/gtest.h>

#include "batch/batch_runs.h"
#include "support/shown_characters.h"

namespace anomalis::batch {
namespace {

/// A line where every third value is near 3e38, so that sums go beyond, and a body whose response goes
/// beyond.
struct HugeLine : BatchFolder {
    HugeLine() {
        std::string text = "east north mag grav\n";
        for (int i = 0; i < 41; ++i) {
            const char* values = i % 3 == 0 ? "3.4e38 3.3e38" : "1 1";
            text += std::to_string(500000 + 25 * i) + " 6500000 " + values + "\n";
        }
        folder.write("survey.dat", text);
        std::string huge = model_text();
        for (const auto& [from, to] : {std::pair{" 5000  0", " 3.4e38  0"}, {"  0.3  1", "  3.4e38  1"}})
            huge.replace(huge.find(from), std::string(from).size(), to);
        folder.write("model.axm", huge);
    }
};

TEST(HugeValues, no_command_writes_infinities_into_what_it_writes) {
    const HugeLine files;
    const auto path = [&](const char* name) { return files.folder.path(name); };
    const std::vector<std::vector<std::string>> commands{
        {"dump", files.model, "-o", path("dump.json")},
        {"forward", files.model, "-o", path("forward.csv")},
        {"export", files.model, "--profile-table", path("p.csv"), "--model-table", path("m.csv"), "--mesh",
         path("m.msh"), "--clean-profile", path("cp.csv"), "--clean-model", path("cm.csv"), "--dxf-3d",
         path("b.dxf"), "--dxf-plan", path("p.dxf")},
        {"invert", files.model, "--channel", "mag", "--iterations", "2", "--report", path("sweep.json")},
        {"invert", files.model, "--channel", "joint", "--method", "least-squares", "--iterations", "2",
         "--report", path("joint.json")}};
    for (const auto& command : commands) EXPECT_EQ(batch(command).status, 1) << command[0];
    for (const char* name : {"dump.json", "forward.csv", "p.csv", "m.csv", "m.msh", "cp.csv", "cm.csv",
                             "b.dxf", "p.dxf", "sweep.json", "joint.json"}) {
        const std::string text = files.folder.read(name);
        EXPECT_FALSE(text.empty()) << name;
        EXPECT_FALSE(has_no_number_word(text)) << name << "\n" << text.substr(0, 2000);
    }
    EXPECT_FALSE(has_no_number_word(batch({"info", files.model}).out));
}

}  // namespace
}  // namespace anomalis::batch
