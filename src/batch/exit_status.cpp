#include "batch/exit_status.h"

namespace anomalis::batch {

std::vector<manual::NamedText> exit_status_words(bool of_survey) {
    std::vector<manual::NamedText> words;
    const auto add = [&words](int status, const char* text) {
        words.push_back({std::to_string(status), text});
    };
    add(exit_done,
        "Done, and nothing was noted as a failure; a line \"Note: ...\" on the standard error is a remark");
    add(exit_failed,
        "The command failed, or something on the way to its numbers did; the standard error says what");
    add(exit_usage,
        "Wrong usage, also an output that is an input, or a body that the model has not: nothing was done");
    if (of_survey)
        add(exit_try_again,
            "Of survey alone: stopped, or no room, no access to a file; the same command goes on with it");
    return words;
}

}  // namespace anomalis::batch
