#include "core/line_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/byte_word.h"
#include "core/failure.h"

namespace anomalis {

namespace {

constexpr std::size_t buffer_size = 65536;
constexpr std::size_t style_window = 512;
constexpr std::size_t piece_size = 256;
constexpr unsigned char byte_order_mark = 239;

bool is_printable(char c) {
    return static_cast<unsigned char>(c - 32) <= 126 - 32;
}

/// How many printable characters stand at `at`, up to `limit`.
/// REQUIRES: a word can be read at any of them.
std::size_t printable_run(const char* at, std::size_t limit) {
    for (std::size_t i = 0; i < limit; i += word_bytes) {
        // Marked are bytes below 32, from 127 and from 128 on; only bytes behind the first mark can be wrong.
        const ByteWord word = load_word(at + i);
        const ByteWord marks = ((word - every_byte(32)) | (word + every_byte(1)) | word) & every_byte(0x80);
        if (marks != 0) return std::min(i + first_marked_byte(marks), limit);
    }
    return limit;
}

bool ends_line(char c) {
    return c == '\n' || c == '\r';
}

/// Appends what the tolerant rule keeps of `text`, as far as an end of line. Returns how much of it was used.
std::size_t append_printable(std::string_view text, std::string& line) {
    std::size_t kept = line.size();
    line.resize(kept + text.size());
    std::size_t used = 0;
    for (; used < text.size() && !ends_line(text[used]); ++used) {
        const char c = text[used] == '\t' ? ' ' : text[used];
        line[kept] = c;
        kept += is_printable(c);
    }
    line.resize(kept);
    return used;
}

}  // namespace

LineReader::LineReader(const std::string& path) : path_(path), buffer_(buffer_size + word_bytes) {
    // Not blocking: the open of a pipe without a writer would wait for ever.
    descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor_ < 0) throw FileFault(errno, path);
    struct stat status {};
    const int error = ::fstat(descriptor_, &status) != 0 ? errno : S_ISDIR(status.st_mode) ? EISDIR : 0;
    if (error == 0 && S_ISREG(status.st_mode)) return;
    ::close(descriptor_);
    if (error != 0) throw FileFault(error, path);
    throw Fault("Not a regular file (" + path + ")");
}

LineReader::~LineReader() {
    ::close(descriptor_);
}

/// Brings more of the file behind what is left in the buffer. False at the end of the file, and when the
/// buffer is full.
bool LineReader::fill() {
    if (begin_ > 0) {
        std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
                  buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
        end_ -= begin_;
        begin_ = 0;
    }
    if (end_ == buffer_size) return false;
    ssize_t count = 0;
    do {
        count = ::read(descriptor_, buffer_.data() + end_, buffer_size - end_);
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw FileFault(errno, path_);
    end_ += static_cast<std::size_t>(count);
    return count > 0;
}

int LineReader::detect_line_style() {
    const auto rewind = [&] {
        if (::lseek(descriptor_, 0, SEEK_SET) != 0) throw FileFault(errno, path_);
        begin_ = end_ = 0;
        skip_line_feed_ = false;
        line_number_ = 0;
    };
    rewind();
    while (end_ < style_window && fill()) {
    }
    const std::string_view head(buffer_.data(), std::min(end_, style_window));
    if (!head.empty() && static_cast<unsigned char>(head.front()) == byte_order_mark) return 1;
    return head.find('\r') == std::string_view::npos ? 1 : 0;
}

bool LineReader::at_end() {
    if (begin_ == end_ && !fill()) return true;
    if (!skip_line_feed_) return false;
    skip_line_feed_ = false;
    if (buffer_[begin_] == '\n') ++begin_;
    return begin_ == end_ && !fill();
}

/// The length of the text before the next CR, all of it within the buffer; npos when there is none.
std::size_t LineReader::find_carriage_return() {
    std::size_t searched = 0;
    do {
        const char* from = buffer_.data() + begin_;
        if (const void* found = std::memchr(from + searched, '\r', end_ - begin_ - searched))
            return static_cast<std::size_t>(static_cast<const char*>(found) - from);
        searched = end_ - begin_;
    } while (fill());
    return std::string_view::npos;
}

/// The LF that may follow is dropped with the next call, which may move the buffer; the line stays until
/// then.
void LineReader::end_at_carriage_return() {
    ++begin_;
    skip_line_feed_ = line_ended_ = true;
}

std::string_view LineReader::read_line() {
    if (at_end()) return {};
    ++line_number_;
    line_ended_ = false;
    const std::size_t length = find_carriage_return();
    if (length != std::string_view::npos) {
        const std::string_view line(buffer_.data() + begin_, length);
        begin_ += length;
        end_at_carriage_return();
        return line;
    }
    line_.clear();
    while (begin_ < end_ || fill()) {
        const char* first = buffer_.data() + begin_;
        const char* last = std::find(first, static_cast<const char*>(buffer_.data()) + end_, '\r');
        line_.append(first, last);
        begin_ += static_cast<std::size_t>(last - first);
        if (begin_ == end_) continue;
        end_at_carriage_return();
        break;
    }
    return line_;
}

std::string_view LineReader::read_lf_line() {
    if (at_end()) return {};
    ++line_number_;
    line_ended_ = true;
    // Nearly every line stands in the buffer, is short and has nothing to drop: it is given as it stands.
    std::size_t run = printable_run(buffer_.data() + begin_, std::min(end_ - begin_, longest_lf_line));
    if (begin_ + run == end_ && fill())
        run = printable_run(buffer_.data() + begin_, std::min(end_ - begin_, longest_lf_line));
    if (begin_ + run < end_ && buffer_[begin_ + run] == '\n') {
        const std::string_view line(buffer_.data() + begin_, run);
        begin_ += run + 1;
        return line;
    }
    line_.clear();
    line_ended_ = false;
    while (begin_ < end_ || fill()) {
        const std::size_t piece = std::min({piece_size, end_ - begin_, longest_lf_line - line_.size()});
        begin_ += append_printable({buffer_.data() + begin_, piece}, line_);
        if (begin_ == end_) continue;
        if (buffer_[begin_] == '\r') {
            end_at_carriage_return();
            break;
        }
        if (buffer_[begin_] == '\n') {
            ++begin_;
            line_ended_ = true;
            break;
        }
        if (line_.size() == longest_lf_line) break;
    }
    return line_;
}

}  // namespace anomalis
