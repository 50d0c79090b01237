#pragma once

#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include "core/workspace.h"

namespace anomalis::intake {

/// A data file as people have them and as nobody should, with a definition that may or may not fit it: all
/// kinds of line ends, separators, quotes, comments, blank and short rows, empty fields, marks for no value,
/// numbers of all sizes, bytes of other encodings. The same on every machine for one seed.
class RandomDataFile {
  public:
    explicit RandomDataFile(unsigned seed, int most_rows = 60) : random_(seed) {
        choose_manner(most_rows);
        if (one_in(8)) text_ += "\xEF\xBB\xBF";
        if (one_in(6)) add_line("! " + std::string(below(700), 'c'));
        for (int i = 0; i < head_lines_; ++i) add_line(one_in(4) ? "" : "fid east north um/s2");
        for (int i = 0; i < rows_; ++i) add_row(i);
        if (one_in(3)) cut_last_line_end();
    }

    const std::string& text() const { return text_; }

    /// The columns, lines and spacings that the file is read with.
    void define(Workspace& w) {
        DataDefinition& d = w.definition;
        d.first_data_line = one_in(5) ? 1 + static_cast<std::int32_t>(below(6)) : head_lines_ + 1;
        d.read_increment = one_in(4) ? 2 + static_cast<std::int32_t>(below(3)) : 1;
        if (one_in(4)) d.last_data_line = static_cast<std::int32_t>(below(80));
        d.x_column = 2;
        d.y_column = one_in(30) ? 2 : 3;
        d.z_column = column_or_none(4);
        d.dtm_column = column_or_none(5);
        d.mag_column = one_in(6) ? 0 : one_in(20) ? 9 : 6;
        d.grav_column = d.mag_column == 0 ? 7 : column_or_none(7);
        if (one_in(4)) choose_transform(w.transform);
        if (one_in(4)) w.min_station_spacing = static_cast<float>(below(300)) / 10;
        if (one_in(4)) w.station_spacing = 1 + static_cast<float>(below(300)) / 10;
        if (one_in(3)) w.gap_distance = 30;
    }

  private:
    unsigned below(unsigned count) { return static_cast<unsigned>(random_() % count); }
    bool one_in(unsigned count) { return below(count) == 0; }
    template <std::size_t Count>
    std::string_view one_of(const std::string_view (&texts)[Count]) {
        return texts[below(Count)];
    }
    std::int32_t column_or_none(std::int32_t column) {
        return one_in(3) ? 0 : one_in(12) ? 2 + static_cast<std::int32_t>(below(8)) : column;
    }

    void choose_manner(int most_rows) {
        static constexpr std::string_view ends[] = {"\n", "\n", "\r\n", "\r\n", "\r", "mixed"};
        static constexpr std::string_view parts[] = {" ", "  ", "\t", ",", ";", "'", ", ", "mixed"};
        line_end_ = one_of(ends);
        separator_ = one_of(parts);
        head_lines_ = static_cast<int>(below(4));
        rows_ = one_in(12) ? static_cast<int>(below(4))
                           : static_cast<int>(below(static_cast<unsigned>(most_rows)));
        odd_rows_ = one_in(3) ? 0 : 3 + below(40);
        odd_fields_ = one_in(3) ? 0 : 20 + below(300);
        extremes_ = one_in(4);
        step_ = one_in(6) ? -10 : 10;
    }

    void choose_transform(PointTransform& t) {
        t.active = true;
        t.rotation = one_in(2) ? 0 : 30;
        t.x_scale = t.y_scale = 1.5;
        t.x_offset = 1000;
        t.y_origin = 20;
        t.elevation_shift = one_in(2) ? 0 : 3;
        t.elevation_scale = 1.25;
    }

    void add_line(std::string_view line) {
        static constexpr std::string_view ends[] = {"\n", "\r\n", "\r"};
        text_ += line;
        text_ += line_end_ == "mixed" ? one_of(ends) : line_end_;
    }
    void cut_last_line_end() {
        while (!text_.empty() && (text_.back() == '\n' || text_.back() == '\r')) text_.pop_back();
        if (one_in(3) && text_.size() > 4) text_.resize(text_.size() - 4);
    }

    std::string_view separator() {
        static constexpr std::string_view parts[] = {" ", "\t", ",", ";", "'", " , ", " \t"};
        return separator_ == "mixed" ? one_of(parts) : separator_;
    }

    std::string decimal(double middle, double spread) {
        std::string text = std::to_string(middle + spread * (static_cast<double>(below(20001)) / 10000 - 1));
        text.resize(text.find('.') + 1 + below(6));
        return text;
    }

    std::string odd_field() {
        static constexpr std::string_view plain[] = {
            "*",     "",     "-",       "-99999.99", "nan",   "inf",     "abc",    "1e5",
            "+7.5",  ".5",   "5.",      "-0",        "1.2.3", "0x10",    "1e-400", "1e999",
            "1d5",   "\"\"", "\" 12\"", "\"a,b\"",   "\"",    "1 2",     "\xB0",   "12345678901234567890",
            "-1e32", "--5",  "1e+3",    "\"5\t\"",   "7e",    "\xC3\xA9"};
        static constexpr std::string_view extreme[] = {"1e39",  "-1e39", "1e31", "-1e31",
                                                       "1e300", "2e32",  "-3e38"};
        return std::string(extremes_ && one_in(3) ? one_of(extreme) : one_of(plain));
    }

    std::string field(int row, int column) {
        if (odd_fields_ > 0 && one_in(odd_fields_)) return odd_field();
        const double along = step_ * row;
        std::string text = column == 1   ? std::to_string(1000 + row)
                           : column == 2 ? decimal(500000 + along, 2)
                           : column == 3 ? decimal(6800000 + along / 4, 2)
                           : column < 6  ? decimal(300, 5)
                           : column == 6 ? decimal(56000, 200)
                                         : decimal(0, 3);
        return one_in(25) ? '"' + text + '"' : text;
    }

    std::string odd_row() {
        static constexpr std::string_view rows[] = {"",
                                                    "   ",
                                                    "\t \t",
                                                    "! comment, with 1 2 3",
                                                    "\\ 1 2 3 4 5 6 7",
                                                    " \t! indented",
                                                    "Line 100",
                                                    "1 500000 6800000",
                                                    "1,500000,6800000,",
                                                    "1 500000",
                                                    "1,2,,4,5,6,7",
                                                    "7",
                                                    "* * * * * * *",
                                                    ",,,,,,",
                                                    "1 500000 6800000 300 200 \x01 \x7F 5 1"};
        if (one_in(40)) return std::string(20000, '7');
        if (one_in(40)) return std::string(11264, ' ');
        if (one_in(20)) return std::string(3, '\0') + "1 2 3";
        return std::string(one_of(rows));
    }

    void add_row(int row) {
        if (odd_rows_ > 0 && one_in(odd_rows_)) add_line(odd_row());
        std::string line;
        const int columns = one_in(60) ? 2 + static_cast<int>(below(6)) : 8;
        for (int column = 1; column <= columns; ++column) {
            line += field(row, column);
            if (column < columns) line += separator();
        }
        add_line(line);
    }

    std::mt19937 random_;
    std::string text_;
    std::string_view line_end_, separator_;
    int head_lines_ = 0, rows_ = 0;
    unsigned odd_rows_ = 0, odd_fields_ = 0;  ///< one in so many, 0 for none
    bool extremes_ = false;
    double step_ = 10;
};

}  // namespace anomalis::intake
