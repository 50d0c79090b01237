#include "flow/recovery.h"

#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/paths.h"
#include "core/safe_file.h"
#include "edit/change.h"
#include "edit/line_sample.h"
#include "flow/kept_models.h"
#include "flow/open_flow.h"
#include "flow/recovery_text.h"
#include "flow/save_flow.h"
#include "support/child_process.h"
#include "support/fit_records.h"
#include "workspace_file/axm.h"

namespace anomalis::flow {

namespace {

namespace fs = std::filesystem;

/// A line with a sheet, the folder of recovery files beside it.
struct RecoverySample : edit::LineSample {
    RecoverySample() {
        add_body(1260, 60).name = "Dyke";
        workspace().model_file = folder.path("line.axm");
        workspace_file::write_model_parameters(0, workspace().model_file, workspace(), prompts);
        edit::start_history(workbench);
    }
    std::string root() { return folder.path("recovery"); }
    void edit(float dip) {
        workspace().body(1).dip.value = dip;
        edit::note_change(workbench, {"dip", "", false});
    }
    /// Another start of the program, which goes on with the newest model that was kept.
    struct Start : edit::LineSample {
        explicit Start(const std::string& root) : keeper(root), kept(root, std::time(nullptr)) {
            edit::start_history(workbench);
            offered = kept.list();
            if (!offered.empty()) brought_back = kept.take(0, workbench, keeper);
        }
        float dip() { return workspace().body(1).dip.value; }
        RecoveryKeeper keeper;
        KeptModels kept;
        std::vector<KeptModel> offered;
        bool brought_back = false;
    };
    std::vector<KeptModel> kept_now() { return KeptModels(root(), std::time(nullptr)).list(); }
};

/// Starts a process that edits, keeps its model, says so and waits to be killed.
pid_t start_victim(RecoverySample& sample, float dip) {
    int ready[2];
    if (::pipe(ready) != 0) throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child == 0) {
        RecoveryKeeper keeper(sample.root());
        sample.edit(dip);
        keeper.tick(sample.workbench);
        const char done = '.';
        if (::write(ready[1], &done, 1) != 1) ::_exit(1);
        for (;;) ::pause();
    }
    char done = 0;
    if (::read(ready[0], &done, 1) != 1) throw std::runtime_error("the victim said nothing");
    ::close(ready[0]);
    ::close(ready[1]);
    return child;
}

void kill_hard(pid_t process) {
    ::kill(process, SIGKILL);
    int status = 0;
    ::waitpid(process, &status, 0);
}

mode_t rights_of(const std::string& path) {
    struct stat status {};
    ::stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

std::size_t folders(const std::string& root) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(root), fs::directory_iterator()));
}

}  // namespace

TEST(Recovery, brings_back_the_model_of_a_process_that_was_killed) {
    RecoverySample sample;
    kill_hard(start_victim(sample, 33));
    RecoverySample::Start start(sample.root());
    EXPECT_TRUE(start.brought_back);
    ASSERT_EQ(start.offered.size(), 1U);
    EXPECT_EQ(start.offered[0].name, "line.axm");
    EXPECT_EQ(start.offered[0].bodies, 1);
    EXPECT_TRUE(start.prompts.choices.empty()) << "nothing is asked";
    EXPECT_EQ(start.workspace().body_count, 1);
    EXPECT_EQ(start.dip(), 33);
    EXPECT_EQ(start.workspace().body(1).name, "Dyke");
    EXPECT_EQ(start.workspace().model_file, sample.workspace().model_file);
    EXPECT_TRUE(start.workbench.unsaved);
    EXPECT_TRUE(start.session.model_changed);
    EXPECT_TRUE(start.workbench.history.can_undo());
    EXPECT_TRUE(start.load().loaded);
    EXPECT_EQ(folders(sample.root()), 1U) << "what was brought back is kept under the new process alone";
    EXPECT_FALSE(file_exists(start.keeper.file()).empty());
}

