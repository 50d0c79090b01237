#include <algorithm>
#include <string_view>

#include "core/failure.h"
#include "core/text.h"
#include "survey/plan/plan_forms.h"

namespace anomalis::survey {

namespace {

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";

/// The records of a text of separated values, a quoted field over several lines too.
class CsvText {
  public:
    CsvText(std::string_view text, const std::string& name) : rest_(text), name_(name) {
        if (rest_.starts_with(utf8_mark)) rest_.remove_prefix(utf8_mark.size());
        const std::string_view head = rest_.substr(0, rest_.find_first_of("\r\n"));
        if (std::ranges::count(head, ';') > std::ranges::count(head, ',')) separator_ = ';';
    }

    /// The next record that is not blank; false at the end.
    bool next(std::vector<std::string>& fields) {
        while (!rest_.empty()) {
            line_ = next_line_;
            read_record(fields);
            if (fields.size() > 1 || !trim_blanks(fields.front()).empty()) return true;
        }
        return false;
    }
    /// Where the record begins, from 1.
    long line() const { return line_; }

  private:
    void read_record(std::vector<std::string>& fields) {
        fields.assign(1, "");
        while (!rest_.empty()) {
            const char letter = rest_.front();
            if (letter == '"' && trim_blanks(fields.back()).empty()) {
                fields.back().clear();
                read_quoted(fields.back());
                continue;
            }
            rest_.remove_prefix(1);
            if (letter == '\n' || letter == '\r') {
                if (letter == '\r' && rest_.starts_with('\n')) rest_.remove_prefix(1);
                ++next_line_;
                return;
            }
            if (letter == separator_)
                fields.emplace_back();
            else
                fields.back() += letter;
        }
    }
    void read_quoted(std::string& field) {
        rest_.remove_prefix(1);
        for (;;) {
            const auto quote = rest_.find('"');
            if (quote == std::string_view::npos)
                throw Fault(name_ + ", line " + std::to_string(line_) + ": a quoted text has no end");
            next_line_ += std::ranges::count(rest_.substr(0, quote), '\n');
            field += rest_.substr(0, quote);
            rest_.remove_prefix(quote + 1);
            if (!rest_.starts_with('"')) return;
            field += '"';
            rest_.remove_prefix(1);
        }
    }

    std::string_view rest_;
    const std::string& name_;
    char separator_ = ',';
    long line_ = 1, next_line_ = 1;
};

PlanNode node_at(PlanKind kind, const std::shared_ptr<const std::string>& file, long line,
                 const std::string& key) {
    PlanNode node;
    node.kind = kind;
    node.file = file;
    node.line = line;
    node.key = key;
    return node;
}

PlanNode column_names(const std::vector<std::string>& fields, const std::shared_ptr<const std::string>& file,
                      long line) {
    PlanNode names = node_at(PlanKind::table, file, line, "");
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string name(trim_blanks(fields[i]));
        PlanNode column = node_at(PlanKind::cell, file, line,
                                  name.empty() ? "column " + std::to_string(i + 1) : "column " + name);
        if (name.empty()) refuse_plan(column, "has no name");
        if (names.entry(name)) refuse_plan(column, "stands twice");
        names.entries.emplace_back(name, std::move(column));
    }
    return names;
}

}  // namespace

void read_csv_rows(const std::string& text, const std::string& name,
                   const std::function<void(const PlanNode& columns)>& columns,
                   const std::function<void(const PlanNode& row)>& take) {
    const auto file = std::make_shared<const std::string>(name);
    CsvText csv(text, name);
    std::vector<std::string> fields;
    if (!csv.next(fields)) throw Fault(name + " is empty: its first row names the columns");
    const PlanNode names = column_names(fields, file, csv.line());
    columns(names);
    while (csv.next(fields)) {
        PlanNode row = node_at(PlanKind::table, file, csv.line(), "");
        if (fields.size() != names.entries.size())
            refuse_plan(row, "has " + std::to_string(fields.size()) +
                                 (fields.size() == 1 ? " field" : " fields") + " where the first row names " +
                                 std::to_string(names.entries.size()) + " columns");
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (trim_blanks(fields[i]).empty()) continue;
            PlanNode cell = node_at(PlanKind::cell, file, csv.line(), "column " + names.entries[i].first);
            cell.text = trim_blanks(fields[i]);
            row.entries.emplace_back(names.entries[i].first, std::move(cell));
        }
        take(row);
    }
}

}  // namespace anomalis::survey
