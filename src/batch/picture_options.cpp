#include "batch/picture_options.h"

#include <algorithm>
#include <charconv>

namespace anomalis::batch {

namespace {

/// "WIDTHxHEIGHT", each 16 to 16384; false when the text is none.
bool parse_size(const std::string& text, int& wide, int& high) {
    constexpr int smallest = 16;
    constexpr int largest = 16384;
    const char* const end = text.data() + text.size();
    int width = 0;
    int height = 0;
    const auto first = std::from_chars(text.data(), end, width);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != 'x') return false;
    const auto second = std::from_chars(first.ptr + 1, end, height);
    if (second.ec != std::errc() || second.ptr != end) return false;
    if (std::min(width, height) < smallest || std::max(width, height) > largest) return false;
    wide = width;
    high = height;
    return true;
}

}  // namespace

manual::ValueForm picture_form() {
    return manual::file("FILE", {".png", ".svg", ".pdf", ".emf"});
}

std::string ending_refusal(const std::string& path) {
    if (path == "-") return {};
    for (const char* ending : {".png", ".svg", ".pdf", ".emf"})
        if (path.size() > 4 && path.ends_with(ending)) return {};
    return "the ending must be .png, .svg, .pdf or .emf";
}

void add_picture_options(OptionList& options, std::string& path, int& width, int& height) {
    options.output("-o,--output", path, picture_form(), "Picture: .png, .svg, .pdf or .emf; - writes a .png",
                   OptionList::Need::must, ".png");
    options.at_end("--output", [&path] { return ending_refusal(path); });
    options.taken("--size",
                  {[&width, &height](const std::string& text) -> std::string {
                       if (parse_size(text, width, height)) return {};
                       return "must be WIDTHxHEIGHT in pixels, 16 to 16384: " + text;
                   },
                   manual::word("WIDTHxHEIGHT")},
                  "Pixels, such as 1600x1000 [1600x1000]");
}

}  // namespace anomalis::batch