TEST(Recovery, brings_back_the_last_fit_as_well) {
    RecoverySample sample;
    sample.load();
    sample.edit(33);
    sample.workspace().fit = sample_fit(sample.workspace());
    {
        RecoveryKeeper keeper(sample.root());
        keeper.tick(sample.workbench);
    }
    RecoverySample::Start start(sample.root());
    ASSERT_TRUE(start.brought_back);
    ASSERT_TRUE(start.workspace().fit);
    expect_same(*start.workspace().fit, *sample.workspace().fit);
    start.load();
    EXPECT_EQ(model_mark(start.workspace()), model_mark(sample.workspace()));
    EXPECT_TRUE(as_fitted(start.workspace()));
}

TEST(Recovery, is_not_offered_what_a_living_process_keeps) {
    RecoverySample sample;
    const pid_t other = start_victim(sample, 44);
    {
        RecoverySample::Start start(sample.root());
        EXPECT_TRUE(start.offered.empty());
        start.keeper.leave(start.workbench);
    }
    kill_hard(other);
    EXPECT_TRUE(RecoverySample::Start(sample.root()).brought_back);
}

TEST(Recovery, keeps_two_programs_apart) {
    RecoverySample sample;
    const pid_t first = start_victim(sample, 11);
    RecoverySample other;
    other.workspace().model_file.clear();
    RecoveryKeeper second(sample.root());
    other.edit(22);
    second.keep(other.workbench);
    EXPECT_EQ(folders(sample.root()), 2U);
    kill_hard(first);
    RecoverySample::Start start(sample.root());
    EXPECT_EQ(start.dip(), 11);
    EXPECT_NE(read_whole_file(second.file()).find(" 22 "), std::string::npos);
}

TEST(Recovery, leaves_nothing_when_all_is_saved_or_there_is_nothing_to_lose) {
    RecoverySample sample;
    {
        RecoveryKeeper keeper(sample.root());
        sample.edit(12);
        keeper.keep(sample.workbench);
        edit::note_saved(sample.workbench);
        EXPECT_TRUE(keeper.leave(sample.workbench));
    }
    EXPECT_EQ(folders(sample.root()), 0U);
    RecoverySample settings_alone;
    settings_alone.workspace().body_count = 0;
    settings_alone.workspace().definition.data_file.clear();
    edit::note_change(settings_alone.workbench, {"field", "", false});
    RecoveryKeeper keeper(sample.root());
    EXPECT_TRUE(settings_alone.workbench.unsaved);
    EXPECT_TRUE(keeper.leave(settings_alone.workbench));
    EXPECT_TRUE(sample.kept_now().empty());
}

TEST(Recovery, an_unsaved_model_stays_when_the_program_is_left_properly) {
    RecoverySample sample;
    {
        RecoveryKeeper keeper(sample.root());
        sample.edit(12);
        EXPECT_TRUE(keeper.leave(sample.workbench)) << "also what changed after the last minute";
    }
    RecoverySample::Start start(sample.root());
    EXPECT_TRUE(start.brought_back);
    EXPECT_EQ(start.dip(), 12);
    EXPECT_TRUE(start.workbench.unsaved);
    EXPECT_TRUE(start.keeper.leave(start.workbench));
    EXPECT_EQ(sample.kept_now().size(), 1U) << "left unsaved again it is offered again, once";
}

TEST(Recovery, says_so_when_a_model_cannot_be_kept_and_leaves_what_it_has) {
    RecoverySample sample;
    EXPECT_EQ(run_in_child([&] {
                  RecoveryKeeper keeper(sample.root());
                  sample.edit(12);
                  keeper.tick(sample.workbench);
                  sample.edit(13);
                  limit_file_size(100);
                  if (keeper.leave(sample.workbench) || keeper.take_problem().empty()) return 1;
                  keeper.finish(sample.workbench);
                  return 0;
              }),
              0);
    EXPECT_EQ(RecoverySample::Start(sample.root()).dip(), 12) << "the copy of before";
}

TEST(Recovery, a_copy_that_nobody_wants_now_stays_for_the_next_start) {
    RecoverySample sample;
    kill_hard(start_victim(sample, 33));
    for (int start = 0; start < 2; ++start) {
        RecoveryKeeper keeper(sample.root());
        EXPECT_EQ(sample.kept_now().size(), 1U);
        sample.workbench.unsaved = false;
        keeper.leave(sample.workbench);
    }
    EXPECT_EQ(folders(sample.root()), 1U);
    EXPECT_EQ(RecoverySample::Start(sample.root()).dip(), 33);
}

