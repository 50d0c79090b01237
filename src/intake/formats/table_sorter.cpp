#include "intake/formats/row_fields.h"
#include "intake/formats/table_reader.h"

namespace anomalis::intake {

namespace {

class TableSorter : public RowSorter {
  public:
    explicit TableSorter(bool line_headers) : line_headers_(line_headers) {}

    RowUse use_of(std::string_view line) const override {
        const auto first = line.find_first_not_of(" \t");
        if (first == std::string_view::npos || is_table_comment(line)) return RowUse::passed_over;
        const bool letter = (line[first] | 0x20) >= 'a' && (line[first] | 0x20) <= 'z';
        if (line_headers_ && letter && !line_header(line).name.empty()) return RowUse::line_header;
        return RowUse::row;
    }

  private:
    bool line_headers_;
};

}  // namespace

std::unique_ptr<RowSorter> table_sorter(const SurveyLayout& layout) {
    return std::make_unique<TableSorter>(layout.line_headers);
}

}  // namespace anomalis::intake
