#include <algorithm>
#include <array>
#include <cstdint>

#include "core/utf8.h"
#include "intake/formats/byte_source.h"

namespace anomalis::intake {

namespace {

constexpr std::string_view utf8_mark = "\xEF\xBB\xBF";

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = first_character(text).length;
        // A character that the end of the head cuts off is no fault.
        if (length == 0) return text.size() < 4 && static_cast<unsigned char>(text.front()) >= 0xC2;
        text.remove_prefix(length);
    }
    return true;
}

/// Without a mark: in a table as UTF-16 nearly every second byte is zero.
std::optional<Encoding> unmarked_utf16(std::string_view head) {
    std::array<std::size_t, 2> zeros{};
    for (std::size_t i = 0; i < head.size(); ++i) zeros[i % 2] += head[i] == '\0';
    const std::size_t many = head.size() * 2 / 5;
    if (head.size() < 4) return {};
    if (zeros[1] >= many && zeros[0] * 10 < zeros[1]) return Encoding::utf16_little;
    if (zeros[0] >= many && zeros[1] * 10 < zeros[0]) return Encoding::utf16_big;
    return {};
}

class WithoutMark : public ByteSource {
  public:
    explicit WithoutMark(std::unique_ptr<ByteSource> bytes) : bytes_(std::move(bytes)) {}

    std::size_t read(char* into, std::size_t most) override {
        if (!begun_) begin();
        if (kept_.empty()) return bytes_->read(into, most);
        const std::size_t count = std::min(most, kept_.size());
        kept_.copy(into, count);
        kept_.erase(0, count);
        return count;
    }
    double bytes_read() const override { return bytes_->bytes_read(); }
    std::int64_t text_begin() const override {
        const std::int64_t first = bytes_->text_begin();
        return first < 0 ? first : first + mark_;
    }

  private:
    void begin() {
        begun_ = true;
        char byte = 0;
        while (kept_.size() < utf8_mark.size() && bytes_->read(&byte, 1) == 1) kept_ += byte;
        if (kept_ != utf8_mark) return;
        mark_ = static_cast<std::int64_t>(kept_.size());
        kept_.clear();
    }

    std::unique_ptr<ByteSource> bytes_;
    std::string kept_;
    bool begun_ = false;
    std::int64_t mark_ = 0;  ///< its bytes
};

constexpr char32_t byte_order_mark = 0xFEFF, replacement = 0xFFFD;

class FromUtf16 : public ByteSource {
  public:
    FromUtf16(std::unique_ptr<ByteSource> bytes, bool big) : bytes_(std::move(bytes)), big_(big) {}

    std::size_t read(char* into, std::size_t most) override {
        while (given_ == text_.size()) {
            text_.clear();
            given_ = 0;
            if (!fill()) return 0;
        }
        const std::size_t count = text_.copy(into, most, given_);
        given_ += count;
        return count;
    }
    double bytes_read() const override { return bytes_->bytes_read(); }

  private:
    bool fill() {
        const std::size_t count = bytes_->read(raw_.data() + odd_, raw_.size() - odd_) + odd_;
        if (count == odd_) {
            // Half a unit or half a pair at the end of the file.
            if (high_ != 0) append_utf8(text_, replacement);
            high_ = 0;
            return !text_.empty();
        }
        for (std::size_t i = 0; i + 1 < count; i += 2) {
            const auto first = static_cast<unsigned char>(raw_[i]);
            const auto second = static_cast<unsigned char>(raw_[i + 1]);
            take_unit(static_cast<char32_t>(big_ ? first << 8 | second : second << 8 | first));
        }
        odd_ = count % 2;
        if (odd_ != 0) raw_[0] = raw_[count - 1];
        return true;
    }
    void take_unit(char32_t unit) {
        const bool low = unit >= 0xDC00 && unit < 0xE000;
        if (high_ != 0) {
            append_utf8(text_, low ? 0x10000 + ((high_ - 0xD800) << 10) + (unit - 0xDC00) : replacement);
            high_ = 0;
            if (low) return;
        }
        if (unit >= 0xD800 && unit < 0xDC00) {
            high_ = unit;
        } else if (unit != byte_order_mark) {
            append_utf8(text_, low ? replacement : unit);
        }
    }

    std::unique_ptr<ByteSource> bytes_;
    bool big_;
    std::array<char, 32768> raw_{};
    std::size_t odd_ = 0, given_ = 0;
    char32_t high_ = 0;
    std::string text_;
};

}  // namespace

Encoding encoding_of(std::string_view head) {
    if (head.starts_with("\xFF\xFE")) return Encoding::utf16_little;
    if (head.starts_with("\xFE\xFF")) return Encoding::utf16_big;
    if (const auto found = unmarked_utf16(head)) return *found;
    return is_utf8(head) ? Encoding::utf8 : Encoding::latin1;
}

std::unique_ptr<ByteSource> open_text(const std::string& path, Encoding encoding,
                                      const FileStretch* stretch) {
    if (stretch) return open_stretch(path, *stretch);
    auto bytes = open_bytes(path);
    if (encoding == Encoding::utf16_little || encoding == Encoding::utf16_big)
        return std::make_unique<FromUtf16>(std::move(bytes), encoding == Encoding::utf16_big);
    return std::make_unique<WithoutMark>(std::move(bytes));
}

std::string text_of_bytes(std::string_view bytes, Encoding encoding) {
    if (encoding == Encoding::latin1) {
        std::string text;
        for (const char c : bytes) append_utf8(text, static_cast<unsigned char>(c));
        return text;
    }
    std::string text;
    while (!bytes.empty()) {
        const Utf8Character character = first_character(bytes);
        append_utf8(text, character.length == 0 ? replacement : character.code);
        bytes.remove_prefix(std::max<std::size_t>(character.length, 1));
    }
    return text;
}

}  // namespace anomalis::intake
