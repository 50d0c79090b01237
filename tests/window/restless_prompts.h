#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "core/prompts.h"

namespace anomalis {

/// Answers as someone who tries everything: by chance, from what there is. Keeps nothing but counts.
class RestlessPrompts : public Prompts {
  public:
    explicit RestlessPrompts(std::mt19937& random) : random_(random) {}

    std::vector<std::string> files;        ///< that an open dialog may give
    std::vector<std::string> save_places;  ///< that a save dialog may give
    long messages = 0, questions = 0;
    std::string last_message;
    std::function<void()> on_yield;

    void yield() override {
        if (on_yield) on_yield();
    }

  protected:
    void show_message(const std::string& text) override {
        ++messages;
        last_message = text;
    }
    bool show_question(const std::string& text) override {
        ++questions;
        last_message = text;
        return below(2) == 0;
    }
    std::size_t show_choice(const std::string& text, const std::vector<std::string>& answers) override {
        ++questions;
        last_message = text;
        return below(answers.size());
    }
    std::optional<std::string> show_input_box(const std::string&, const std::string&,
                                              const std::string& default_text) override {
        return one_of({default_text, "25", "-120.5", "1e38", "", "no number", "0"});
    }
    std::optional<std::string> show_open_dialog(const FileRequest&) override { return one_of(files); }
    std::optional<std::string> show_save_dialog(const FileRequest&) override { return one_of(save_places); }

  private:
    std::size_t below(std::size_t limit) { return random_() % limit; }
    /// One in five is a cancel.
    std::optional<std::string> one_of(const std::vector<std::string>& texts) {
        if (texts.empty() || below(5) == 0) return std::nullopt;
        return texts[below(texts.size())];
    }
    std::mt19937& random_;
};

}  // namespace anomalis
