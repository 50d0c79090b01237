#include "batch/batch_session.h"

#include <gtest/gtest.h>

#include "batch/batch_runs.h"

namespace anomalis::batch {
namespace {

struct OpenModel : BatchFolder {
    std::ostringstream out, err;
    BatchSession session{out, err};
};

TEST(BatchSession, a_model_that_another_program_changed_meanwhile_is_not_replaced) {
    OpenModel files;
    ASSERT_EQ(files.session.open(files.model), OpenState::ready);
    const std::string theirs = model_text("survey.dat", "Their sheet");
    files.folder.write("model.axm", theirs);
    EXPECT_EQ(files.session.write_workspace(files.model), -1);
    EXPECT_EQ(files.folder.read("model.axm"), theirs);
    EXPECT_NE(files.err.str().find("--force"), std::string::npos) << files.err.str();
    ASSERT_EQ(files.session.failures().size(), 1U);
}

TEST(BatchSession, force_replaces_it_all_the_same) {
    OpenModel files;
    ASSERT_EQ(files.session.open(files.model), OpenState::ready);
    files.folder.write("model.axm", model_text("survey.dat", "Their sheet"));
    files.session.force = true;
    EXPECT_EQ(files.session.write_workspace(files.model), 0);
    EXPECT_NE(files.folder.read("model.axm").find("Sheet\r\n"), std::string::npos);
    EXPECT_EQ(files.folder.read("model.axm").find("Their"), std::string::npos);
}

TEST(BatchSession, a_model_that_stayed_as_it_was_is_replaced) {
    OpenModel files;
    ASSERT_EQ(files.session.open(files.model), OpenState::ready);
    files.folder.write("model.axm", model_text());
    EXPECT_EQ(files.session.write_workspace(files.model), 0) << "written anew with the same bytes";
    EXPECT_EQ(files.session.write_workspace(files.folder.path("new.axm")), 0);
}

}  // namespace
}  // namespace anomalis::batch
