#pragma once

#include <optional>
#include <string>

#include "core/prompts.h"

namespace anomalis {

/// Nobody is at the keyboard: every dialog is cancelled, every question answered with No, or with the answer
/// that changes nothing. Where messages go is for those who derive from it to say.
class UnattendedPrompts : public Prompts {
  protected:
    bool show_question(const std::string&) override { return false; }
    std::optional<std::string> show_input_box(const std::string&, const std::string&,
                                              const std::string&) override {
        return {};
    }
    std::optional<std::string> show_open_dialog(const FileRequest&) override { return {}; }
    std::optional<std::string> show_save_dialog(const FileRequest&) override { return {}; }
};

}  // namespace anomalis
