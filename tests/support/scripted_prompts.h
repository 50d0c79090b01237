#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/prompts.h"

namespace anomalis {

/// Records everything that is shown and answers by script. An answer that the script lacks is a cancel, No,
/// or the answer that changes nothing.
class ScriptedPrompts : public Prompts {
  public:
    // What was shown, in order.
    std::vector<std::string> messages;
    std::vector<std::string> questions;
    struct Choice {
        std::string text;
        std::vector<std::string> answers;
    };
    std::vector<Choice> choices;
    struct InputBox {
        std::string title, prompt, default_text;
    };
    std::vector<InputBox> input_boxes;
    std::vector<FileRequest> open_requests;
    std::vector<FileRequest> save_requests;
    int yields = 0;
    std::function<void()> on_yield;

    // The answers to come; no value is a cancel.
    std::deque<bool> yes_no;
    std::deque<std::string> chosen;  ///< the texts of the buttons
    std::deque<std::optional<std::string>> texts;
    std::deque<std::optional<std::string>> open_paths;
    std::deque<std::optional<std::string>> save_paths;

    /// True when a message, or a part of one, holds `text`.
    bool told(const std::string& text) const {
        return std::any_of(messages.begin(), messages.end(), [&](const std::string& message) {
            return message.find(text) != std::string::npos;
        });
    }

    void yield() override {
        ++yields;
        if (on_yield) on_yield();
    }

  protected:
    void show_message(const std::string& text) override { messages.push_back(text); }
    bool show_question(const std::string& text) override {
        questions.push_back(text);
        return next(yes_no).value_or(false);
    }
    std::size_t show_choice(const std::string& text, const std::vector<std::string>& answers) override {
        choices.push_back({text, answers});
        const auto answer = next(chosen);
        const auto place = answer ? std::find(answers.begin(), answers.end(), *answer) : answers.end() - 1;
        if (place == answers.end()) throw std::logic_error("there is no answer " + *answer);
        return static_cast<std::size_t>(place - answers.begin());
    }
    std::optional<std::string> show_input_box(const std::string& title, const std::string& prompt,
                                              const std::string& default_text) override {
        input_boxes.push_back({title, prompt, default_text});
        return next(texts).value_or(std::nullopt);
    }
    std::optional<std::string> show_open_dialog(const FileRequest& request) override {
        open_requests.push_back(request);
        return next(open_paths).value_or(std::nullopt);
    }
    std::optional<std::string> show_save_dialog(const FileRequest& request) override {
        save_requests.push_back(request);
        return next(save_paths).value_or(std::nullopt);
    }

  private:
    template <class T>
    static std::optional<T> next(std::deque<T>& script) {
        if (script.empty()) return std::nullopt;
        T answer = std::move(script.front());
        script.pop_front();
        return answer;
    }
};

}  // namespace anomalis
