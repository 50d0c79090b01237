#include <algorithm>

#include "intake/formats/line_stream.h"
#include "intake/formats/row_fields.h"
#include "intake/formats/table_reader.h"

namespace anomalis::intake {

SurveyPreview preview_table(const SurveyLayout& layout, std::size_t most, const RowSorter& sorter) {
    SurveyPreview preview;
    LineStream lines(layout.path, layout.encoding);
    std::vector<std::string_view> fields;
    std::string_view line;
    while (preview.rows.size() < most && lines.next(line)) {
        if (lines.line_number() < layout.first_row || sorter.use_of(line) != RowUse::row) continue;
        split_row(line, layout, fields);
        std::vector<std::string>& row = preview.rows.emplace_back(layout.columns.size());
        for (std::size_t i = 0; i < std::min(row.size(), fields.size()); ++i)
            row[i] = text_of_bytes(fields[i], layout.encoding);
        preview.file_line.push_back(lines.line_number());
    }
    return preview;
}

}  // namespace anomalis::intake
