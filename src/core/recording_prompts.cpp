#include "core/recording_prompts.h"

namespace anomalis {

void RecordingPrompts::yield() {
    if (on_yield) on_yield();
}

void RecordingPrompts::show_text(const std::string& text, Severity severity) {
    if (severity == Severity::failure) messages_.push_back(text);
    (severity == Severity::remark ? remarks_ : failures_).push_back(text);
}

}  // namespace anomalis
