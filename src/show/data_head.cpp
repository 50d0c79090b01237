#include "show/data_head.h"

#include <algorithm>
#include <string_view>

#include "core/numbers.h"
#include "core/text.h"
#include "core/workspace.h"
#include "intake/definition.h"

namespace anomalis::show {

namespace {

constexpr std::size_t longest_shown = 2000;  // characters a line
constexpr std::size_t most_columns = 200;
constexpr std::size_t tab_stop = 8;
constexpr std::size_t column_gap = 2;

/// A field of a line as it stands in the file: with its quotes and its separator.
struct Field {
    std::size_t begin = 0;
    std::size_t end = 0;  ///< without the separator
    std::string_view token;
};

std::vector<Field> fields_of(std::string_view line) {
    std::vector<Field> fields;
    std::string_view rest = line;
    while (!trim_blanks(rest).empty() && fields.size() < most_columns) {
        const std::string_view token = next_token(rest);
        if (token.data() == nullptr) break;
        auto begin = static_cast<std::size_t>(token.data() - line.data());
        auto end = begin + token.size();
        if (begin > 0 && line[begin - 1] == '"') --begin;
        if (end < line.size() && line[end] == '"') ++end;
        fields.push_back({begin, end, token});
    }
    return fields;
}

/// Bytes as characters: UTF-8 of up to three bytes where it is valid, Latin-1 otherwise, no controls.
/// `places[i]` is where byte i went.
std::u16string shown_text(std::string_view bytes, std::vector<std::size_t>& places) {
    const auto byte = [&](std::size_t i) {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    };
    const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
    std::u16string text;
    places.assign(bytes.size() + 1, 0);
    for (std::size_t i = 0; i < bytes.size();) {
        const unsigned c = byte(i);
        std::size_t used = 1;
        const std::size_t place = text.size();
        if (c == '\t') {
            text.append(tab_stop - text.size() % tab_stop, u' ');
        } else if (c >= 0xC2 && c < 0xE0 && follows(i + 1)) {
            text += static_cast<char16_t>((c & 0x1FU) << 6 | (byte(i + 1) & 0x3FU));
            used = 2;
        } else if (c >= 0xE0 && c < 0xF0 && follows(i + 1) && follows(i + 2)) {
            const unsigned code = (c & 0x0FU) << 12 | (byte(i + 1) & 0x3FU) << 6 | (byte(i + 2) & 0x3FU);
            if (code != 0xFEFF)
                text += static_cast<char16_t>(code >= 0xD800 && code < 0xE000 ? 0xFFFD : code);
            used = 3;
        } else if (c >= 0x20 && c != 0x7F) {
            text += static_cast<char16_t>(c);
        }
        for (std::size_t k = 0; k < used; ++k) places[i + k] = place;
        i += used;
    }
    places[bytes.size()] = text.size();
    return text;
}

/// One line on its way to be shown.
struct Draft {
    std::string_view bytes;
    HeadLineKind kind = HeadLineKind::skipped;
    std::vector<Field> fields;
    std::u16string text;
    std::vector<std::size_t> places;

    bool is_data() const { return kind == HeadLineKind::record || kind == HeadLineKind::dropped; }
};

bool is_comment(std::string_view line) {
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
    return !line.empty() && (line.front() == '!' || line.front() == '\\');
}

std::vector<HeadQuantity> quantities_of(const DataDefinition& d, int column) {
    std::vector<HeadQuantity> found;
    if (column == d.x_column)
        found.push_back(HeadQuantity::x);
    else if (column == d.y_column)
        found.push_back(HeadQuantity::y);
    else if (column == d.z_column)
        found.push_back(HeadQuantity::sensor);
    if (column == d.dtm_column) found.push_back(HeadQuantity::dtm);
    if (column == d.mag_column) found.push_back(HeadQuantity::mag);
    if (column == d.grav_column) found.push_back(HeadQuantity::grav);
    return found;
}

bool all_numbers(const DataDefinition& definition, const std::vector<Field>& fields) {
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (!quantities_of(definition, static_cast<int>(i) + 1).empty() && !is_numeric(fields[i].token))
            return false;
    return true;
}

/// Follows the lines as the reader does: groups of `read_increment` lines that are no comments, of which the
/// last one that is not blank is the record.
class LineSorter {
  public:
    explicit LineSorter(const DataDefinition& definition) : definition_(definition) {}

    HeadLineKind sort(int number, const Draft& line) {
        if (is_comment(line.bytes)) {
            if (number >= definition_.first_data_line) ++lines_read_;
            return HeadLineKind::comment;
        }
        if (number < definition_.first_data_line) return HeadLineKind::skipped;
        if (ended_) return HeadLineKind::beyond;
        ++lines_read_;
        ++step_;
        if (line.fields.empty() || step_ < definition_.read_increment) return HeadLineKind::stepped_over;
        step_ = 0;
        if (!all_numbers(definition_, line.fields)) return HeadLineKind::dropped;
        ended_ = definition_.last_data_line != 0 && lines_read_ >= definition_.last_data_line;
        return HeadLineKind::record;
    }

