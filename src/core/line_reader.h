#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace anomalis {

/// Reads a text file line by line through a small buffer, with either of two rules for line ends.
/// Style 0: a line ends at CR or CR LF (the system's line read). Style 1: tolerant of bare LF.
/// A line is a view that holds until the next call of any member; a failing read raises FileFault.
class LineReader {
  public:
    /// A longer line is given in pieces by the tolerant rule.
    static constexpr std::size_t longest_lf_line = 11264;

    /// Opens the file. Raises FileFault (missing, a folder, no permission) or Fault (a device or a pipe,
    /// which could not be read twice).
    explicit LineReader(const std::string& path);
    ~LineReader();
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;

    /// 0 when a CR stands within the first 512 characters, else 1; a leading byte-order mark gives 1.
    /// The file is rewound.
    int detect_line_style();

    bool at_end();
    /// The next line by the system's line read, "" at end of file. All other characters stay.
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
    const std::string& path() const { return path_; }

  private:
    bool fill();
    std::size_t find_carriage_return();
    void end_at_carriage_return();

    std::string path_;
    int descriptor_ = -1;
    std::vector<char> buffer_;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    bool skip_line_feed_ = false;  ///< the last line ended at a CR: an LF that follows belongs to it
    bool line_ended_ = false;
    std::string line_;
    long line_number_ = 0;
};

}  // namespace anomalis
