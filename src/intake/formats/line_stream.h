#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "intake/formats/byte_source.h"
#include "intake/formats/survey_format.h"

namespace anomalis::intake {

/// The lines of a text, which may end at CR, LF or CR LF, each as it likes.
class LineStream {
  public:
    /// A longer line is none of a table.
    static constexpr std::size_t longest_line = 1 << 20;

    /// `stretch`: the part of the file that is read; null for all of it.
    LineStream(const std::string& path, Encoding encoding, const FileStretch* stretch = nullptr);

    /// The next line without its end, false when there is none. A view until the next call. Raises FileFault,
    /// and Fault for a line that is too long.
    bool next(std::string_view& line);
    /// Number of the line that was given last, from 1.
    long line_number() const { return line_number_; }
    /// Whether an end stood behind the line that was given last: the last line of a file may have none.
    bool line_ended() const { return line_ended_; }
    /// Where the line that was given last lies; no value where a file cannot be read from its middle on.
    std::optional<FileStretch> place() const;
    double bytes_read() const { return bytes_->bytes_read(); }

  private:
    bool fill();
    const char* find_end();

    std::string path_;
    std::unique_ptr<ByteSource> bytes_;
    std::vector<char> buffer_;
    std::int64_t text_before_ = 0;  ///< bytes of the text in front of the buffer
    const char* line_begin_ = nullptr;
    const char* at_ = nullptr;
    const char* filled_ = nullptr;
    const char* next_feed_ = nullptr;    ///< first LF from `at_` on; `filled_` for none
    const char* next_return_ = nullptr;  ///< the same for CR
    bool at_end_ = false;
    bool skip_feed_ = false;  ///< the last line ended at a CR: an LF that follows belongs to it
    bool line_ended_ = true;
    long line_number_ = 0;
};

}  // namespace anomalis::intake
