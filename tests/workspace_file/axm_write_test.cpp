#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "core/body_defaults.h"
#include "workspace_file/axm_samples.h"

namespace anomalis::workspace_file {
namespace {

/// No file of this process grows beyond `bytes` while it lives: a disk that is full.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit before_{};
    void (*handler_)(int);
};

/// Runs `work` in a process of its own that has no more rights than a guest. True when it returned true.
bool as_guest(const std::function<bool()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        const bool guest = ::geteuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0);
        ::_exit(guest && work() ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

struct Writing : Reading {
    int write(const std::string& path, int mode = 0) {
        return write_model_parameters(mode, path, workspace, prompts);
    }
    std::string written(int mode = 0) {
        EXPECT_EQ(write(folder.path("out.axm"), mode), 0);
        return folder.read("out.axm");
    }
};

TEST(AxmWrite, every_line_stands_in_its_place) {
    Writing w;
    w.workspace.definition.data_file = "survey.dat";
    w.workspace.definition.grav_column = 6;
    w.workspace.body_count = 1;
    ModelBody& body = w.workspace.body(1);
    body.type = thick_sheet;
    initialise_body(w.workspace, 1, w.settings, w.prompts);
    body.name = "Dyke 7";
    body.description = "west of the fault";
    body.distance.value = 503.7F;
    body.top.value = -50;
    EXPECT_EQ(w.written(),
              joined({
                  "survey.dat",
                  " 2  1  2  3  0  0  5  6  0  0  0  0 ",
                  " 56000 -65 -4 ",
                  " 0  5  1  0  0  0  0  0  0  0 ",
                  "-99999  0  10  0  0  0 ",
                  " 0  1  1 ",
                  " 0  0 ",
                  " 0  0 ",
                  " 1  1 ",
                  " 1  1 ",
                  " 0  1 ",
                  " 1  7  500  0  0 ",
                  " 2  0  1  16711680  0  Dyke 7",
                  "west of the fault",
                  "",
                  " 503.7  0  0 -50  1 -99999 -99999  1 -99999 -99999  100  100  0  0  12  1  0 ",
                  " 0  90  100  250  0 -99999 -99999  1 -99999 -99999  1 -99999 -99999  0 -99999 -99999 ",
                  " 250  0 -99999 -99999 ",
                  " 0  0 -99999 -99999 ",
                  " 0  0 -99999 -99999  0  0 -99999 -99999 ",
                  " 50000  0  0  0  1 -99999 -99999  0 -99999 -99999  0 -99999 -99999  0 -99999 -99999  "
                  "2.67  1 -99999 -99999 ",
                  "[AXM Display Settings]",
                  " 0  0  0 No 0 ",
                  " 0  0  0  0 ",
                  " 0  0 ",
              }));
}

TEST(AxmWrite, a_mode_below_0_writes_the_definitions_alone) {
    Writing w;
    w.workspace.body_count = 1;
    const std::string text = w.written(-1);
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 11);
    EXPECT_TRUE(text.ends_with("\r\n 0  1 \r\n"));
    EXPECT_FALSE(w.workspace.display.valid);
}

TEST(AxmWrite, a_save_leaves_the_record_as_it_is) {
    Writing w;
    w.workspace.body_count = 2;
    w.workspace.body(1).width.value = 30;
    w.workspace.body(2).width.value = 40;
    w.workspace.body(3).width.value = 50;
    w.written();
    EXPECT_EQ(w.workspace.body(1).end_width_a, 0);
    EXPECT_EQ(w.workspace.body(2).end_width_b, 0);
    EXPECT_EQ(w.workspace.body(3).end_width_a, 0);
    EXPECT_FALSE(w.workspace.display.valid);
}

TEST(AxmWrite, very_large_and_very_small_values_take_an_exponent) {
    Writing w;
    w.workspace.field.intensity = 1e32F;
    w.workspace.field.inclination = -2.5e-7F;
    w.workspace.first_distance = 123456.789012345;
    const std::string text = w.written();
    EXPECT_NE(text.find("\r\n 1E+32 -2.5E-07 -4 \r\n"), std::string::npos);
    EXPECT_NE(text.find("  123456.789012345  0 \r\n"), std::string::npos);
}

TEST(AxmWrite, a_line_break_in_a_name_does_not_shift_the_lines_that_follow) {
    Writing w;
    w.workspace.body_count = 1;
    w.workspace.body(1).name = "first\r\nsecond";
    w.workspace.body(1).description = "a\nb";
    w.written();
    Reading back;
    ASSERT_EQ(back.read(w.folder.path("out.axm")), 0);
    EXPECT_EQ(back.workspace.body(1).name, "first second");
    EXPECT_EQ(back.workspace.body(1).description, "a b");
}

TEST(AxmWrite, two_saves_of_one_model_give_identical_bytes) {
    Writing w;
    ASSERT_EQ(w.read_lines(whole_file(3)), 0);
    const std::string first = w.written();
    EXPECT_EQ(w.written(), first);
}

TEST(AxmWrite, a_full_disk_leaves_the_old_file) {
    Writing w;
    ASSERT_EQ(w.read_lines(whole_file(40)), 0);
    const std::string path = w.folder.write("out.axm", "the old model");
    {
        const FullDisk full(4096);
        EXPECT_EQ(w.write(path), -1);
    }
    EXPECT_EQ(w.folder.read("out.axm"), "the old model");
    EXPECT_TRUE(w.prompts.told("An error occurred while saving the model parameters: "));
    EXPECT_EQ(w.folder.entries(), 3) << "nothing but survey.dat, model.axm and out.axm";
}

TEST(AxmWrite, a_folder_that_may_not_be_written_to_keeps_the_old_file) {
    Writing w;
    ASSERT_EQ(w.read_lines(whole_file()), 0);
    const std::string path = w.folder.write("out.axm", "the old model");
    ASSERT_EQ(::chmod(w.folder.folder().c_str(), 0555), 0);
    EXPECT_TRUE(
        as_guest([&] { return w.write(path) == -1 && w.prompts.told("saving the model parameters: "); }));
    ASSERT_EQ(::chmod(w.folder.folder().c_str(), 0755), 0);
    EXPECT_EQ(w.folder.read("out.axm"), "the old model");
}

TEST(AxmWrite, a_folder_in_place_of_the_file_is_told_and_kept) {
    Writing w;
    EXPECT_EQ(w.write(w.folder.folder()), -1);
    EXPECT_TRUE(w.prompts.told("An error occurred while saving the model parameters: "));
    EXPECT_EQ(w.write(w.folder.path("missing/out.axm")), -1);
    EXPECT_EQ(w.folder.entries(), 0);
}

TEST(AxmWrite, names_of_any_letters_and_of_255_bytes_work) {
    Writing w;
    for (const std::string& name :
         {std::string("with blanks 'and' \"quotes\".axm"), std::string("Åsele 磁気.axm"),
          std::string("two\nlines.axm"), std::string(251, 'x') + ".axm"}) {
        EXPECT_EQ(w.write(w.folder.path(name)), 0) << name;
        EXPECT_EQ(w.read(w.folder.path(name)), 0) << name;
    }
}

}  // namespace
}  // namespace anomalis::workspace_file
