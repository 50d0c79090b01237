#pragma once

#include <span>
#include <string>
#include <vector>

#include "intake/formats/survey_format.h"

namespace anomalis::intake {

enum class LossKind { missing_field, no_number, no_line, cut_at_end, record_type };

/// The rows that were not used, one entry a reason and column, however many words of how many kinds stand
/// where numbers should.
class RowLosses {
  public:
    /// `text`: what stands there instead.
    void add(LossKind kind, const std::string& column, std::string_view text, Encoding encoding,
             long file_line);
    std::span<const RowLoss> list() const { return list_; }

  private:
    std::vector<LossKind> kinds_;
    std::vector<RowLoss> list_;
};

}  // namespace anomalis::intake
