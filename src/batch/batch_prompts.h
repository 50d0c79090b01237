#pragma once

#include <iosfwd>
#include <string>

#include "core/recording_prompts.h"

namespace anomalis::batch {

/// What is told goes to a stream too.
class BatchPrompts : public RecordingPrompts {
  public:
    explicit BatchPrompts(std::ostream& err) : err_(err) {}

  protected:
    void show_text(const std::string& text, Severity severity) override;

  private:
    std::ostream& err_;
};

}  // namespace anomalis::batch
