#include "core/prompts.h"

#include <utility>

namespace anomalis {

void Prompts::message(const std::string& text) {
    if (depth_ == 0) return show_message(text);
    const auto [place, is_new] = places_.try_emplace(text, pending_.size());
    if (is_new) {
        pending_.push_back({text, 1});
    } else {
        ++pending_[place->second].count;
    }
}

void Prompts::flush() {
    places_.clear();
    const std::vector<Pending> shown = std::exchange(pending_, {});
    for (const Pending& pending : shown) {
        show_message(pending.count == 1 ? pending.text
                                        : pending.text + " (" + std::to_string(pending.count) + " times)");
    }
}

bool Prompts::ask_yes_no(const std::string& text) {
    flush();
    return show_question(text);
}

std::optional<std::string> Prompts::input_box(const std::string& title, const std::string& prompt,
                                              const std::string& default_text) {
    flush();
    return show_input_box(title, prompt, default_text);
}

std::optional<std::string> Prompts::open_file(const FileRequest& request) {
    flush();
    return show_open_dialog(request);
}

std::optional<std::string> Prompts::save_file(const FileRequest& request) {
    flush();
    return show_save_dialog(request);
}

MessageScope::~MessageScope() {
    if (--prompts_.depth_ == 0) prompts_.flush();
}

}  // namespace anomalis
