#include "intake/formats/table_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

#include "core/decimal_scan.h"
#include "intake/formats/field_value.h"
#include "intake/formats/line_names.h"
#include "intake/formats/line_stream.h"
#include "intake/formats/row_fields.h"
#include "intake/formats/row_losses.h"

namespace anomalis::intake {

namespace {

constexpr double no_value = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t block_rows = 8192;
constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
const std::string only_line = "1";

bool is_coordinate(Role role) {
    return role == Role::easting || role == Role::northing || role == Role::longitude ||
           role == Role::latitude;
}

/// What is done with the fields of one column.
struct ColumnUse {
    const SurveyColumn* column = nullptr;
    std::size_t index = none;  ///< of the column
    std::size_t out = none;    ///< place among the wanted
    bool line = false;
    bool plain = false;      ///< a number and nothing else
    bool must_read = false;  ///< a word there makes the row useless
    double factor = 1;
    NullValues nulls{{}};
    double* values = nullptr;  ///< of the block

    double* target(std::size_t row) const { return values + row; }
};

class TableReader : public RowReader {
  public:
    TableReader(const SurveyLayout& layout, std::span<const std::size_t> wanted,
                std::unique_ptr<RowSorter> sorter, const FileStretch* stretch)
        : layout_(layout),
          sorter_(std::move(sorter)),
          wanted_(wanted.begin(), wanted.end()),
          lines_(layout.path, layout.encoding, stretch),
          names_(layout.encoding) {
        ends_field_[byte_of(layout_.separator)] = true;
        if (layout_.separator == ' ') ends_field_[byte_of('\t')] = true;
        plan();
    }

    bool next(RowBlock& block) override;
    std::span<const std::string> line_names() const override { return names_.list(); }
    bool is_tie(std::int32_t line) const override { return names_.is_tie(line); }
    std::span<const RowLoss> losses() const override { return losses_.list(); }
    double bytes_read() const override { return lines_.bytes_read(); }

  private:
    static std::size_t byte_of(char c) { return static_cast<unsigned char>(c); }

    void plan();
    /// Names may stand between the header of the first line and its rows.
    bool heads_line(std::string_view line) const {
        return layout_.line_headers && sorter_->use_of(line) == RowUse::line_header;
    }
    bool take(std::string_view line);
    bool take_separated(std::string_view line);
    bool take_fixed(std::string_view line);
    bool take_missing(std::size_t index);
    bool take_field(const ColumnUse& use, std::string_view field);
    bool take_number(const ColumnUse& use, double value);
    std::optional<double> value_of(const ColumnUse& use, std::string_view field) const;
    bool is_cut(std::string_view line);
    void note_place(RowBlock& block);
    bool lose(LossKind kind, const ColumnUse* use, std::string_view text = {});

    SurveyLayout layout_;
    std::unique_ptr<RowSorter> sorter_;
    std::vector<std::size_t> wanted_;
    LineStream lines_;
    LineNames names_;
    RowLosses losses_;
    std::vector<ColumnUse> uses_;      ///< in the order of the columns
    std::vector<std::size_t> use_of_;  ///< for each column up to the last used one, its place in `uses_`
    std::array<bool, 256> ends_field_{};
    bool line_column_ = false;
    std::int32_t header_line_ = -1;
    std::optional<FileStretch> header_;  ///< of the line, until a row of it was taken
    std::size_t length_before_ = 0;      ///< bytes of the line before
    std::vector<std::string_view> fields_;

