#include "intake/data_blocks.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "core/byte_word.h"
#include "core/line_reader.h"

namespace anomalis::intake {

namespace {

void make_room(DataBlock& block, std::size_t size) {
    if (block.bytes.size() < size + word_bytes) block.bytes.resize(size + word_bytes);
}

std::size_t room(const DataBlock& block) {
    return block.bytes.size() - word_bytes;
}

/// Behind the last line whose end is certain; 0 for none. A CR is one when the character behind it is known.
std::size_t behind_last_line(std::string_view text, int style) {
    if (text.empty()) return 0;
    if (style == 0) {
        const auto at = text.substr(0, text.size() - 1).rfind('\r');
        if (at == std::string_view::npos) return 0;
        return text[at + 1] == '\n' ? at + 2 : at + 1;
    }
    if (text.back() == '\n') return text.size();
    const auto at = text.substr(0, text.size() - 1).find_last_of("\n\r");
    return at == std::string_view::npos ? 0 : at + 1;
}

bool is_kept(char c) {
    return c == '\t' || static_cast<unsigned char>(c - ' ') <= '~' - ' ';
}

/// Behind the last of the lines that the tolerant rule cuts for their length, in a text without an end of
/// line but for a CR that may be its last character; 0 for none.
std::size_t behind_last_cut(std::string_view text) {
    std::size_t kept = 0, cut = 0;
    for (std::size_t i = 0; i < text.size() && text[i] != '\r'; ++i) {
        if (kept == LineScanner::longest_lf_line) {
            cut = i;
            kept = 0;
        }
        if (is_kept(text[i])) ++kept;
    }
    return cut;
}

/// Without what the tolerant rule drops of a line: zeros by the gigabyte are no line longer than a block.
void drop_unkept(DataBlock& block) {
    const auto end = block.bytes.begin() + static_cast<std::ptrdiff_t>(block.size);
    const auto kept_end =
        std::remove_if(block.bytes.begin(), end, [](char c) { return !is_kept(c) && c != '\r'; });
    block.size = static_cast<std::size_t>(kept_end - block.bytes.begin());
}

/// As the tolerant rule would have it, at once for the whole block.
void make_blanks_of_tabs(DataBlock& block) {
    char* const text = block.bytes.data();
    if (!std::memchr(text, '\t', block.size)) return;
    // Every character is written, so that many are at a time.
    for (std::size_t i = 0; i < block.size; ++i) text[i] = text[i] == '\t' ? ' ' : text[i];
}

}  // namespace

DataBlocks::DataBlocks(const std::string& path, std::size_t block_size)
    : file_(path), block_size_(block_size) {
    begun_.resize(LineScanner::style_window);
    std::size_t size = 0;
    while (size < begun_.size() && !at_end_) {
        const std::size_t count = file_.read(begun_.data() + size, begun_.size() - size);
        at_end_ = count == 0;
        size += count;
    }
    begun_.resize(size);
    style_ = LineScanner::style_of({begun_.data(), size});
}

/// False at the end of the file.
bool DataBlocks::fill(DataBlock& block) {
    while (!at_end_ && block.size < room(block)) {
        const std::size_t count = file_.read(block.bytes.data() + block.size, room(block) - block.size);
        at_end_ = count == 0;
        block.size += count;
    }
    return !at_end_;
}

std::size_t DataBlocks::end_of_lines(DataBlock& block) const {
    const std::string_view text(block.bytes.data(), block.size);
    if (const std::size_t end = behind_last_line(text, style_); end > 0 || style_ == 0) return end;
    const std::size_t cut = behind_last_cut(text);
    if (cut == 0) drop_unkept(block);
    return cut;
}

bool DataBlocks::next(DataBlock& block) {
    make_room(block, std::max(block_size_, begun_.size()));
    std::copy(begun_.begin(), begun_.end(), block.bytes.begin());
    block.size = begun_.size();
    begun_.clear();
    std::size_t end = 0;
    while (fill(block)) {
        end = end_of_lines(block);
        if (end > 0) break;
        if (2 * block.size > room(block)) make_room(block, 2 * room(block));
    }
    if (end > 0) {
        const auto behind = block.bytes.begin() + static_cast<std::ptrdiff_t>(end);
        begun_.assign(behind, block.bytes.begin() + static_cast<std::ptrdiff_t>(block.size));
        block.size = end;
    }
    block.last = end == 0;
    if (block.size == 0) return false;
    if (style_ != 0) make_blanks_of_tabs(block);
    block.number = blocks_++;
    return true;
}

}  // namespace anomalis::intake
