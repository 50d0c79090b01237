// What holds for everything that is written, whoever writes it.
#include <array>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <limits>
#include <sys/stat.h>
#include <type_traits>

#include "core/body_parameters.h"
#include "core/session.h"
#include "output/clean_tables.h"
#include "output/dxf.h"
#include "output/dxf_samples.h"
#include "output/tables.h"
#include "support/child_process.h"
#include "support/interrupted.h"
#include "support/shown_characters.h"
#include "support/small_disk.h"
#include "transform/transform.h"
#include "workspace_file/axm.h"

namespace anomalis::output {
namespace {

struct Writer {
    std::string name;
    std::function<int(const std::string& path, Workspace& workspace, Prompts& prompts)> write;
};

/// Nothing has failed on the way to what is written.
template <auto write>
int unchanged(const std::string& path, Workspace& workspace, Prompts& prompts) {
    if constexpr (std::is_invocable_v<decltype(write), const std::string&, const Workspace&, Prompts&>) {
        return write(path, workspace, prompts);
    } else {
        return write(path, workspace, prompts, {});
    }
}

const std::vector<Writer>& writers() {
    static const std::vector<Writer> all{
        {"workspace",
         [](const std::string& path, Workspace& workspace, Prompts& prompts) {
             return workspace_file::write_model_parameters(0, path, workspace, prompts);
         }},
        {"profile_table", unchanged<write_profile_table>},
        {"model_table", unchanged<write_model_table>},
        {"mesh_header", unchanged<write_mesh_header>},
        {"clean_profile", unchanged<write_clean_profile_table>},
        {"clean_model", unchanged<write_clean_model_table>},
        {"bodies", write_body_dxf},
        {"plan", unchanged<write_plan_dxf>},
        {"transform", [](const std::string& path, Workspace& workspace, Prompts& prompts) {
             return transform::save_transform_file(workspace.transform, path, prompts);
         }}};
    return all;
}

class EveryWriter : public ::testing::TestWithParam<Writer> {
  protected:
    EveryWriter() {
        workspace = three_stations();
        workspace.definition.grav_column = 4;
        workspace.body_count = 0;
        add_dxf_body(workspace, pipe, "Pipe");
        add_dxf_body(workspace, thick_sheet, "Sheet");
    }
    int write(const std::string& path) { return GetParam().write(path, workspace, prompts); }
    /// True when the write is refused with one message that tells the reason.
    bool refused(const std::string& path, const std::string& reason) {
        const std::size_t before = prompts.messages.size();
        if (write(path) != -1 || prompts.messages.size() != before + 1) return false;
        const std::string& message = prompts.messages.back();
        const bool clear = message.starts_with("An error occurred while ") &&
                           message.find(": " + reason + " (" + path + ")") != std::string::npos;
        if (!clear) std::cout << message << '\n';
        return clear;
    }