    std::size_t row_ = 0;
    std::int32_t row_line_ = 0;
    double line_value_ = no_value;  ///< of the field that named the last line
    std::vector<double> unwanted_ = std::vector<double>(block_rows);
};

void TableReader::plan() {
    const auto line_column = layout_.column_of(Role::line);
    line_column_ = line_column.has_value();
    for (std::size_t i = 0; i < layout_.columns.size(); ++i) {
        const auto found = std::find(wanted_.begin(), wanted_.end(), i);
        const SurveyColumn& column = layout_.columns[i];
        // Whether a row is of use must not depend on who reads it: every role is looked at.
        if (found == wanted_.end() && column.role == Role::none) continue;
        ColumnUse use{&column, i};
        if (found != wanted_.end()) use.out = static_cast<std::size_t>(found - wanted_.begin());
        use.line = line_column == i;
        use.plain =
            !column.text && !use.line && column.role != Role::date && column.unit != Unit::degree_minute;
        use.must_read = !column.text && column.role != Role::none && column.role != Role::date &&
                        column.role != Role::fiducial && !use.line;
        use.factor = unit_factor(column.unit);
        use.nulls = NullValues(column.nulls);
        use_of_.resize(i + 1, none);
        use_of_[i] = uses_.size();
        uses_.push_back(use);
    }
}

bool TableReader::lose(LossKind kind, const ColumnUse* use, std::string_view text) {
    losses_.add(kind, use == nullptr ? "" : use->column->name, text, layout_.encoding, lines_.line_number());
    return false;
}

std::optional<double> TableReader::value_of(const ColumnUse& use, std::string_view field) const {
    const SurveyColumn& column = *use.column;
    double value = 0;
    if (column.role == Role::date) return read_date(field).value_or(no_value);
    if (column.unit == Unit::degree_minute) {
        if (read_number(field, layout_.decimal_comma, value) && use.nulls.hold(value)) return no_value;
        if (read_degree_minutes(field, layout_.decimal_comma, value)) return value;
    } else if (read_number(field, layout_.decimal_comma, value)) {
        return use.nulls.hold(value) ? no_value : value * use.factor;
    } else if (column.unit == Unit::degree && read_degrees(field, layout_.decimal_comma, value)) {
        return value;
    }
    return {};
}

/// Keeps a number that stands in the unit of the file.
inline bool TableReader::take_number(const ColumnUse& use, double value) {
    *use.target(row_) = use.nulls.hold(value) ? no_value : value * use.factor;
    return true;
}

/// A field that is no plain number, as far as a quick look can tell.
bool TableReader::take_field(const ColumnUse& use, std::string_view field) {
    if (use.line && names_.is_last(field)) {
        row_line_ = names_.last();
        *use.target(row_) = line_value_;
        return true;
    }
    const bool null = is_null_text(field);
    if (use.line) {
        double number = 0;
        if (null || (read_number(field, layout_.decimal_comma, number) && use.nulls.hold(number)))
            return lose(LossKind::no_line, &use);
        row_line_ = names_.index_of(field);
    }
    double& value = *use.target(row_);
    value = no_value;
    if (null) return true;
    if (const auto found = value_of(use, field)) {
        value = *found;
        if (use.line) line_value_ = value;
    } else if (use.line) {
        line_value_ = no_value;
    } else if (use.must_read) {
        return lose(LossKind::no_number, &use, field);
    }
    return true;
}

bool TableReader::take_separated(std::string_view line) {
    const bool blanks = layout_.separator == ' ';
    const char* at = line.data();
    const char* const end = at + line.size();
    bool more = true;
    for (std::size_t index = 0; index < use_of_.size(); ++index) {
        const std::size_t place = use_of_[index];
        while (at != end && (*at == ' ' || (blanks && *at == '\t'))) ++at;
        if (!more || (blanks && at == end)) {
            return take_missing(index);
        }
        const char* const begin = at;
        if (place != none && uses_[place].plain) {
            double value = 0;
            const char* const stop = scan_decimal(at, end, value);
            if (stop != nullptr && (stop == end || ends_field_[byte_of(*stop)])) {
                take_number(uses_[place], value);
                more = stop != end;
                at = more ? stop + 1 : stop;
                continue;
            }
        }
        if (at != end && *at == '"') at += quoted_length({at, static_cast<std::size_t>(end - at)});
        while (at != end && !ends_field_[byte_of(*at)]) ++at;
        const std::string_view field = without_quotes({begin, static_cast<std::size_t>(at - begin)});
        if (place != none && !take_field(uses_[place], field)) return false;
        more = at != end;
        if (more) ++at;
    }
    return true;
}

/// The row ends before the column `index`. Only what has a role is missed.
bool TableReader::take_missing(std::size_t index) {
    for (const ColumnUse& use : uses_) {
        if (use.index < index) continue;
        if (use.column->role != Role::none) return lose(LossKind::missing_field, &use);
        *use.target(row_) = no_value;
    }
    return true;
}

bool TableReader::take_fixed(std::string_view line) {
    for (const ColumnUse& use : uses_) {
        const std::string_view field = fixed_field(line, *use.column);
        if (field.empty() && is_coordinate(use.column->role) && use.column->offset >= line.size())
            return lose(LossKind::missing_field, &use);
        double value = 0;
        if (use.plain &&
            scan_decimal(field.data(), field.data() + field.size(), value) == field.data() + field.size() &&
            !field.empty()) {
            take_number(use, value);
        } else if (!take_field(use, field)) {
            return false;
        }
    }
    return true;
}

/// The last line of a file that ends without a line end may be half a row.
bool TableReader::is_cut(std::string_view line) {
    if (lines_.line_ended()) return false;
    if (layout_.fixed_width) {
        // One that ends behind a field may have had blanks there, unless its place is missing.
        const bool behind_field =
            std::any_of(layout_.columns.begin(), layout_.columns.end(),
                        [&](const auto& column) { return column.offset + column.width == line.size(); });
        const bool placed = std::none_of(
            layout_.columns.begin(), layout_.columns.end(),
            [&](const auto& column) { return is_coordinate(column.role) && column.offset >= line.size(); });
        return line.size() < length_before_ && !(behind_field && placed);
    }
    split_row(line, layout_, fields_);
    return fields_.size() < layout_.columns.size();
}

bool TableReader::take(std::string_view line) {
    switch (sorter_->use_of(line)) {
        case RowUse::passed_over:
            return false;
        case RowUse::line_header: {
            const LineHeader header = line_header(line);
            header_line_ = names_.index_of_header(header.name, header.tie);
            header_ = lines_.place();
            return false;
        }
        case RowUse::unknown:
            return lose(LossKind::record_type, nullptr, first_word(line));
        case RowUse::row:
            break;
    }
    if (is_cut(line)) return lose(LossKind::cut_at_end, nullptr);
    if (layout_.line_headers && !line_column_) {
        if (header_line_ < 0) return lose(LossKind::no_line, nullptr);
        row_line_ = header_line_;
    } else if (!line_column_) {
        row_line_ = names_.index_of(only_line);
    }
    if (!(layout_.fixed_width ? take_fixed(line) : take_separated(line))) return false;
    return true;
}

void TableReader::note_place(RowBlock& block) {
    const std::optional<FileStretch> place = lines_.place();
    if (!place) return;
    if (row_ == 0) block.place.resize(block_rows);
    block.place[row_] = *place;
    if (!header_) return;
    block.place[row_].begin = header_->begin;
    block.place[row_].first_line = header_->first_line;
    header_.reset();
}

bool TableReader::next(RowBlock& block) {
    block.values.resize(wanted_.size());
    for (auto& column : block.values) column.resize(block_rows);
    for (ColumnUse& use : uses_)
        use.values = use.out == none ? unwanted_.data() : block.values[use.out].data();
    block.line.resize(block_rows);
    block.file_line.resize(block_rows);
    row_ = 0;
    std::string_view line;
    while (row_ < block_rows && lines_.next(line)) {
        if (lines_.line_number() < layout_.first_row && !heads_line(line)) {
            length_before_ = line.size();
            continue;
        }
        const bool taken = take(line);
        length_before_ = line.size();
        if (!taken) continue;
        block.line[row_] = row_line_;
        block.file_line[row_] = lines_.line_number();
        note_place(block);
        ++row_;
    }
    block.rows = row_;
    for (auto& column : block.values) column.resize(row_);
    block.line.resize(row_);
    block.file_line.resize(row_);
    if (!block.place.empty()) block.place.resize(row_);
    // A column that is wanted twice was read once.
    for (std::size_t i = 0; i < wanted_.size(); ++i) {
        const auto first = std::find(wanted_.begin(), wanted_.end(), wanted_[i]) - wanted_.begin();
        if (static_cast<std::size_t>(first) != i)
            block.values[i] = block.values[static_cast<std::size_t>(first)];
    }
    return row_ > 0;
}

}  // namespace

std::unique_ptr<RowReader> open_table(const SurveyLayout& layout, std::span<const std::size_t> wanted,
                                      std::unique_ptr<RowSorter> sorter, const FileStretch* stretch) {
    return std::make_unique<TableReader>(layout, wanted, std::move(sorter), stretch);
}

}  // namespace anomalis::intake
