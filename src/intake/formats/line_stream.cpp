#include "intake/formats/line_stream.h"

#include <algorithm>
#include <cstring>

#include "core/failure.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t usual_buffer = 1 << 18;

/// Of a stretch not more than it holds, and one byte to find its end.
std::size_t buffer_size(const FileStretch* stretch) {
    if (!stretch) return usual_buffer;
    return static_cast<std::size_t>(
        std::clamp<std::int64_t>(stretch->end - stretch->begin + 1, 2, usual_buffer));
}

const char* find_byte(const char* from, const char* end, char byte) {
    const auto length = static_cast<std::size_t>(end - from);
    const void* found = length == 0 ? nullptr : std::memchr(from, byte, length);
    return found == nullptr ? end : static_cast<const char*>(found);
}

}  // namespace

LineStream::LineStream(const std::string& path, Encoding encoding, const FileStretch* stretch)
    : path_(path), bytes_(open_text(path, encoding, stretch)), buffer_(buffer_size(stretch)) {
    at_ = filled_ = next_feed_ = next_return_ = line_begin_ = buffer_.data();
    if (stretch) line_number_ = stretch->first_line - 1;
}

std::optional<FileStretch> LineStream::place() const {
    const std::int64_t text = bytes_->text_begin();
    if (text < 0) return std::nullopt;
    const std::int64_t buffer = text + text_before_;
    return FileStretch{buffer + (line_begin_ - buffer_.data()), buffer + (at_ - buffer_.data()),
                       line_number_};
}

/// Brings more of the text behind what is left in the buffer. False at its end.
bool LineStream::fill() {
    if (at_end_) return false;
    const auto left = static_cast<std::size_t>(filled_ - at_);
    text_before_ += at_ - buffer_.data();
    if (left == buffer_.size()) {
        if (left >= longest_line)
            throw Fault(path_ + ", line " + std::to_string(line_number_ + 1) + ": longer than " +
                        std::to_string(longest_line) + " bytes. This is no table of numbers as text.");
        std::vector<char> larger(2 * left);
        std::copy(at_, filled_, larger.begin());
        buffer_.swap(larger);
    } else if (left > 0) {
        std::memmove(buffer_.data(), at_, left);
    }
    const std::size_t count = bytes_->read(buffer_.data() + left, buffer_.size() - left);
    at_end_ = count == 0;
    at_ = buffer_.data();
    filled_ = at_ + left + count;
    // Nothing ends in what was left: it was looked through before.
    next_feed_ = find_byte(at_ + left, filled_, '\n');
    next_return_ = find_byte(at_ + left, filled_, '\r');
    return count > 0;
}

/// Each end is looked for once, so that a text with ends of one kind alone is not searched again and again.
const char* LineStream::find_end() {
    if (next_feed_ < at_) next_feed_ = find_byte(at_, filled_, '\n');
    if (next_return_ < at_) next_return_ = find_byte(at_, filled_, '\r');
    return std::min(next_feed_, next_return_);
}

bool LineStream::next(std::string_view& line) {
    for (;;) {
        if (skip_feed_) {
            if (at_ == filled_ && !fill()) return false;
            if (*at_ == '\n') ++at_;
            skip_feed_ = false;
        }
        const char* const end = find_end();
        if (end != filled_) {
            line = std::string_view(at_, static_cast<std::size_t>(end - at_));
            line_begin_ = at_;
            skip_feed_ = *end == '\r';
            at_ = end + 1;
            line_ended_ = true;
            ++line_number_;
            return true;
        }
        if (fill()) continue;
        if (at_ == filled_) return false;
        line = std::string_view(at_, static_cast<std::size_t>(filled_ - at_));
        line_begin_ = at_;
        at_ = filled_;
        line_ended_ = false;
        ++line_number_;
        return true;
    }
}

}  // namespace anomalis::intake
