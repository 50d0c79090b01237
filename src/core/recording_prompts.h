#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/unattended_prompts.h"

namespace anomalis {

/// Nobody is at the keyboard: what is told is kept, each kind by itself.
class RecordingPrompts : public UnattendedPrompts {
  public:
    /// What went wrong, in order, in the words that a window shows.
    const std::vector<std::string>& messages() const { return messages_; }
    /// The same, and what was read as the format says but can hardly be meant.
    const std::vector<std::string>& failures() const { return failures_; }
    /// What there is to know although nothing went wrong.
    const std::vector<std::string>& remarks() const { return remarks_; }

    /// Called whenever long work lets go for a moment.
    std::function<void()> on_yield;
    void yield() override;

  protected:
    void show_message(const std::string& text) override { show_text(text, Severity::failure); }
    void show_text(const std::string& text, Severity severity) override;

  private:
    std::vector<std::string> messages_, failures_, remarks_;
};

}  // namespace anomalis
