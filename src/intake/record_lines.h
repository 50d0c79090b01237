#pragma once

#include <cstdint>
#include <string_view>

namespace anomalis {
struct DataDefinition;
}  // namespace anomalis

// Which lines of a data file are records: the one rule, for the reader and for whoever shows the file.
namespace anomalis::intake {

/// What a line from the first data line on is to the reader.
enum class LineUse {
    comment,      ///< starts with "!" or "\"
    passed_over,  ///< blank, or used up by the read step
    record
};

/// What of a line can be a record: without the blanks and tabs before it and the blanks behind it; "" of a
/// line that holds nothing else. A view into `line`.
inline std::string_view record_text(std::string_view line) {
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
    while (!line.empty() && line.back() == ' ') line.remove_suffix(1);
    return line;
}

/// Whether a line, as `record_text` gives it, is a comment.
inline bool is_comment(std::string_view text) {
    return !text.empty() && (text.front() == '!' || text.front() == '\\');
}

/// Sorts the lines from the first data line on. They fall into groups of `read_increment` lines, comments not
/// counted; the last line of a group is the record, and where it is blank the next one that is not.
class RecordLines {
  public:
    explicit RecordLines(const DataDefinition& definition);

    /// Takes the next line, as `record_text` gives it. A record ends its group.
    LineUse take(std::string_view text) {
        ++lines_read_;
        if (is_comment(text)) return LineUse::comment;
        ++step_;
        if (text.empty() || step_ < read_increment_) return LineUse::passed_over;
        step_ = 0;
        return LineUse::record;
    }
    /// The record that was taken last gave its values. Only such a record can be the final one.
    void accept_record();
    /// The final data line was reached: what follows is not read. Comments count as lines here.
    bool ended() const { return ended_; }
    /// Whether it may be, so many lines on.
    bool may_end_within(long lines) const {
        return last_data_line_ != 0 && lines_read_ + lines >= last_data_line_;
    }
    /// Takes so many lines as read. REQUIRES: each line is a group of its own, and the final one not among
    /// them.
    void pass(long lines) { lines_read_ += lines; }

  private:
    std::int32_t read_increment_;
    std::int32_t last_data_line_;
    long lines_read_ = 0;
    long step_ = 0;
    bool ended_ = false;
};

}  // namespace anomalis::intake
