#include "show/data_head.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/shown_text.h"
#include "core/text.h"
#include "core/utf8.h"
#include "core/workspace.h"
#include "intake/definition.h"
#include "intake/record_columns.h"
#include "intake/record_lines.h"

namespace anomalis::show {

namespace {

constexpr std::size_t longest_shown = 2000;  // characters a line
constexpr std::size_t most_columns = 200;
constexpr std::size_t tab_stop = 8;
constexpr std::size_t column_gap = 2;
constexpr char32_t control_dot = 0xB7;  // of one column, and in every font

/// As the reader numbers them.
constexpr std::array<HeadQuantity, intake::quantity_count> head_quantities{
    HeadQuantity::x,   HeadQuantity::y,   HeadQuantity::sensor,
    HeadQuantity::dtm, HeadQuantity::mag, HeadQuantity::grav};

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

/// Bytes as characters: UTF-8 where it is valid, Latin-1 otherwise; a control character, or one that turns
/// the order of reading round, as a dot. `places[i]` is where byte i went.
std::u16string head_text(std::string_view bytes, std::vector<std::size_t>& places) {
    constexpr char32_t byte_order_mark = 0xFEFF;
    std::u16string text;
    places.assign(bytes.size() + 1, 0);
    for (std::size_t i = 0; i < bytes.size();) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        const Utf8Character found = first_character(bytes.substr(i));
        const std::size_t used = std::max<std::size_t>(found.length, 1);
        const std::size_t place = text.size();
        if (byte == '\t') {
            text.append(tab_stop - text.size() % tab_stop, u' ');
        } else if (found.code != byte_order_mark) {
            const char32_t code = found.length > 0 ? found.code : byte;
            append_utf16(text, is_hidden_control(code) ? control_dot : code);
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

std::vector<HeadQuantity> quantities_of(const DataDefinition& definition, int column) {
    std::vector<HeadQuantity> found;
    const unsigned quantities = intake::quantities_of_column(definition, column);
    for (std::size_t i = 0; i < intake::quantity_count; ++i)
        if ((quantities >> i & 1U) != 0) found.push_back(head_quantities[i]);
    return found;
}

/// Says of each line what the reader makes of it.
class LineSorter {
  public:
    explicit LineSorter(const DataDefinition& definition)
        : first_data_line_(definition.first_data_line), lines_(definition), columns_(definition) {}

    HeadLineKind sort(int number, std::string_view line) {
        const std::string_view text = intake::record_text(line);
        const bool read = number >= first_data_line_ && !lines_.ended();
        if (!read && intake::is_comment(text)) return HeadLineKind::comment;
        if (!read) return lines_.ended() ? HeadLineKind::beyond : HeadLineKind::skipped;
        switch (lines_.take(text)) {
            case intake::LineUse::comment:
                return HeadLineKind::comment;
            case intake::LineUse::passed_over:
                return HeadLineKind::stepped_over;
            case intake::LineUse::record:
                break;
        }
        intake::RecordValues values{};
        if (columns_.read(text, values).fit == intake::RowReading::no_number) return HeadLineKind::dropped;
        lines_.accept_record();
        return HeadLineKind::record;
    }

  private:
    int first_data_line_;
    intake::RecordLines lines_;
    intake::RecordColumns columns_;
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
        draft.text = head_text(draft.bytes, draft.places);
        draft.kind = sorter.sort(++number, whole);
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
