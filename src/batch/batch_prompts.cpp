#include "batch/batch_prompts.h"

#include <ostream>

namespace anomalis::batch {

void BatchPrompts::yield() {
    if (on_yield) on_yield();
}

void BatchPrompts::show_message(const std::string& text) {
    messages_.push_back(text);
    err_ << text << '\n';
}

}  // namespace anomalis::batch
