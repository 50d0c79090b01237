#include "core/line_reader.h"

#include <algorithm>
#include <cstring>

#include "core/byte_word.h"

namespace anomalis {

namespace {

constexpr std::size_t buffer_size = 65536;
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

int LineScanner::style_of(std::string_view head) {
    head = head.substr(0, style_window);
    if (!head.empty() && static_cast<unsigned char>(head.front()) == byte_order_mark) return 1;
    return head.find('\r') == std::string_view::npos ? 1 : 0;
}

void LineScanner::begin(const char* text, std::size_t size) {
    text_ = text;
    begin_ = 0;
    end_ = size;
    skip_line_feed_ = line_ended_ = false;
    line_number_ = 0;
}

bool LineScanner::at_end() {
    if (begin_ == end_ && !fill()) return true;
    if (!skip_line_feed_) return false;
    skip_line_feed_ = false;
    if (text_[begin_] == '\n') ++begin_;
    return begin_ == end_ && !fill();
}

/// The length of the text before the next CR, all of it within the buffer; npos when there is none.
std::size_t LineScanner::find_carriage_return() {
    std::size_t searched = 0;
    do {
        const char* from = text_ + begin_;
        if (const void* found = std::memchr(from + searched, '\r', end_ - begin_ - searched))
            return static_cast<std::size_t>(static_cast<const char*>(found) - from);
        searched = end_ - begin_;
    } while (fill());
    return std::string_view::npos;
}

/// The LF that may follow is dropped with the next call, which may move the buffer; the line stays until
/// then.
void LineScanner::end_at_carriage_return() {
    ++begin_;
    skip_line_feed_ = line_ended_ = true;
}

std::string_view LineScanner::read_line() {
    if (at_end()) return {};
    ++line_number_;
    line_ended_ = false;
    const std::size_t length = find_carriage_return();
    if (length != std::string_view::npos) {
        const std::string_view line(text_ + begin_, length);
        begin_ += length;
        end_at_carriage_return();
        return line;
    }
    line_.clear();
    while (begin_ < end_ || fill()) {
        const char* first = text_ + begin_;
        const char* last = std::find(first, text_ + end_, '\r');
        line_.append(first, last);
        begin_ += static_cast<std::size_t>(last - first);
        if (begin_ == end_) continue;
        end_at_carriage_return();
        break;
    }
    return line_;
}

std::string_view LineScanner::read_lf_line() {
    if (at_end()) return {};
    ++line_number_;
    line_ended_ = true;
    // Nearly every line stands in the buffer, is short and has nothing to drop: it is given as it stands.
    std::size_t run = printable_run(text_ + begin_, std::min(end_ - begin_, longest_lf_line));
    if (begin_ + run == end_ && fill())
        run = printable_run(text_ + begin_, std::min(end_ - begin_, longest_lf_line));
    if (begin_ + run < end_ && text_[begin_ + run] == '\n') {
        const std::string_view line(text_ + begin_, run);
        begin_ += run + 1;
        return line;
    }
    line_.clear();
    line_ended_ = false;
    while (begin_ < end_ || fill()) {
        const std::size_t piece = std::min({piece_size, end_ - begin_, longest_lf_line - line_.size()});
        begin_ += append_printable({text_ + begin_, piece}, line_);
        if (begin_ == end_) continue;
        if (text_[begin_] == '\r') {
            end_at_carriage_return();
            break;
        }
        if (text_[begin_] == '\n') {
            ++begin_;
            line_ended_ = true;
            break;
        }
        if (line_.size() == longest_lf_line) break;
    }
    return line_;
}

LineReader::LineReader(const std::string& path) : file_(path), buffer_(buffer_size + word_bytes) {
    begin(buffer_.data(), 0);
}

bool LineReader::fill() {
    if (begin_ > 0) {
        std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
                  buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
        end_ -= begin_;
        begin_ = 0;
    }
    if (end_ == buffer_size) return false;
    const std::size_t count = file_.read(buffer_.data() + end_, buffer_size - end_);
    end_ += count;
    return count > 0;
}

int LineReader::detect_line_style() {
    file_.rewind();
    begin(buffer_.data(), 0);
    while (end_ < style_window && fill()) {
    }
    return style_of({buffer_.data(), end_});
}

}  // namespace anomalis
