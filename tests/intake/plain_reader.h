#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "core/gaps.h"
#include "core/numbers.h"
#include "core/text.h"
#include "core/workspace.h"
#include "transform/transform.h"

namespace anomalis::intake {

/// What a data file says, found as plainly as can be: the whole text in memory, one character after the
/// other, one line after the other. X, Y, Z, DTM, Mag, Grav a row.
struct PlainReading {
    std::vector<std::array<double, 6>> rows;
    std::array<std::pair<double, double>, 6> ranges{};
    long dropped = 0, first_dropped_line = 0, short_rows = 0, first_short_line = 0, cut_line = 0,
         last_line = 0;
    long missing_sensor_heights = 0, missing_ground_heights = 0;
    long overflow_line = 0;  ///< at which the reading ends; 0 for none
    long misfit_line = 0;    ///< of the first reading far below what a single holds; 0 for none
    bool to_the_end = false;
};

class PlainReader {
  public:
    PlainReader(std::string_view text, const DataDefinition& definition, const PointTransform& transform)
        : text_(text), definition_(definition), transform_(transform) {
        const std::string_view head = text.substr(0, 512);
        tolerant_ = text.starts_with('\xEF') || head.find('\r') == std::string_view::npos;
    }

    PlainReading read() {
        values_.fill(-1e32);
        PlainReading found;
        long step = 0, lines = 0;
        for (long skipped = 1; skipped < definition_.first_data_line && !at_end(); ++skipped) next_line();
        for (;;) {
            if (at_end()) {
                found.to_the_end = true;
                return found;
            }
            std::string_view line = next_line();
            ++lines;
            line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
            line = trim_blanks(line);
            if (line.starts_with('!') || line.starts_with('\\')) continue;
            ++step;
            if (line.empty() || step < definition_.read_increment) continue;
            step = 0;
            if (!take_record(line, found)) continue;
            if (found.overflow_line > 0) return found;
            if (definition_.last_data_line != 0 && lines >= definition_.last_data_line) return found;
        }
    }

  private:
    bool at_end() const { return at_ == text_.size(); }

    /// Takes the line end at the place, if there is one.
    bool take_line_end() {
        if (at_end()) return false;
        if (text_[at_] == '\r') {
            ++at_;
            if (!at_end() && text_[at_] == '\n') ++at_;
            return true;
        }
        if (!tolerant_ || text_[at_] != '\n') return false;
        ++at_;
        return true;
    }

    std::string_view next_line() {
        ++line_number_;
        line_.clear();
        for (line_ended_ = false; !at_end();) {
            if (take_line_end()) {
                line_ended_ = true;
                break;
            }
            if (tolerant_ && line_.size() == 11264) break;
            const char c = text_[at_++];
            if (!tolerant_) {
                line_ += c;
            } else if (c == '\t') {
                line_ += ' ';
            } else if (c >= ' ' && c <= '~') {
                line_ += c;
            }
        }
        return line_;
    }

    std::array<std::int32_t, 6> columns() const {
        const DataDefinition& d = definition_;
        std::array columns{d.x_column, d.y_column, d.z_column, d.dtm_column, d.mag_column, d.grav_column};
        if (columns[1] == columns[0]) columns[1] = 0;
        if (columns[2] == columns[0] || columns[2] == columns[1]) columns[2] = 0;
        return columns;
    }

    /// True: the record is one, or ends the reading.
    bool take_record(std::string_view line, PlainReading& found) {
        const auto wanted = columns();
        const std::int32_t highest = std::ranges::max(wanted);
        const auto last = line.find_last_not_of(" \t");
        const bool separator_ends =
            last != std::string_view::npos && (line[last] == ',' || line[last] == ';');
        bool is_short = false;
        for (std::int32_t column = 1; column <= highest; ++column) {
            const bool is_wanted = std::ranges::find(wanted, column) != wanted.end();
            if (line.empty()) {
                // Behind a separator at the end of the row stands one more field, which is empty.
                if (is_wanted && separator_ends) return drop(found);
                is_short = true;
                break;
            }
            double number = 0;
            const bool numeric = parse_number(next_token(line), number);
            if (is_wanted && !numeric) return drop(found);
            for (std::size_t q = 0; q < wanted.size(); ++q) {
                if (wanted[q] != column) continue;
                values_[q] = number;
                read_[q] = true;
            }
        }
        if (is_short && !line_ended_ && at_end()) {
            found.cut_line = line_number_;
            return false;
        }
        if (is_short && ++found.short_rows == 1) found.first_short_line = line_number_;
        accept(found);
        return true;
    }

    bool drop(PlainReading& found) const {
        if (++found.dropped == 1) found.first_dropped_line = line_number_;
        return false;
    }

    void accept(PlainReading& found) {
        found.last_line = line_number_;
        if (read_[2] && !is_reading(values_[2])) ++found.missing_sensor_heights;
        if (read_[3] && !is_reading(values_[3])) ++found.missing_ground_heights;
        if (transform_.active) {
            transform::apply_transform(transform_, 1, values_[0], values_[1], values_[2]);
            for (std::size_t q = 0; q < 3; ++q)
                if (!std::isfinite(values_[q])) found.overflow_line = line_number_;
        }
        const bool first = found.rows.empty();
        std::array<double, 6> row = values_;
        for (std::size_t q = 0; q < 6 && found.overflow_line == 0; ++q) extend(q, first, row[q], found);
        found.rows.push_back(row);
    }

    /// `value` becomes what is kept of it.
    void extend(std::size_t q, bool first, double& value, PlainReading& found) {
        auto& [low, high] = found.ranges[q];
        const auto single = static_cast<float>(value);
        const bool missing = q >= 2 && read_[q] && !is_reading(value);
        const double ranged = q < 2 ? value : static_cast<double>(single);
        if (q >= 2 && !missing && std::isinf(single)) {
            found.overflow_line = line_number_;
            return;
        }
        if (missing) {
            if (first)
                std::tie(low, high) = std::pair(static_cast<double>(1e32F), static_cast<double>(-1e32F));
        } else {
            low = first ? ranged : std::min(low, ranged);
            high = first ? ranged : std::max(high, ranged);
        }
        if (q < 4) return;
        if (missing && std::isinf(single) && found.misfit_line == 0) found.misfit_line = line_number_;
        value = static_cast<double>(is_reading(value) ? single : -1e32F);
    }

    std::string_view text_;
    DataDefinition definition_;
    PointTransform transform_;
    bool tolerant_ = false;
    std::size_t at_ = 0;
    std::string line_;
    bool line_ended_ = false;
    long line_number_ = 0;
    std::array<double, 6> values_{};
    std::array<bool, 6> read_{};
};

}  // namespace anomalis::intake
