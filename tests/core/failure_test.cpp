#include "core/failure.h"

#include <cerrno>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

#include "support/scripted_prompts.h"

namespace anomalis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Fault, has_the_usual_text) {
    EXPECT_STREQ(Fault(FaultKind::division_by_zero).what(), "Division by zero");
    EXPECT_STREQ(Fault(FaultKind::subscript).what(), "Subscript out of range");
    EXPECT_STREQ(Fault(FaultKind::overflow).what(), "Overflow");
    EXPECT_STREQ(Fault(FaultKind::invalid_call).what(), "Invalid procedure call or argument");
    EXPECT_STREQ(Fault(FaultKind::out_of_memory).what(), "Out of memory");
    EXPECT_STREQ(Fault(FaultKind::input_past_end, "line 12").what(), "Input past end of file (line 12)");
}

TEST(FileFault, tells_the_reason_of_the_system_and_the_path) {
    EXPECT_STREQ(FileFault(ENOENT, "/a/b.dat").what(), "No such file or directory (/a/b.dat)");
}

TEST(ReportFailure, success_says_nothing) {
    ScriptedPrompts prompts;
    EXPECT_EQ(report_failure(prompts, "An error occurred: ", [] {}), 0);
    EXPECT_THAT(prompts.messages, IsEmpty());
}

TEST(ReportFailure, a_failure_is_its_prefix_and_its_text) {
    ScriptedPrompts prompts;
    EXPECT_EQ(report_failure(prompts, "An error occurred: ", [] { throw Fault(FaultKind::overflow); }), -1);
    EXPECT_EQ(report_failure(prompts, "Reading: ", [] { throw FileFault(EISDIR, "/a"); }), -1);
    EXPECT_THAT(prompts.messages, ElementsAre("An error occurred: Overflow", "Reading: Is a directory (/a)"));
}

TEST(FaultText, what_the_library_raises_is_told_in_the_same_words) {
    const auto text_of = [](auto work) {
        ScriptedPrompts prompts;
        report_failure(prompts, "", work);
        return prompts.messages.at(0);
    };
    EXPECT_EQ(text_of([] { throw std::bad_alloc(); }), "Out of memory");
    EXPECT_EQ(text_of([] { std::vector<double>().reserve(std::size_t(-1)); }), "Out of memory");
    EXPECT_EQ(text_of([] { (void)std::vector<double>().at(3); }), "Subscript out of range");
    EXPECT_EQ(text_of([] { (void)std::filesystem::file_size("/no/such/file"); }),
              "No such file or directory");
}

}  // namespace
}  // namespace anomalis
