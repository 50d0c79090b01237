#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/prompts.h"

namespace anomalis {

/// Records everything that is shown and answers by script. An answer that the script lacks is a cancel or No.
class ScriptedPrompts : public Prompts {
  public:
    // What was shown, in order.
    std::vector<std::string> messages;
    std::vector<std::string> questions;
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
