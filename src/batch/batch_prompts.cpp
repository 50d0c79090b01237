#include "batch/batch_prompts.h"

#include <ostream>

#include "core/shown_text.h"

namespace anomalis::batch {

void BatchPrompts::show_text(const std::string& text, Severity severity) {
    RecordingPrompts::show_text(text, severity);
    err_ << (severity == Severity::remark ? "Note: " : "") << shown_lines(text) << '\n';
}

}  // namespace anomalis::batch