TEST(Recovery, a_copy_is_offered_by_one_program_at_a_time) {
    RecoverySample sample;
    kill_hard(start_victim(sample, 33));
    {
        const KeptModels first(sample.root(), std::time(nullptr));
        EXPECT_EQ(first.list().size(), 1U);
        EXPECT_EQ(run_in_child([&] { return static_cast<int>(sample.kept_now().size()); }), 0);
    }
    EXPECT_EQ(sample.kept_now().size(), 1U);
}

TEST(Recovery, a_copy_stays_until_it_is_kept_anew) {
    RecoverySample sample;
    kill_hard(start_victim(sample, 33));
    EXPECT_EQ(run_in_child([&] {
                  RecoveryKeeper keeper(sample.root());
                  KeptModels kept(sample.root(), std::time(nullptr));
                  edit::LineSample start;
                  edit::start_history(start.workbench);
                  limit_file_size(100);
                  const bool taken = kept.take(0, start.workbench, keeper);
                  return taken && kept.list().size() == 1 ? 0 : 1;
              }),
              0);
    EXPECT_TRUE(RecoverySample::Start(sample.root()).brought_back);
}

TEST(Recovery, removes_what_is_discarded) {
    RecoverySample sample;
    kill_hard(start_victim(sample, 33));
    KeptModels kept(sample.root(), std::time(nullptr));
    EXPECT_TRUE(kept.discard(0, sample.prompts));
    EXPECT_EQ(folders(sample.root()), 0U);
}

TEST(Recovery, lists_the_newest_first_and_keeps_no_more_than_ten_nor_longer_than_a_year) {
    RecoverySample sample;
    const std::time_t now = std::time(nullptr);
    constexpr int day = 24 * 3600;
    for (int i = 0; i < most_kept_models + 2; ++i) {
        RecoveryKeeper keeper(sample.root());
        sample.edit(static_cast<float>(i + 1));
        const std::string file = keeper.file();
        keeper.leave(sample.workbench);
        const timespec times[2]{{now - i * day, 0}, {now - i * day, 0}};
        ::utimensat(AT_FDCWD, file.c_str(), times, 0);
    }
    const auto kept = sample.kept_now();
    ASSERT_EQ(kept.size(), static_cast<std::size_t>(most_kept_models));
    for (std::size_t i = 1; i < kept.size(); ++i) EXPECT_LE(kept[i].time, kept[i - 1].time);
    EXPECT_EQ(folders(sample.root()), static_cast<std::size_t>(most_kept_models)) << "the oldest went";
    EXPECT_EQ(KeptModels(sample.root(), now + 360 * std::time_t{day}).list().size(), 7U);
    EXPECT_EQ(folders(sample.root()), 7U);
}

