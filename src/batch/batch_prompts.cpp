#include "batch/batch_prompts.h"

#include <ostream>

#include "core/shown_text.h"

namespace anomalis::batch {

void BatchPrompts::yield() {
    if (on_yield) on_yield();
}

void BatchPrompts::show_text(const std::string& text, Severity severity) {
    if (severity == Severity::failure) messages_.push_back(text);
    (severity == Severity::remark ? remarks_ : failures_).push_back(text);
    err_ << (severity == Severity::remark ? "Note: " : "") << shown_lines(text) << '\n';
}

}  // namespace anomalis::batch
