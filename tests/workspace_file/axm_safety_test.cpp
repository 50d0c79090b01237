// A save that is broken off leaves the old workspace file or the new one.
#include <chrono>
#include <gtest/gtest.h>
#include <iostream>

#include "core/body_defaults.h"
#include "core/settings.h"
#include "core/workspace.h"
#include "support/child_process.h"
#include "support/interrupted.h"
#include "support/scripted_prompts.h"
#include "support/temp_folder.h"
#include "workspace_file/axm.h"

namespace anomalis::workspace_file {
namespace {

/// A model of many bodies and what its saves look like, with one name and with another.
class SaveOfALargeModel : public ::testing::Test {
  protected:
    void make(int bodies) {
        initialise_workspace(workspace, prompts);
        workspace.bodies.resize(static_cast<std::size_t>(bodies) + 1);
        workspace.body_count = workspace.body_capacity = bodies;
        for (int number = 1; number <= bodies; ++number) {
            workspace.body(number).type = number % 2 ? pipe : thick_sheet;
            initialise_body(workspace, number, settings, prompts);
            workspace.body(number).name = "Body";
            workspace.body(number).distance.value = 12.25F * static_cast<float>(number);
        }
        newer = model_parameters_text(0, workspace);
        workspace.body(1).name = "the older model";
        older = model_parameters_text(0, workspace);
        path = folder.write("model.axm", older);
        workspace.body(1).name = "Body";
    }
    int save() { return write_model_parameters(0, path, workspace, prompts); }
    void expect_whole(const std::string& when) {
        const std::string found = folder.read("model.axm");
        ASSERT_TRUE(found == older || found == newer) << found.size() << " characters, killed " << when;
    }

    TempFolder folder;
    ScriptedPrompts prompts;
    Settings settings;
    Workspace workspace;
    std::string older, newer, path;
};

TEST_F(SaveOfALargeModel, killed_at_every_call_of_the_system_leaves_a_whole_file) {
    make(200);
    int calls = 0;
    Interruption result = Interruption::killed;
    bool old_seen = false;
    bool new_seen = false;
    while (result == Interruption::killed && calls < 5000) {
        folder.write("model.axm", older);
        result = kill_at_system_call(++calls, [&] { save(); });
        expect_whole("at call " + std::to_string(calls));
        (folder.read("model.axm") == older ? old_seen : new_seen) = true;
    }
    if (result == Interruption::refused) {
        // Where no process may be watched the kills after a time alone must do.
        std::cout << "no process may be watched here\n";
        return;
    }
    EXPECT_EQ(result, Interruption::ended);
    EXPECT_TRUE(old_seen && new_seen);
    EXPECT_GT(calls, 10);
    RecordProperty("kills", calls);
}

TEST_F(SaveOfALargeModel, killed_at_many_times_leaves_a_whole_file) {
    make(2000);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(save(), 0);
    const double one_save =
        std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
    constexpr int kills = 24;
    for (int i = 0; i < kills; ++i) {
        folder.write("model.axm", older);
        kill_after(static_cast<useconds_t>(one_save * (0.3 + 1.2 * i / kills)), [&] { save(); });
        expect_whole("after part " + std::to_string(i));
    }
}

TEST_F(SaveOfALargeModel, onto_a_disk_that_fills_up_anywhere_leaves_the_old_file) {
    make(100);
    for (const std::size_t room :
         {std::size_t{0}, std::size_t{1}, std::size_t{4096}, newer.size() / 2, newer.size() - 1}) {
        EXPECT_EQ(run_in_child([&] {
                      limit_file_size(room);
                      return save() == -1 && prompts.told("File too large (" + path + ")") ? 0 : 1;
                  }),
                  0)
            << room;
        EXPECT_EQ(folder.read("model.axm"), older) << room;
        EXPECT_EQ(folder.entries(), 1) << room;
    }
    EXPECT_EQ(run_in_child([&] {
                  limit_file_size(newer.size());
                  return save();
              }),
              0);
    EXPECT_EQ(folder.read("model.axm"), newer);
}

TEST_F(SaveOfALargeModel, twice_gives_the_same_bytes) {
    make(50);
    ASSERT_EQ(save(), 0);
    const std::string first = folder.read("model.axm");
    ASSERT_EQ(save(), 0);
    EXPECT_EQ(folder.read("model.axm"), first);
    Workspace again;
    initialise_workspace(again, prompts);
    workspace.definition.data_file = folder.write("line.dat", "");
    ASSERT_EQ(save(), 0);
    ASSERT_EQ(read_model_parameters(0, again, path, settings, prompts), 0);
    ASSERT_EQ(write_model_parameters(0, folder.path("again.axm"), again, prompts), 0);
    EXPECT_EQ(folder.read("again.axm"), folder.read("model.axm")) << "a file that was read saves as it was";
}

}  // namespace
}  // namespace anomalis::workspace_file