  private:
    const DataDefinition& definition_;
    int lines_read_ = 0;
    int step_ = 0;
    bool ended_ = false;
};

/// Where each column stands when lines are shown as they are; empty when columns overlap.
std::vector<HeadColumn> columns_as_they_are(const std::vector<Draft>& drafts) {
    std::vector<HeadColumn> columns;
    for (const Draft& line : drafts) {
        if (!line.is_data()) continue;
        for (std::size_t i = 0; i < line.fields.size(); ++i) {
            const int begin = static_cast<int>(line.places[line.fields[i].begin]);
            const int end = static_cast<int>(line.places[line.fields[i].end]);
            if (i == columns.size()) columns.push_back({begin, end, {}});
            columns[i].begin = std::min(columns[i].begin, begin);
            columns[i].end = std::max(columns[i].end, end);
        }
    }
    for (std::size_t i = 1; i < columns.size(); ++i)
        if (columns[i - 1].end >= columns[i].begin) return {};
    return columns;
}

std::u16string_view field_with_separator(const Draft& line, std::size_t i) {
    const std::size_t begin = line.places[line.fields[i].begin];
    const std::size_t end =
        i + 1 < line.fields.size() ? line.places[line.fields[i + 1].begin] : line.text.size();
    std::u16string_view text = std::u16string_view(line.text).substr(begin, end - begin);
    while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
    return text;
}

/// Spreads the fields so that each column has the width of its longest one.
std::vector<HeadColumn> spread_columns(std::vector<Draft>& drafts, std::vector<HeadLine>& lines) {
    std::size_t count = 0;
    for (const Draft& line : drafts)
        if (line.is_data()) count = std::max(count, line.fields.size());
    const auto stands_in_columns = [&](const Draft& line) {
        return line.is_data() || (line.kind != HeadLineKind::comment && line.fields.size() == count);
    };
    std::vector<std::size_t> widths(count, 1);
    for (const Draft& line : drafts)
        if (stands_in_columns(line))
            for (std::size_t i = 0; i < line.fields.size(); ++i)
                widths[i] = std::max(widths[i], field_with_separator(line, i).size());

    std::vector<HeadColumn> columns;
    int begin = 0;
    for (const std::size_t width : widths) {
        columns.push_back({begin, begin + static_cast<int>(width), {}});
        begin += static_cast<int>(width + column_gap);
    }
    for (std::size_t n = 0; n < drafts.size(); ++n) {
        if (!stands_in_columns(drafts[n])) continue;
        std::u16string text;
        for (std::size_t i = 0; i < drafts[n].fields.size(); ++i) {
            text.resize(static_cast<std::size_t>(columns[i].begin), u' ');
            const auto field = field_with_separator(drafts[n], i);
            if (drafts[n].is_data())
                lines[n].cells.push_back(
                    {columns[i].begin, columns[i].begin + static_cast<int>(field.size())});
            text += field;
        }
        lines[n].text = std::move(text);
    }
    return columns;
}

}  // namespace

std::string head_quantity_name(HeadQuantity quantity) {
    switch (quantity) {
        case HeadQuantity::x:
            return "X";
        case HeadQuantity::y:
            return "Y";
        case HeadQuantity::sensor:
            return "Sensor";
        case HeadQuantity::dtm:
            return "DTM";
        case HeadQuantity::mag:
            return "Mag";
        case HeadQuantity::grav:
            return "Grav";
    }
    return "";
}

DataHead lay_out_data_head(const DataDefinition& definition, const intake::FileHead& head) {
    std::vector<Draft> drafts;
    DataHead shown;
    LineSorter sorter(definition);
    int number = 0;
    for (const std::string& whole : head.lines) {
        Draft draft;
        draft.bytes = std::string_view(whole).substr(0, longest_shown);
        draft.fields = fields_of(draft.bytes);
        draft.text = shown_text(draft.bytes, draft.places);
        draft.kind = sorter.sort(++number, draft);
        shown.lines.push_back({draft.text, draft.kind, {}});
        drafts.push_back(std::move(draft));
    }
    shown.columns = columns_as_they_are(drafts);
    if (shown.columns.empty()) {
        shown.columns = spread_columns(drafts, shown.lines);
    } else {
        for (std::size_t n = 0; n < drafts.size(); ++n)
            if (drafts[n].is_data())
                for (const Field& field : drafts[n].fields)
                    shown.lines[n].cells.push_back({static_cast<int>(drafts[n].places[field.begin]),
                                                    static_cast<int>(drafts[n].places[field.end])});
    }
    for (std::size_t i = 0; i < shown.columns.size(); ++i)
        shown.columns[i].quantities = quantities_of(definition, static_cast<int>(i) + 1);
    return shown;
}

}  // namespace anomalis::show
