#pragma once

#include <string>

#include "core/prompts.h"

namespace anomalis {

/// Counts what is shown and answers nothing.
class QuietPrompts : public Prompts {
  public:
    long count() const { return count_; }

  protected:
    void show_message(const std::string&) override { ++count_; }
    bool show_question(const std::string&) override { return false; }
    std::optional<std::string> show_input_box(const std::string&, const std::string&,
                                              const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> show_open_dialog(const FileRequest&) override { return std::nullopt; }
    std::optional<std::string> show_save_dialog(const FileRequest&) override { return std::nullopt; }

  private:
    long count_ = 0;
};

}  // namespace anomalis
