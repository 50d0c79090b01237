#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Lines of a workspace file, one by one. Private to this room.
namespace anomalis::workspace_file {

/// The lines of a text; a line ends at CR LF, CR or LF, and every byte of it stays. A byte-order mark at the
/// start is passed over.
class AxmLines {
  public:
    explicit AxmLines(std::string_view text);

    bool at_end() const { return text_.empty(); }
    /// The next line without blanks at its ends. Raises Fault input_past_end.
    std::string_view next();
    void skip(int count);
    /// The number of the line that `next` gave or wanted last.
    long number() const { return number_; }

  private:
    std::string_view text_;
    long number_ = 0;
};

/// The items of one line. A missing number is 0, and so is an unreadable one.
class LineItems {
  public:
    explicit LineItems(std::string_view line) : rest_(line) {}

    bool left() const;
    std::string_view token();
    std::string_view rest() const { return rest_; }
    double number();
    float single();          ///< raises Fault overflow out of range
    std::int32_t integer();  ///< the nearest, a tie to the even one; raises Fault overflow out of range

    /// The same, only while text is left on the line; `value` is left alone otherwise.
    void if_left(float& value);
    void if_left(std::int32_t& value);

  private:
    std::string_view rest_;
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
