#include "core/process_mark.h"

#include <algorithm>
#include <cctype>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace anomalis {
namespace {

std::string with_part(const std::string& mark, int part, const std::string& text) {
    std::size_t begin = 0;
    for (int i = 0; i < part; ++i) begin = mark.find('-', begin) + 1;
    const std::size_t end = std::min(mark.find('-', begin), mark.size());
    return mark.substr(0, begin) + text + mark.substr(end);
}

TEST(ProcessMark, of_a_living_process_has_not_ended) {
    const std::string mark = own_process_mark();
    EXPECT_EQ(mark, own_process_mark());
    EXPECT_EQ(std::count(mark.begin(), mark.end(), '-'), 2);
    EXPECT_TRUE(
        std::all_of(mark.begin(), mark.end(), [](unsigned char c) { return std::isalnum(c) || c == '-'; }));
    EXPECT_FALSE(process_has_ended(mark));
}

TEST(ProcessMark, of_a_process_that_is_gone_has_ended) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        const std::string mark = own_process_mark();
        ::_exit(::write(ends[1], mark.data(), mark.size()) > 0 ? 0 : 1);
    }
    char text[100];
    const auto size = ::read(ends[0], text, sizeof text);
    ASSERT_GT(size, 0);
    ::waitpid(child, nullptr, 0);
    EXPECT_TRUE(process_has_ended(std::string(text, static_cast<std::size_t>(size))));
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(ProcessMark, of_an_earlier_process_of_the_same_number_has_ended) {
    EXPECT_TRUE(process_has_ended(with_part(own_process_mark(), 2, "1")));
}

TEST(ProcessMark, of_another_machine_or_without_sense_has_not_ended) {
    const std::string mark = own_process_mark();
    EXPECT_FALSE(process_has_ended(with_part(with_part(mark, 2, "1"), 0, "00000000")));
    for (const char* number : {"", "0", "-1", "1x", "99999999999999999999", "x"})
        EXPECT_FALSE(process_has_ended(with_part(mark, 1, number))) << number;
    for (const char* text : {"", "-", "--", "a-b-c", "model.axm"})
        EXPECT_FALSE(process_has_ended(text)) << text;
}

}  // namespace
}  // namespace anomalis
