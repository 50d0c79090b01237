#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "core/prompts.h"

namespace anomalis::batch {

/// Nobody is at the keyboard: messages go to a stream and are kept, every dialog is cancelled, every question
/// is answered with No, or with the answer that changes nothing.
class BatchPrompts : public Prompts {
  public:
    explicit BatchPrompts(std::ostream& err) : err_(err) {}

    /// All texts shown, in order.
    const std::vector<std::string>& messages() const { return messages_; }

    /// Called whenever long work lets go for a moment.
    std::function<void()> on_yield;
    void yield() override;

  protected:
    void show_message(const std::string& text) override;
    bool show_question(const std::string&) override { return false; }
    std::optional<std::string> show_input_box(const std::string&, const std::string&,
                                              const std::string&) override {
        return {};
    }
    std::optional<std::string> show_open_dialog(const FileRequest&) override { return {}; }
    std::optional<std::string> show_save_dialog(const FileRequest&) override { return {}; }

  private:
    std::ostream& err_;
    std::vector<std::string> messages_;
};

}  // namespace anomalis::batch
