#include "show/figure_table.h"

#include <algorithm>

namespace anomalis::show {

namespace {

constexpr double column_gap = 2.4 * sheet_mm;  // between the columns
constexpr double widest_gap = 10 * sheet_mm;
constexpr double swatch_side = 2.2 * sheet_mm;
constexpr double narrowest_name = 18 * sheet_mm;
constexpr double widest_name = 48 * sheet_mm;
constexpr double widest_type = 24 * sheet_mm;
constexpr std::size_t name_lines = 2, note_lines = 2;
const chart::Font heading_font = sheet_font(8.5, true);
const chart::Font head_font = sheet_font(7.5, true);

}  // namespace

void place_rule(FigureSheet& sheet, double left, double right, double at) {
    sheet.rules.push_back({left, right, at, at});
}

FigureTableLook::FigureTableLook(const FigureTable& table, double width, const TextSetter& setter)
    : table_(table),
      setter_(setter),
      width_(width),
      line_(setter.height(cell_font)),
      heading_line_(setter.height(heading_font)) {
    double name = setter.width("Body", head_font), type = setter.width("Type", head_font);
    for (const FigureBody& body : table.bodies) {
        number_ = std::max(number_, setter.width(body.number, cell_font));
        name = std::max(name, setter.width(body.name, cell_font));
        type = std::max(type, setter.width(body.type, cell_font));
    }
    choose_columns(std::min(name, widest_name), std::min(type, widest_type));
    break_rows();
    for (const std::string& note : table.notes)
        for (const std::string& line : setter.lines(note, cell_font, width, note_lines))
            notes_.push_back(line);
}

/// Names give way first; then the last columns are left out, and a note names them.
void FigureTableLook::choose_columns(double name, double type) {
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        const FigureColumn& column = table_.columns[i];
        double widest =
            std::max(setter_.width(column.caption, head_font), setter_.width(column.unit, cell_font));
        for (const FigureBody& body : table_.bodies) {
            widest = std::max(widest, setter_.width(body.cells.at(i).value, cell_font));
            widest = std::max(widest, setter_.width(body.cells.at(i).interval, cell_font));
        }
        widths_.push_back(widest);
    }
    type_ = type;
    const double fixed = swatch_side + column_gap / 2 + number_ + column_gap / 2 + type + column_gap;
    double columns = 0;
    for (const double width : widths_) columns += width + column_gap;
    std::string left_out;
    while (!widths_.empty() && fixed + columns + std::min(name, narrowest_name) > width_) {
        columns -= widths_.back() + column_gap;
        widths_.pop_back();
        const std::string& caption = table_.columns[widths_.size()].caption;
        left_out = left_out.empty() ? caption : caption + ", " + left_out;
    }
    if (!left_out.empty())
        notes_.push_back(setter_.shortened("No room here for: " + left_out, cell_font, width_));
    name_ = std::min(name, width_ - fixed - columns);
    const double free = width_ - fixed - columns - name_;
    const double more = free / (static_cast<double>(widths_.size()) + 1);
    gap_ = std::min(widest_gap, column_gap + std::max(0.0, more));
}

void FigureTableLook::break_rows() {
    for (const FigureBody& body : table_.bodies) {
        FigureRow row{&body, setter_.lines(body.name, cell_font, name_, name_lines),
                      setter_.lines(body.type, cell_font, type_, name_lines)};
        const bool interval =
            std::any_of(body.cells.begin(), body.cells.begin() + static_cast<std::ptrdiff_t>(widths_.size()),
                        [](const FigureCell& cell) { return !cell.interval.empty(); });
        const std::size_t lines =
            std::max({row.name.size(), row.type.size(), std::size_t{interval ? 2U : 1U}});
        row.height = static_cast<double>(lines) * line_ + (lines > 1 ? 2 * sheet_row_gap : sheet_row_gap);
        rows_.push_back(std::move(row));
    }
}

double FigureTableLook::whole_height() const {
    double height = heading_height() + head_height() + notes_height();
    for (const FigureRow& row : rows_) height += row.height;
    return height;
}

void FigureTableLook::place_head(FigureSheet& sheet, double left, double top,
                                 const std::string& heading) const {
    setter_.place(sheet, left, top, setter_.shortened(heading, heading_font, width_), heading_font);
    top -= heading_height();
    double at = left + swatch_side + column_gap / 2 + number_ + column_gap / 2;
    setter_.place(sheet, at, top, setter_.shortened("Body", head_font, name_), head_font);
    at += name_ + gap_;
    setter_.place(sheet, at, top, setter_.shortened("Type", head_font, type_), head_font);
    at += type_;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
        at += gap_ + widths_[i];
        setter_.place_right(sheet, at, top, table_.columns[i].caption, head_font);
        setter_.place_right(sheet, at, top - line_, table_.columns[i].unit, cell_font, quiet_grey);
    }
    place_rule(sheet, left, left + width_, top - 2 * line_ - sheet_row_gap / 2);
}

void FigureTableLook::place_row(FigureSheet& sheet, const FigureRow& row, double left, double top) const {
    const double drop = (line_ - swatch_side) / 2;
    sheet.swatches.push_back(
        {{left, left + swatch_side, top - drop - swatch_side, top - drop}, row.body->colour});
    double at = left + swatch_side + column_gap / 2 + number_;
    setter_.place_right(sheet, at, top, row.body->number, cell_font);
    at += column_gap / 2;
    for (std::size_t i = 0; i < row.name.size(); ++i)
        setter_.place(sheet, at, top - line_ * static_cast<double>(i), row.name[i], cell_font);
    at += name_ + gap_;
    for (std::size_t i = 0; i < row.type.size(); ++i)
        setter_.place(sheet, at, top - line_ * static_cast<double>(i), row.type[i], cell_font);
    at += type_;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
        at += gap_ + widths_[i];
        setter_.place_right(sheet, at, top, row.body->cells[i].value, cell_font);
        setter_.place_right(sheet, at, top - line_, row.body->cells[i].interval, cell_font, quiet_grey);
    }
}

void FigureTableLook::place_notes(FigureSheet& sheet, double left, double top) const {
    top -= sheet_row_gap;
    for (const std::string& note : notes_) {
        setter_.place(sheet, left, top, note, cell_font, quiet_grey);
        top -= line_;
    }
}

}  // namespace anomalis::show
