#pragma once

#include <string>
#include <vector>

namespace anomalis::chart {

/// What went wrong during a redraw, each text once, to be told when the redraw is over.
class FailureNotes {
  public:
    bool empty() const { return texts_.empty(); }
    void add(const std::string& text);
    /// Hands the notes over and forgets them.
    std::vector<std::string> take();

  private:
    std::vector<std::string> texts_;
};

}  // namespace anomalis::chart
