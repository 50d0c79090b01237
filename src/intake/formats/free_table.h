#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "intake/formats/survey_format.h"

namespace anomalis::intake {

/// The layout of a table that nothing describes but itself, with rows "Line 5690" between its rows or
/// without. Nothing where the lines are no table. `format`: its name in the layout.
std::optional<SurveyLayout> recognise_free_table(const SurveySample& sample, bool line_headers,
                                                 std::string_view format);

/// What formats of such tables have in common.
class FreeTableFormat : public SurveyFormat {
  public:
    std::unique_ptr<RowReader> open(const SurveyLayout& layout, std::span<const std::size_t> wanted,
                                    const FileStretch* stretch) const override;
    SurveyPreview preview(const SurveyLayout& layout, std::size_t most) const override;
};

}  // namespace anomalis::intake
