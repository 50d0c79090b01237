#include "chart/detail/flat_json.h"

#include <cmath>
#include <cstdint>

#include "core/numbers.h"
#include "core/text.h"

namespace anomalis::chart {

namespace {

std::string quoted(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string out = "\"";
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (code < 0x20) {
            out += "\\u00";
            out += digits[code >> 4];
            out += digits[code & 15];
        } else {
            out += c;
        }
    }
    return out + "\"";
}

struct ValueWriter {
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(const std::string& value) const { return quoted(value); }
    std::string operator()(const Font& font) const {
        return "{\"name\": " + quoted(font.name) + ", \"size\": " + (*this)(font.size) +
               ", \"bold\": " + (*this)(font.bold) + ", \"italic\": " + (*this)(font.italic) + "}";
    }
    template <class Number>
    std::string operator()(Number value) const {
        if constexpr (std::is_floating_point_v<Number>)
            if (!std::isfinite(value)) return "null";
        return std::string(trim_blanks(number_to_text(value)));
    }
};

void append_utf8(std::string& out, std::uint32_t code) {
    const auto put = [&](std::uint32_t byte) { out += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

/// A reader that turns bad for good at the first thing it does not expect.
class JsonReader {
  public:
    explicit JsonReader(std::string_view text) : text_(text) {}

    std::optional<JsonEntries> document() {
        JsonEntries entries = object(true);
        skip_space();
        if (!good_ || at_ != text_.size()) return std::nullopt;
        return entries;
    }

  private:
    char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
    void fail() { good_ = false; }
    void skip_space() {
        while (at_ < text_.size() && std::string_view(" \t\r\n").find(text_[at_]) != std::string_view::npos)
            ++at_;
    }
    bool take(char c) {
        skip_space();
        if (!good_ || peek() != c) return false;
        ++at_;
        return true;
    }
    void expect(char c) {
        if (!take(c)) fail();
    }
    bool take_word(std::string_view word) {
        if (text_.substr(at_, word.size()) != word) return false;
        at_ += word.size();
        return true;
    }

    JsonEntries object(bool may_nest) {
        JsonEntries entries;
        expect('{');
        if (take('}')) return entries;
        while (good_) {
            skip_space();
            std::string key = string();
            expect(':');
            if (auto value = good_ ? scalar(may_nest) : std::nullopt)
                entries.emplace_back(std::move(key), *value);
            if (take('}')) break;
            expect(',');
        }
        return entries;
    }

    std::optional<PropertyValue> scalar(bool may_nest) {
        skip_space();
        const char c = peek();
        if (c == '"') return string();
        if (c == '{' && may_nest) return font();
        if (take_word("true")) return true;
        if (take_word("false")) return false;
        if (take_word("null")) return std::nullopt;
        return number();
    }

    std::optional<PropertyValue> font() {
        Font read;
        for (const auto& [key, value] : object(false)) {
            if (key == "name" && std::holds_alternative<std::string>(value))
                read.name = std::get<std::string>(value);
            if (key == "size" && std::holds_alternative<double>(value)) read.size = std::get<double>(value);
            if (key == "bold" && std::holds_alternative<bool>(value)) read.bold = std::get<bool>(value);
            if (key == "italic" && std::holds_alternative<bool>(value)) read.italic = std::get<bool>(value);
        }
        if (!(read.size > 0.0)) fail();
        return read;
    }

    std::optional<PropertyValue> number() {
        const std::size_t end = std::min(text_.find_first_of(",} \t\r\n", at_), text_.size());
        const std::string_view token = text_.substr(at_, end - at_);
        if (token.empty() || token.front() == '+' || !is_numeric(token)) {
            fail();
            return std::nullopt;
        }
        at_ = end;
        return prefix_number(token);
    }

    std::string string() {
        std::string out;
        if (peek() != '"') fail();
        ++at_;
        while (good_ && peek() != '"') {
            if (at_ >= text_.size() || static_cast<unsigned char>(text_[at_]) < 0x20) {
                fail();
            } else if (text_[at_] == '\\') {
                ++at_;
                escape(out);
            } else {
                out += text_[at_++];
            }
        }
        ++at_;
        return out;
    }

    void escape(std::string& out) {
        constexpr std::string_view names = "\"\\/bfnrt";
        constexpr std::string_view meant = "\"\\/\b\f\n\r\t";
        const char c = peek();
        ++at_;
        const auto plain = names.find(c);
        if (c != '\0' && plain != std::string_view::npos) {
            out += meant[plain];
        } else if (c == 'u') {
            std::uint32_t code = hex4();
            if (code >= 0xD800 && code < 0xDC00 && take_word("\\u")) {
                const std::uint32_t low = hex4();
                if (low < 0xDC00 || low > 0xDFFF) fail();
                code = 0x10000 + ((code - 0xD800) << 10) + (low & 0x3FF);
            } else if (code >= 0xD800 && code < 0xE000) {
                fail();
            }
            append_utf8(out, code);
        } else {
            fail();
        }
    }

    std::uint32_t hex4() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const std::string_view digits = "0123456789abcdef0123456789ABCDEF";
            const auto digit = at_ < text_.size() ? digits.find(text_[at_]) : std::string_view::npos;
            if (digit == std::string_view::npos) {
                fail();
                return 0;
            }
            value = value * 16 + static_cast<std::uint32_t>(digit % 16);
            ++at_;
        }
        return value;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    bool good_ = true;
};

}  // namespace

std::string write_flat_json(const JsonEntries& entries) {
    std::string out = "{";
    for (const auto& [key, value] : entries) {
        out += out.size() == 1 ? "\n  " : ",\n  ";
        out += quoted(key) + ": " + std::visit(ValueWriter{}, value);
    }
    return out + "\n}\n";
}

std::optional<JsonEntries> read_flat_json(std::string_view text) {
    return JsonReader(text).document();
}

}  // namespace anomalis::chart
