#pragma once

#include "show/text_setter.h"

// The table of bodies on a sheet. Private to this room.
namespace anomalis::show {

inline const chart::Font cell_font = sheet_font(7.5);

/// A row of the table with its name and type broken into lines.
struct FigureRow {
    const FigureBody* body = nullptr;
    std::vector<std::string> name, type;
    double height = 0;
};

/// The table with places for its columns: as many as fit, and every row as high as its lines.
class FigureTableLook {
  public:
    FigureTableLook(const FigureTable& table, double width, const TextSetter& setter);

    double head_height() const { return 2 * line_ + 2 * sheet_row_gap; }
    double heading_height() const { return heading_line_ + sheet_row_gap; }
    double notes_height() const { return line_ * static_cast<double>(notes_.size()) + sheet_row_gap; }
    double whole_height() const;
    /// One row, and the line that tells of the others.
    double least_height() const {
        return heading_height() + head_height() + rows_.front().height + line_ + sheet_row_gap;
    }
    const std::vector<FigureRow>& rows() const { return rows_; }
    double line() const { return line_; }

    void place_head(FigureSheet& sheet, double left, double top, const std::string& heading) const;
    void place_row(FigureSheet& sheet, const FigureRow& row, double left, double top) const;
    void place_notes(FigureSheet& sheet, double left, double top) const;

  private:
    void choose_columns(double name, double type);
    void break_rows();

    const FigureTable& table_;
    const TextSetter& setter_;
    double width_, line_, heading_line_;
    double gap_ = 0;                           // between columns
    double number_ = 0, name_ = 0, type_ = 0;  // widths
    std::vector<double> widths_;               // of the columns that are shown
    std::vector<FigureRow> rows_;
    std::vector<std::string> notes_;
};

/// A thin line across a sheet.
void place_rule(FigureSheet& sheet, double left, double right, double at);

}  // namespace anomalis::show
