#include "core/prompts.h"

#include <utility>

namespace anomalis {

void Prompts::message(const std::string& text, Severity severity) {
    if (depth_ == 0) return show_text(text, severity);
    pending_.add(text, 1, severity);
}

void Prompts::flush() {
    const Faults shown = std::exchange(pending_, {});
    for (const Faults::Entry& entry : shown.entries()) show_text(counted_text(entry), entry.severity);
}

bool Prompts::ask_yes_no(const std::string& text) {
    flush();
    return show_question(text);
}

std::size_t Prompts::choose(const std::string& text, const std::vector<std::string>& answers) {
    flush();
    return show_choice(text, answers);
}

std::size_t Prompts::show_choice(const std::string& /*text*/, const std::vector<std::string>& answers) {
    return answers.size() - 1;
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

void show_faults(const Faults& faults, Prompts& prompts) {
    const MessageScope scope(prompts);
    for (const auto& [text, count, severity] : faults.entries()) prompts.pending_.add(text, count, severity);
}

MessageScope::~MessageScope() {
    if (--prompts_.depth_ == 0) prompts_.flush();
}

}  // namespace anomalis
