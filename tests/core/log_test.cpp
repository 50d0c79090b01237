#include "core/log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/scripted_prompts.h"
#include "support/temp_folder.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;
using ::testing::MatchesRegex;

const char* const time_pattern = "[0-9][0-9]-[A-Z][a-z][a-z]-[0-9][0-9][0-9][0-9] [0-9][0-9]:[0-9][0-9]";

TEST(PresentTime, is_day_month_year_and_minutes) {
    EXPECT_THAT(present_time_text(), MatchesRegex(time_pattern));
}

TEST(SessionLog, starts_with_its_title_and_its_first_line) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    ScriptedPrompts prompts;
    SessionLog log;
    log.turn_on(prompts);
    EXPECT_TRUE(log.on());
    EXPECT_EQ(log.path(), folder.path("axm_logging.dat"));
    EXPECT_THAT(prompts.messages, ElementsAre("Logging file is: " + log.path()));
    EXPECT_THAT(folder.read("axm_logging.dat"),
                MatchesRegex(std::string("Logging for Anomalis started at : ") + time_pattern +
                             "\n1 : Start Logging [0-9]+\\.[0-9]+\\.[0-9]+ " + time_pattern + "\n"));
}

TEST(SessionLog, every_line_is_numbered_and_on_the_disk_at_once) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    ScriptedPrompts prompts;
    SessionLog log;
    log.turn_on(prompts);
    log.log_message(1, "loaded");
    EXPECT_THAT(folder.read("axm_logging.dat"), ::testing::EndsWith("\n2 : loaded\n"));
    log.log_message(1, "");
    EXPECT_THAT(folder.read("axm_logging.dat"), ::testing::EndsWith("\n2 : loaded\n3 : \n"));
}

TEST(SessionLog, says_nothing_while_it_is_off) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    ScriptedPrompts prompts;
    SessionLog log;
    log.log_message(-1);
    log.log_message(1, "not yet");
    EXPECT_EQ(folder.entries(), 0);
    log.turn_on(prompts);
    log.turn_off(prompts);
    const std::string before = folder.read("axm_logging.dat");
    log.log_message(1, "no more");
    EXPECT_EQ(folder.read("axm_logging.dat"), before) << "the file stays as it is";
    EXPECT_EQ(prompts.messages.back(), "Logging file is: " + log.path());
    EXPECT_EQ(prompts.messages.size(), 2U);
}

TEST(SessionLog, a_new_log_is_a_fresh_file_and_the_numbers_run_on) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    ScriptedPrompts prompts;
    SessionLog log;
    log.turn_on(prompts);
    log.log_message(1, "old line");
    log.turn_off(prompts);
    log.turn_on(prompts);
    const std::string contents = folder.read("axm_logging.dat");
    EXPECT_EQ(contents.find("old line"), std::string::npos);
    EXPECT_NE(contents.find("\n3 : Start Logging "), std::string::npos);
}

TEST(SessionLog, another_session_starts_the_file_afresh_from_one) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    ScriptedPrompts prompts;
    SessionLog first, second;
    first.turn_on(prompts);
    first.log_message(1, "old line");
    second.turn_on(prompts);
    const std::string contents = folder.read("axm_logging.dat");
    EXPECT_EQ(contents.find("old line"), std::string::npos);
    EXPECT_NE(contents.find("\n1 : Start Logging "), std::string::npos);
}

TEST(SessionLog, a_place_that_cannot_be_written_disturbs_nothing) {
    const TempFolder folder;
    const CurrentFolder here(folder.folder());
    std::filesystem::create_directory(folder.path("axm_logging.dat"));
    ScriptedPrompts prompts;
    SessionLog log;
    log.turn_on(prompts);
    log.log_message(1, "lost");
    EXPECT_TRUE(std::filesystem::is_directory(folder.path("axm_logging.dat")));
    EXPECT_THAT(prompts.messages, ElementsAre("Logging file is: " + log.path()));
}

}  // namespace
}  // namespace anomalis
