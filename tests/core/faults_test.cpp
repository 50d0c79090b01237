#include "core/faults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/failure.h"
#include "support/scripted_prompts.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Faults, a_new_record_is_empty_and_a_cleared_one_again) {
    Faults faults;
    EXPECT_TRUE(faults.empty());
    faults.add("a");
    EXPECT_FALSE(faults.empty());
    faults.clear();
    EXPECT_TRUE(faults.empty());
    faults.add("a");
    ASSERT_EQ(faults.entries().size(), 1U);
    EXPECT_EQ(faults.entries()[0].count, 1);
}

TEST(Faults, repeats_are_counted_at_the_place_of_the_first) {
    Faults faults;
    for (const char* text : {"b", "a", "b", "c"}) faults.add(text);
    faults.add("a", 10);
    ASSERT_EQ(faults.entries().size(), 3U);
    EXPECT_EQ(faults.entries()[0].text, "b");
    EXPECT_EQ(faults.entries()[0].count, 2);
    EXPECT_EQ(faults.entries()[1].text, "a");
    EXPECT_EQ(faults.entries()[1].count, 11);
    EXPECT_EQ(faults.entries()[2].text, "c");
}

TEST(Faults, many_different_texts_stay_cheap) {
    Faults faults;
    for (int i = 0; i < 50'000; ++i) faults.add("line " + std::to_string(i));
    EXPECT_EQ(faults.entries().size(), 50'000U);
    EXPECT_EQ(faults.entries().back().text, "line 49999");
}

TEST(Faults, a_failure_is_noted_as_its_prefix_and_its_text) {
    Faults faults;
    EXPECT_EQ(report_failure(faults, "An error occurred: ", [] {}), 0);
    EXPECT_TRUE(faults.empty());
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(report_failure(faults, "An error occurred: ", [] { throw Fault(FaultKind::overflow); }),
                  -1);
    ASSERT_EQ(faults.entries().size(), 1U);
    EXPECT_EQ(faults.entries()[0].text, "An error occurred: Overflow");
    EXPECT_EQ(faults.entries()[0].count, 2);
}

TEST(ShowFaults, each_text_is_shown_once_with_its_count) {
    ScriptedPrompts prompts;
    Faults faults;
    show_faults(faults, prompts);
    EXPECT_THAT(prompts.messages, IsEmpty());
    for (int i = 0; i < 300; ++i) faults.add("log of 0");
    faults.add("once");
    show_faults(faults, prompts);
    EXPECT_THAT(prompts.messages, ElementsAre("log of 0 (300 times)", "once"));
}

TEST(ShowFaults, within_a_command_they_count_with_its_other_messages) {
    ScriptedPrompts prompts;
    {
        const MessageScope command(prompts);
        Faults faults;
        faults.add("a");
        faults.add("b", 2);
        show_faults(faults, prompts);
        prompts.message("c");
        show_faults(faults, prompts);
        EXPECT_THAT(prompts.messages, IsEmpty());
    }
    EXPECT_THAT(prompts.messages, ElementsAre("a (2 times)", "b (4 times)", "c"));
}

}  // namespace
}  // namespace anomalis
