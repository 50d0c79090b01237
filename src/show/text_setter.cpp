#include "show/text_setter.h"

#include <algorithm>

#include "core/utf8.h"

namespace anomalis::show {

std::string TextSetter::shortened(const std::string& text, const chart::Font& font, double room) const {
    if (width(text, font) <= room) return text;
    const std::string ellipsis = "…";
    return text.substr(0, fitting(text, font, room - width(ellipsis, font))) + ellipsis;
}

std::vector<std::string> TextSetter::lines(std::string text, const chart::Font& font, double room,
                                           std::size_t most) const {
    std::vector<std::string> broken;
    while (broken.size() + 1 < most && width(text, font) > room) {
        std::size_t end = fitting(text, font, room);
        const std::size_t blank = text.rfind(' ', end);
        if (blank != std::string::npos && blank > 0) end = blank;
        if (end == 0) break;
        broken.push_back(text.substr(0, end));
        text.erase(0, text[end] == ' ' ? end + 1 : end);
    }
    if (!text.empty()) broken.push_back(shortened(text, font, room));
    return broken;
}

std::size_t TextSetter::fitting(const std::string& text, const chart::Font& font, double room) const {
    std::vector<std::size_t> ends{0};
    for (std::size_t i = 0; i < text.size();) {
        i += std::max<std::size_t>(first_character(std::string_view(text).substr(i)).length, 1);
        ends.push_back(i);
    }
    const auto beyond = std::partition_point(ends.begin() + 1, ends.end(), [&](std::size_t end) {
        return width(std::string_view(text).substr(0, end), font) <= room;
    });
    return *(beyond - 1);
}

void TextSetter::place(FigureSheet& sheet, double left, double top, const std::string& text,
                       const chart::Font& font, chart::Colour colour) const {
    if (text.empty()) return;
    const chart::TextExtent size = extent(text, font);
    sheet.texts.push_back({{left, top - size.height()}, size, text, font, colour});
}

void TextSetter::place_right(FigureSheet& sheet, double right, double top, const std::string& text,
                             const chart::Font& font, chart::Colour colour) const {
    place(sheet, right - width(text, font), top, text, font, colour);
}

}  // namespace anomalis::show
