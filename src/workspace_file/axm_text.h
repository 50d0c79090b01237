#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/faults.h"

// Lines of a workspace file, one by one. Private to this room.
namespace anomalis::workspace_file {

class LineItems;

/// The lines of a text; a line ends at CR LF, CR or LF, and every byte of it stays. A byte-order mark at the
/// start is passed over.
class AxmLines {
  public:
    explicit AxmLines(std::string_view text);

    bool at_end() const { return text_.empty(); }
    /// The next line without blanks at its ends. Raises Fault input_past_end.
    std::string_view next();
    /// The same as items; what is odd about them is noted here with that weight.
    LineItems items(Severity severity = Severity::doubt);
    void skip(int count);
    /// The number of the line that `next` gave or wanted last.
    long number() const { return number_; }

    /// Takes down that a line does not read as it should.
    void note(long line, const std::string& what, Severity severity);
    /// What was taken down, each text with "line 7: " before it.
    const Faults& notes() const { return notes_; }

  private:
    std::string_view text_;
    long number_ = 0;
    Faults notes_;
};

/// The items of one line. A missing number is 0, and so is an unreadable one; both are noted.
class LineItems {
  public:
    /// Items that nobody takes notes of.
    explicit LineItems(std::string_view line) : rest_(line) {}
    LineItems(std::string_view line, AxmLines& notes, Severity severity)
        : rest_(line), notes_(&notes), line_(notes.number()), severity_(severity) {}

    bool left() const;
    std::string_view token();
    std::string_view rest() const { return rest_; }
    double number();
    float single();          ///< raises Fault overflow out of range
    std::int32_t integer();  ///< the nearest, a tie to the even one; raises Fault overflow out of range

    /// The same, only while text is left on the line; `value` is left alone otherwise.
    void if_left(float& value);
    void if_left(std::int32_t& value);

    /// The line has no more items. Text that is left was split from a number, by a decimal comma as a rule.
    void end();

    /// Takes down that a token is no number, and which one was taken for it.
    void note_unreadable(std::string_view token, const std::string& taken);

  private:
    std::string_view rest_;
    AxmLines* notes_ = nullptr;
    long line_ = 0;
    Severity severity_ = Severity::doubt;
};

/// Builds the text of a workspace file. Items follow each other with no separator; a number brings its own
/// blanks: one in front of a value that is not negative, one behind.
class AxmWriter {
  public:
    AxmWriter& operator<<(std::int32_t value);
    AxmWriter& operator<<(float value);
    AxmWriter& operator<<(double value);
    /// A line break inside becomes a blank: it would shift all lines that follow.
    AxmWriter& operator<<(std::string_view text);
    void end_line() { text_ += "\r\n"; }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

inline constexpr std::string_view axm_display_marker = "[AXM Display Settings]";

}  // namespace anomalis::workspace_file
