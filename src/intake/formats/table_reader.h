#pragma once

#include <memory>
#include <span>

#include "intake/formats/survey_format.h"

namespace anomalis::intake {

/// What a row is before its fields are looked at.
enum class RowUse {
    row,
    passed_over,  ///< a comment, a blank line, a record of another type
    line_header,  ///< "Line 5690"
    unknown       ///< a record type that nothing describes
};

/// The part of a format that sorts lines, for `open_table`. Lines before the layout's first row are not
/// shown.
class RowSorter {
  public:
    virtual ~RowSorter() = default;
    virtual RowUse use_of(std::string_view line) const = 0;
};

/// Reads rows of separated fields or of fields of fixed width, whatever the format around them.
std::unique_ptr<RowReader> open_table(const SurveyLayout& layout, std::span<const std::size_t> wanted,
                                      std::unique_ptr<RowSorter> sorter,
                                      const FileStretch* stretch = nullptr);

/// The first rows, cell by cell.
SurveyPreview preview_table(const SurveyLayout& layout, std::size_t most, const RowSorter& sorter);

/// Comments of free tables and, where the layout has them, line headers.
std::unique_ptr<RowSorter> table_sorter(const SurveyLayout& layout);

}  // namespace anomalis::intake
