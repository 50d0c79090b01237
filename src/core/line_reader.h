#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/input_file.h"

namespace anomalis {

/// The lines of a text in memory, by either of two rules for line ends.
/// Style 0: a line ends at CR or CR LF (the system's line read). Style 1: tolerant of bare LF.
/// A line is a view that holds until the next call of any member.
class LineScanner {
  public:
    /// A longer line is given in pieces by the tolerant rule.
    static constexpr std::size_t longest_lf_line = 11264;
    /// So many characters at the start of a file tell its style.
    static constexpr std::size_t style_window = 512;

    LineScanner() = default;
    virtual ~LineScanner() = default;
    LineScanner(const LineScanner&) = delete;
    LineScanner& operator=(const LineScanner&) = delete;

    /// 0 when a CR stands in the first characters of a file, else 1; a leading byte-order mark gives 1.
    static int style_of(std::string_view head);

    /// Goes to the start of a text. REQUIRES: `word_bytes` more can be read behind it.
    void begin(const char* text, std::size_t size);

    bool at_end();
    /// The next line by the system's line read, "" at the end. All other characters stay.
    std::string_view read_line();
    /// The next line by the tolerant rule: ends at LF, or at a CR (with the LF that follows it); printable
    /// characters stay, a tab becomes a blank, all others are dropped; cut at 11264 characters.
    std::string_view read_lf_line();
    /// The next line by the style given.
    std::string_view next(int style) { return style == 0 ? read_line() : read_lf_line(); }

    /// Whether the line that was read last had an end; the last one of a file may have none.
    bool line_ended() const { return line_ended_; }
    /// The number of lines read so far.
    long line_number() const { return line_number_; }

  protected:
    /// Brings more of the text behind what is left of it. False when there is none, or no room.
    virtual bool fill() { return false; }

    const char* text_ = nullptr;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;

  private:
    std::size_t find_carriage_return();
    void end_at_carriage_return();

    bool skip_line_feed_ = false;  ///< the last line ended at a CR: an LF that follows belongs to it
    bool line_ended_ = false;
    std::string line_;
    long line_number_ = 0;
};

/// Reads a text file line by line through a small buffer; a failing read raises FileFault.
class LineReader : public LineScanner {
  public:
    /// Opens the file, as `InputFile` does.
    explicit LineReader(const std::string& path);

    /// The style of the file, which is rewound.
    int detect_line_style();
    const std::string& path() const { return file_.path(); }

  private:
    bool fill() override;

    InputFile file_;
    std::vector<char> buffer_;
};

}  // namespace anomalis