TEST(Recovery, says_what_is_kept_in_words) {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    EXPECT_EQ(kept_model_words({"line.axm", 1'700'000'000, 3}), "line.axm, 2023-11-14 22:13, 3 bodies");
    EXPECT_EQ(kept_model_words({"line", 0, 1}), "line, 1970-01-01 00:00, 1 body");
}

TEST(Recovery, a_model_without_a_file_is_named_after_its_line) {
    RecoverySample sample;
    sample.workspace().model_file.clear();
    sample.workspace().source.file = "survey.xyz";
    sample.workspace().source.line = "5690";
    EXPECT_EQ(recovery_origin(recovery_text(sample.workbench)).name, "line 5690 of survey.xyz");
    sample.workspace().source = {};
    sample.workspace().definition.data_file = "/far/away/line.dat";
    EXPECT_EQ(recovery_origin(recovery_text(sample.workbench)).name, "line.dat");
    EXPECT_EQ(recovery_origin("no model\n").bodies, std::nullopt);
}

TEST(Recovery, changes_nothing_of_the_session_that_it_keeps) {
    RecoverySample sample;
    sample.load();
    sample.edit(12);
    sample.workspace().body(1).end_width_a = 5;
    sample.workspace().display.valid = false;
    const std::string file = sample.workspace().model_file;
    RecoveryKeeper keeper(sample.root());
    keeper.keep(sample.workbench);
    EXPECT_EQ(sample.workspace().model_file, file);
    EXPECT_EQ(sample.workspace().body(1).end_width_a, 5);
    EXPECT_FALSE(sample.workspace().display.valid);
    EXPECT_EQ(sample.workspace().station_count, edit::LineSample::stations);
    EXPECT_TRUE(sample.workbench.unsaved);
    EXPECT_EQ(keeper.take_problem(), "");
}

TEST(Recovery, writes_only_what_is_unsaved_and_changed) {
    RecoverySample sample;
    RecoveryKeeper keeper(sample.root());
    keeper.tick(sample.workbench);
    EXPECT_EQ(file_exists(keeper.file()), "");
    sample.edit(12);
    keeper.tick(sample.workbench);
    EXPECT_NE(file_exists(keeper.file()), "");
    fs::remove(keeper.file());
    keeper.tick(sample.workbench);
    EXPECT_EQ(file_exists(keeper.file()), "") << "nothing changed since";
    sample.edit(13);
    keeper.tick(sample.workbench);
    EXPECT_NE(file_exists(keeper.file()), "");
    edit::note_saved(sample.workbench);
    keeper.tick(sample.workbench);
    EXPECT_EQ(file_exists(keeper.file()), "") << "the saved file is newer";
}

TEST(Recovery, tells_once_that_it_cannot_keep_anything) {
    RecoverySample sample;
    const std::string root = sample.folder.write("no_folder", "a file");
    RecoveryKeeper keeper(root);
    EXPECT_NE(keeper.take_problem(), "");
    sample.edit(1);
    keeper.tick(sample.workbench);
    keeper.tick(sample.workbench);
    EXPECT_EQ(keeper.take_problem(), "");
    EXPECT_TRUE(KeptModels(root, std::time(nullptr)).list().empty());
    EXPECT_FALSE(keeper.leave(sample.workbench));
    EXPECT_NE(keeper.take_problem(), "");
}

TEST(Recovery, what_is_kept_is_for_the_user_alone_whatever_the_mask_says) {
    RecoverySample sample;
    fs::create_directories(sample.root());
    fs::permissions(sample.root(), fs::perms::all);
    for (const mode_t mask : {mode_t{0}, mode_t{0777}}) {
        const mode_t before = ::umask(mask);
        RecoveryKeeper keeper(sample.root());
        sample.edit(mask == 0 ? 12.0F : 13.0F);
        keeper.keep(sample.workbench);
        ::umask(before);
        EXPECT_EQ(keeper.take_problem(), "");
        EXPECT_EQ(rights_of(sample.root()), 0700U);
        EXPECT_EQ(rights_of(folder_name(keeper.file())), 0700U);
        for (const auto& entry : fs::directory_iterator(folder_name(keeper.file())))
            EXPECT_EQ(rights_of(entry.path().string()), 0600U) << entry.path();
        fs::permissions(keeper.file(), fs::perms::all);
        sample.edit(14);
        keeper.keep(sample.workbench);
        EXPECT_EQ(rights_of(keeper.file()), 0600U) << "what others made wider is narrow again";
        edit::note_saved(sample.workbench);
        keeper.leave(sample.workbench);
    }
}

TEST(Recovery, a_save_after_it_asks_only_when_somebody_else_wrote_the_file) {
    for (const bool by_others : {false, true}) {
        RecoverySample sample;
        const std::string file = sample.workspace().model_file;
        ASSERT_EQ(open_model_file(sample.workbench, ReadMode::everything, file), OpenOutcome::opened);
        kill_hard(start_victim(sample, 33));
        if (by_others) append_to_file(file, "more\r\n");
        RecoverySample::Start start(sample.root());
        start.prompts.choices.clear();
        start.prompts.chosen = {"Overwrite"};
        EXPECT_EQ(save_by_button(start.workbench, {}), SaveOutcome::saved);
        EXPECT_EQ(start.prompts.choices.size(), by_others ? 1U : 0U);
    }
}

TEST(Recovery, goes_on_after_a_file_that_cannot_be_read_as_a_model) {
    RecoverySample sample;
    fs::create_directories(sample.root() + "/1-1");
    std::ofstream(sample.root() + "/1-1/model.axm") << "no model\n";
    RecoverySample::Start start(sample.root());
    EXPECT_FALSE(start.brought_back);
    EXPECT_FALSE(start.prompts.messages.empty());
}

}  // namespace anomalis::flow
