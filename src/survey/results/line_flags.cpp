#include "survey/results/line_flags.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/failure.h"
#include "core/paths.h"
#include "core/safe_file.h"
#include "core/shown_text.h"
#include "core/text.h"
#include "intake/formats/row_fields.h"
#include "output/csv_text.h"
#include "survey/results/results_folder.h"

namespace anomalis::survey {

namespace {

constexpr std::array<std::string_view, 4> flag_texts{"", "accept", "look again", "reject"};
constexpr std::array<std::string_view, 3> own_columns{"line", "flag", "note"};
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
constexpr std::string_view formula_starts = "=+-@";

/// Doubled quotes are one; the apostrophe before what looks like a formula is none of the text.
std::string plain_field(std::string_view field) {
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        text += field[i];
        if (field[i] == '"' && i + 1 < field.size() && field[i + 1] == '"') ++i;
    }
    const bool guarded =
        text.size() > 1 && text[0] == '\'' && formula_starts.find(text[1]) != std::string_view::npos;
    return guarded ? text.substr(1) : text;
}

std::string_view take_row(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view row = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (row.ends_with('\r')) row.remove_suffix(1);
    return row;
}

class FlagsReader {
  public:
    FlagsReader(std::string_view text, const std::string& path) : text_(text), path_(path) {
        if (text_.starts_with(byte_order_mark)) text_.remove_prefix(byte_order_mark.size());
    }

    FlagsTable read() {
        if (trim_blanks(text_).empty()) return {};
        take_head();
        while (!text_.empty()) {
            const std::string_view row = take_row(text_);
            ++number_;
            if (!trim_blanks(row).empty()) take(row);
        }
        return std::move(table_);
    }

  private:
    void take_head() {
        const std::string_view head = take_row(text_);
        if (head.find(',') == std::string_view::npos) separator_ = ';';
        intake::split_separated(head, separator_, fields_);
        for (std::size_t i = 0; i < fields_.size(); ++i) {
            const auto own = std::ranges::find_if(
                own_columns, [&](std::string_view name) { return equal_ignoring_case(name, fields_[i]); });
            if (own == own_columns.end()) {
                others_.push_back(i);
                table_.other_columns.push_back(plain_field(fields_[i]));
            } else {
                own_[static_cast<std::size_t>(own - own_columns.begin())] = i;
            }
        }
        for (const std::size_t needed : {0, 1})
            if (!own_[needed])
                fail("has no column \"" + std::string(own_columns[needed]) +
                     "\"; its head must name line, flag and note");
    }

    void take(std::string_view row) {
        intake::split_separated(row, separator_, fields_);
        const std::string line = field(*own_[0]);
        if (line.empty()) fail("names no line");
        const std::string text = field(*own_[1]);
        const auto flag = flag_of_text(text);
        if (!flag) fail("\"" + shown_text(text) + "\" is no flag; there are accept, look again and reject");
        FlagsTable::Row entry{.mark = {*flag, own_[2] ? field(*own_[2]) : std::string()}, .others = {}};
        for (const std::size_t other : others_) entry.others.push_back(field(other));
        if (!table_.rows.emplace(line, std::move(entry)).second)
            fail("line " + shown_text(line) + " stands there twice");
    }

    std::string field(std::size_t at) const {
        return at < fields_.size() ? plain_field(fields_[at]) : std::string();
    }

    [[noreturn]] void fail(const std::string& what) const {
        throw Fault(path_ + ", row " + std::to_string(number_) + ": " + what +
                    ". Mend the file or put it away; it is left as it is");
    }

    std::string_view text_;
    const std::string& path_;
    int number_ = 1;  ///< of the row, from 1; the head is the first
    char separator_ = ',';
    std::vector<std::string_view> fields_;
    std::array<std::optional<std::size_t>, own_columns.size()> own_;
    std::vector<std::size_t> others_;
    FlagsTable table_;
};

bool is_worth_a_row(const FlagsTable::Row& row) {
    return row.mark != LineMark{} ||
           std::ranges::any_of(row.others, [](const std::string& text) { return !text.empty(); });
}

FlagsTable read_flags_file(const std::string& path) {
    return file_exists(path).empty() ? FlagsTable{} : read_flags_table(read_whole_file(path), path);
}

}  // namespace

std::string_view flag_text(LineFlag flag) {
    return flag_texts.at(static_cast<std::size_t>(flag));
}

std::optional<LineFlag> flag_of_text(std::string_view text) {
    for (std::size_t i = 0; i < flag_texts.size(); ++i)
        if (equal_ignoring_case(trim_blanks(text), flag_texts[i])) return static_cast<LineFlag>(i);
    return {};
}

FlagsTable read_flags_table(std::string_view text, const std::string& path) {
    return FlagsReader(text, path).read();
}

std::string flags_table_text(const FlagsTable& table) {
    output::CsvText csv;
    for (const std::string_view name : own_columns) csv.name(name);
    for (const std::string& name : table.other_columns) csv.words(name);
    csv.end_row();
    for (const auto& [line, row] : table.rows) {
        csv.words(line);
        csv.words(flag_text(row.mark.flag));
        csv.words(row.mark.note);
        for (const std::string& other : row.others) csv.words(other);
        csv.end_row();
    }
    return csv.text();
}

LineFlags::LineFlags(std::string folder) : folder_(std::move(folder)), path_(folder_ + "/" + flags_name) {}

const LineMark& LineFlags::of(const std::string& line) const {
    static const LineMark none;
    const auto found = table_.rows.find(line);
    return found == table_.rows.end() ? none : found->second.mark;
}

bool LineFlags::refresh() {
    if (fate_of(stamp_, path_) == FileFate::same) return false;
    const FileStamp stamp = stamp_file(path_);
    table_ = read_flags_file(path_);
    stamp_ = stamp;
    return true;
}

void LineFlags::set(const std::string& line, LineMark mark) {
    const FolderLock lock(folder_);
    FlagsTable table = read_flags_file(path_);
    table.rows[line].mark = std::move(mark);
    write(std::move(table));
}

bool LineFlags::replace(const std::string& line, const LineMark& expected, LineMark mark) {
    const FolderLock lock(folder_);
    FlagsTable table = read_flags_file(path_);
    FlagsTable::Row& row = table.rows[line];
    if (row.mark != expected) return false;
    row.mark = std::move(mark);
    write(std::move(table));
    return true;
}

/// What is known becomes what the file says: a note as it reads back, the flags of others with it.
void LineFlags::write(FlagsTable&& table) {
    for (auto& [line, row] : table.rows) row.others.resize(table.other_columns.size());
    std::erase_if(table.rows, [](const auto& entry) { return !is_worth_a_row(entry.second); });
    const std::string text = flags_table_text(table);
    FlagsTable written = read_flags_table(text, path_);
    write_file_safely(path_, text);
    stamp_ = stamp_written(path_, text);
    table_ = std::move(written);
}

}  // namespace anomalis::survey
