#include "core/prompts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/scripted_prompts.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(MessageScope, without_one_a_message_shows_at_once) {
    ScriptedPrompts prompts;
    prompts.message("a");
    prompts.message("a");
    EXPECT_THAT(prompts.messages, ElementsAre("a", "a"));
}

TEST(MessageScope, a_repeated_message_is_shown_once_with_its_count) {
    ScriptedPrompts prompts;
    {
        const MessageScope command(prompts);
        for (int i = 0; i < 300; ++i) prompts.message("log of 0");
        prompts.message("once");
        EXPECT_THAT(prompts.messages, IsEmpty());
    }
    EXPECT_THAT(prompts.messages, ElementsAre("log of 0 (300 times)", "once"));
}

TEST(MessageScope, the_order_is_that_of_the_first_occurrence) {
    ScriptedPrompts prompts;
    {
        const MessageScope command(prompts);
        for (const char* text : {"b", "a", "b", "c", "a"}) prompts.message(text);
    }
    EXPECT_THAT(prompts.messages, ElementsAre("b (2 times)", "a (2 times)", "c"));
}

TEST(MessageScope, an_inner_command_belongs_to_the_outer_one) {
    ScriptedPrompts prompts;
    {
        const MessageScope outer(prompts);
        prompts.message("a");
        {
            const MessageScope inner(prompts);
            prompts.message("a");
        }
        EXPECT_THAT(prompts.messages, IsEmpty());
    }
    EXPECT_THAT(prompts.messages, ElementsAre("a (2 times)"));
}

TEST(MessageScope, what_was_said_is_shown_before_a_question) {
    ScriptedPrompts prompts;
    prompts.yes_no = {true};
    prompts.texts = {"7"};
    prompts.open_paths = {"/a"};
    const MessageScope command(prompts);
    prompts.message("missing");
    EXPECT_TRUE(prompts.ask_yes_no("go on?"));
    EXPECT_THAT(prompts.messages, ElementsAre("missing"));
    prompts.message("second");
    EXPECT_EQ(prompts.input_box("t", "p", "1"), "7");
    prompts.message("second");
    EXPECT_EQ(prompts.open_file({}), "/a");
    prompts.message("third");
    EXPECT_EQ(prompts.save_file({}), std::nullopt);
    EXPECT_THAT(prompts.messages, ElementsAre("missing", "second", "second", "third"));
}

TEST(Prompts, a_choice_comes_after_what_was_said_and_closing_it_means_the_last_answer) {
    ScriptedPrompts prompts;
    prompts.chosen = {"Overwrite"};
    const MessageScope command(prompts);
    prompts.message("first");
    const std::vector<std::string> answers{"Save as...", "Overwrite", "Cancel"};
    EXPECT_EQ(prompts.choose("changed", answers), 1U);
    EXPECT_THAT(prompts.messages, ElementsAre("first"));
    EXPECT_EQ(prompts.choose("changed", answers), 2U);
    EXPECT_EQ(prompts.choices.at(0).text, "changed");
    EXPECT_EQ(prompts.choices.at(0).answers, answers);
}

TEST(MessageScope, many_different_messages_stay_cheap) {
    ScriptedPrompts prompts;
    {
        const MessageScope command(prompts);
        for (int i = 0; i < 50'000; ++i) prompts.message("line " + std::to_string(i));
    }
    EXPECT_EQ(prompts.messages.size(), 50'000U);
    EXPECT_EQ(prompts.messages.back(), "line 49999");
}

TEST(MessageScope, the_next_command_starts_afresh) {
    ScriptedPrompts prompts;
    for (int i = 0; i < 2; ++i) {
        const MessageScope command(prompts);
        prompts.message("a");
    }
    EXPECT_THAT(prompts.messages, ElementsAre("a", "a"));
}

/// Keeps the kinds apart, as a listener may.
class SortingPrompts : public ScriptedPrompts {
  public:
    std::vector<Severity> severities;

  protected:
    void show_text(const std::string& text, Severity severity) override {
        severities.push_back(severity);
        show_message(text);
    }
};

TEST(Prompts, a_text_is_a_failure_unless_it_says_otherwise) {
    SortingPrompts prompts;
    prompts.message("lost");
    prompts.remark("done");
    prompts.message("odd", Severity::doubt);
    EXPECT_THAT(prompts.severities, ElementsAre(Severity::failure, Severity::remark, Severity::doubt));
    EXPECT_THAT(prompts.messages, ElementsAre("lost", "done", "odd"));
}

TEST(MessageScope, a_text_that_is_said_as_two_kinds_counts_as_the_graver) {
    SortingPrompts prompts;
    Faults faults;
    faults.add("a", 1, Severity::doubt);
    {
        const MessageScope command(prompts);
        prompts.remark("a");
        prompts.remark("b");
        show_faults(faults, prompts);
    }
    EXPECT_THAT(prompts.messages, ElementsAre("a (2 times)", "b"));
    EXPECT_THAT(prompts.severities, ElementsAre(Severity::doubt, Severity::remark));
}

}  // namespace
}  // namespace anomalis
