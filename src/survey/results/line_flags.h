#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/file_stamp.h"

// What a person thinks of the lines of a survey: FOLDER/flags.csv, one row a line with the columns "line",
// "flag" and "note", in UTF-8, as data-frame libraries read it without options. A text that a spreadsheet
// would take for a formula has an apostrophe in front.
namespace anomalis::survey {

enum class LineFlag : std::int32_t { none, accept, look_again, reject };

/// "accept", "look again", "reject"; "" for none.
std::string_view flag_text(LineFlag flag);
/// No value for a text that is none of them; case and blanks around it do not count.
std::optional<LineFlag> flag_of_text(std::string_view text);

/// What stands in the file for one line. The note is on one line, without blanks at its ends.
struct LineMark {
    LineFlag flag = LineFlag::none;
    std::string note;
    bool operator==(const LineMark&) const = default;
};

/// The file with all that stands in it: columns and lines that others have put there are kept.
struct FlagsTable {
    struct Row {
        LineMark mark;
        std::vector<std::string> others;  ///< as many as there are other columns
    };
    std::vector<std::string> other_columns;
    std::map<std::string, Row> rows;  ///< by the name of the line
};

/// Separated by commas, or by semicolons as some spreadsheets leave them. `path` is for the message. Raises
/// Fault with the path, the row and what is wrong: a column that is missing, a text that is no flag, a line
/// that stands there twice.
FlagsTable read_flags_table(std::string_view text, const std::string& path);
std::string flags_table_text(const FlagsTable& table);

/// The flags of a results folder. Every change is written at once, into what the file holds at that moment:
/// several programs may flag lines of one survey.
class LineFlags {
  public:
    explicit LineFlags(std::string folder);

    const std::string& path() const { return path_; }
    const LineMark& of(const std::string& line) const;

    /// Reads the file where it is another one than it was; true when something changed. Raises Fault,
    /// FileFault: what was known stays.
    bool refresh();
    /// Raises Fault, FileFault: nothing has changed then.
    void set(const std::string& line, LineMark mark);
    /// The same where the file still says `expected`. False: another program has changed it, and that stays.
    bool replace(const std::string& line, const LineMark& expected, LineMark mark);

  private:
    void write(FlagsTable&& table);

    std::string folder_, path_;
    FlagsTable table_;
    FileStamp stamp_;
};

}  // namespace anomalis::survey