    TempFolder folder;
    ScriptedPrompts prompts;
    Workspace workspace;
};

TEST_P(EveryWriter, writes_the_same_bytes_again) {
    ASSERT_EQ(write(folder.path("a")), 0);
    ASSERT_EQ(write(folder.path("b")), 0);
    ASSERT_EQ(write(folder.path("a")), 0);
    EXPECT_EQ(folder.read("a"), folder.read("b"));
    EXPECT_FALSE(folder.read("a").empty());
    EXPECT_EQ(folder.entries(), 2);
}

TEST_P(EveryWriter, takes_any_name_that_the_system_takes) {
    ASSERT_EQ(write(folder.path("plain")), 0);
    const std::string plain = folder.read("plain");
    for (const std::string& name :
         {std::string(" two  words "), std::string("it's \"quoted\""), std::string("two\nlines\r\n"),
          std::string("\xD0\xB3\xD1\x80\xD0\xB0\xD0\xB2\xD0\xB8 \xE9\x87\x8D\xE5\x8A\x9B"),
          std::string("not utf-8 \xFF\xFE"), std::string("-o $HOME; `x` *?\\"), std::string(255, 'n')}) {
        EXPECT_EQ(write(folder.path(name)), 0) << name;
        EXPECT_EQ(folder.read(name), plain) << name;
    }
    EXPECT_TRUE(prompts.messages.empty());
    EXPECT_TRUE(refused(folder.path(std::string(256, 'n')), "File name too long"));
    EXPECT_EQ(folder.entries(), 8);
}

/// Stations, rows and bodies at the end of single precision, and rows that went beyond it.
void fill_to_the_limit(Workspace& workspace) {
    constexpr float most = std::numeric_limits<float>::max();
    constexpr float beyond = std::numeric_limits<float>::infinity();
    constexpr float none = std::numeric_limits<float>::quiet_NaN();
    for (int i = 1; i <= workspace.station_count; ++i) {
        const float side = i % 2 == 0 ? most : -most;
        for (const int column : {column_east, column_north, column_sensor, column_ground})
            workspace.stations(i, column) = side;
        workspace.distances[i] = most;
        for (int row = 1; row <= 6; ++row) {
            for (ChannelTable* data : {&workspace.mag.data, &workspace.grav.data}) {
                (*data)(i, row, stage_observed) = side;
                (*data)(i, row, stage_calculated) = i == 3 ? none : i == 2 ? beyond : -beyond;
            }
        }
    }
    workspace.x_min = workspace.y_min = -most;
    workspace.x_max = workspace.y_max = most;
    workspace.z_min = -most, workspace.z_max = most;
    for (int number = 1; number <= workspace.body_count; ++number) {
        ModelBody& body = workspace.body(number);
        for (const BodyParameter& row : body_parameters()) (body.*row.slot).value = most;
        body.east = body.north = body.top_elevation = most;
        body.end_width_a = body.end_width_b = most;
    }
}

TEST_P(EveryWriter, never_writes_what_is_no_number) {
    fill_to_the_limit(workspace);
    const bool written = write(folder.path("a")) == 0;
    if (!written) {
        EXPECT_EQ(GetParam().name, "mesh_header") << "a mesh of such a size cannot be told, the rest can";
        EXPECT_EQ(prompts.messages.size(), 1U);
        EXPECT_EQ(folder.entries(), 0);
        return;
    }
    const std::string text = folder.read("a");
    EXPECT_FALSE(text.empty());
    EXPECT_FALSE(has_no_number_word(text)) << text.substr(0, 3000);
}

TEST_P(EveryWriter, says_what_is_wrong_with_a_place) {
    const std::string file = folder.write("file", "old");
    EXPECT_TRUE(refused(folder.folder(), "Is a directory"));
    EXPECT_TRUE(refused(folder.path("no/such"), "No such file or directory"));
    EXPECT_TRUE(refused(file + "/below", "Not a directory"));
    EXPECT_TRUE(refused("", "No such file or directory"));
    EXPECT_TRUE(refused("/dev/full", "No space left on device"));
    EXPECT_EQ(write("/dev/null"), 0);
    EXPECT_EQ(folder.read("file"), "old");
    EXPECT_EQ(folder.entries(), 1);
}

TEST_P(EveryWriter, is_not_killed_by_a_closed_pipe) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const std::string path = "/dev/fd/" + std::to_string(ends[1]);
    ::close(ends[0]);
    EXPECT_TRUE(refused(path, "Broken pipe"));
    ::close(ends[1]);
}

TEST_P(EveryWriter, a_full_disk_leaves_the_old_file) {
    ASSERT_EQ(write(folder.path("a")), 0);
    const std::size_t size = folder.read("a").size();
    folder.write("a", "old");
    for (const std::size_t room : {std::size_t{0}, std::size_t{1}, size / 2, size - 1}) {
        EXPECT_EQ(run_in_child([&] {
                      limit_file_size(room);
                      return refused(folder.path("a"), "File too large") ? 0 : 1;
                  }),
                  0)
            << room << " of " << size;
        EXPECT_EQ(folder.read("a"), "old");
        EXPECT_EQ(folder.entries(), 1);
    }
}

TEST_P(EveryWriter, a_disk_that_is_full_in_truth_leaves_the_old_file) {
    constexpr int not_permitted = 50;
    const int result = run_in_child([&] {
        if (!mount_small_disk(folder.folder(), 64)) return not_permitted;
        const std::string path = folder.write("a", "old");
        const std::string filling(4096, 'x');
        for (int i = 0; i < 15; ++i) folder.write("filling" + std::to_string(i), filling);
        const int entries = folder.entries();
        // All 16 pages are taken.
        return refused(path, "No space left on device") && folder.read("a") == "old" &&
                       folder.entries() == entries
                   ? 0
                   : 1;
    });
    if (result == not_permitted) std::cout << "no disk may be mounted here; a limit stands for it\n";
    EXPECT_TRUE(result == 0 || result == not_permitted) << result;
    EXPECT_EQ(folder.entries(), 0) << "the small disk was seen outside";
}

TEST_P(EveryWriter, permission_taken_away_leaves_the_old_file) {
    const std::string path = folder.write("below/a", "old");
    const auto in_child = [&](const std::string& reason) {
        return run_in_child([&] { return obey_permissions() && refused(path, reason) ? 0 : 1; });
    };
    ::chmod(path.c_str(), 0444);
    EXPECT_EQ(in_child("Permission denied"), 0) << "the file";
    ::chmod(path.c_str(), 0644);
    for (const mode_t mode : {0555U, 0444U, 0U}) {
        ::chmod(folder.path("below").c_str(), mode);
        EXPECT_EQ(in_child("Permission denied"), 0) << mode;
    }
    ::chmod(folder.path("below").c_str(), 0755);
    EXPECT_EQ(folder.read("below/a"), "old");
}

TEST_P(EveryWriter, killed_at_every_call_of_the_system_leaves_a_whole_file) {
    ASSERT_EQ(write(folder.path("a")), 0);
    const std::string newer = folder.read("a");
    int calls = 0;
    Interruption result = Interruption::killed;
    while (result == Interruption::killed && calls < 5000) {
        folder.write("a", "old");
        result = kill_at_system_call(++calls, [&] { write(folder.path("a")); });
        const std::string found = folder.read("a");
        ASSERT_TRUE(found == "old" || found == newer)
            << found.size() << " characters, killed at call " << calls;
    }
    if (result == Interruption::refused) {
        std::cout << "no process may be watched here\n";
    } else {
        EXPECT_EQ(result, Interruption::ended);
        EXPECT_EQ(folder.read("a"), newer);
        EXPECT_EQ(folder.entries(), 1) << "those who were killed left something";
        EXPECT_GT(calls, 10);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, EveryWriter, ::testing::ValuesIn(writers()),
                         [](const auto& which) { return which.param.name; });

}  // namespace
}  // namespace anomalis::output
