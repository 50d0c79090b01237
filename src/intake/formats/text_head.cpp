#include "intake/formats/text_head.h"

#include <algorithm>

#include "core/failure.h"
#include "intake/formats/byte_source.h"
#include "intake/formats/line_stream.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t head_bytes = 65536;

std::string first_bytes(const std::string& path) {
    const auto bytes = open_bytes(path);
    std::string head(head_bytes, '\0');
    std::size_t filled = 0;
    while (const std::size_t count = bytes->read(head.data() + filled, head.size() - filled)) filled += count;
    head.resize(filled);
    return head;
}

/// Characters below the blank that no text has. Zeros at the end are padding of a disk that was full.
bool is_binary(const std::string& head) {
    const auto odd = std::count_if(head.begin(), head.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 32 && c != '\t' && c != '\n' && c != '\r' && c != '\f' && c != '\x1a';
    });
    return 100 * static_cast<std::size_t>(odd) > head.size();
}

}  // namespace

SurveySample read_head(const std::string& path, std::size_t most_lines, std::optional<Encoding> encoding) {
    SurveySample sample;
    sample.path = path;
    sample.packed = is_packed(path);
    const std::string head = first_bytes(path);
    if (head.empty()) throw Fault(path + " is empty.");
    sample.encoding = encoding.value_or(encoding_of(head));
    const bool wide = sample.encoding == Encoding::utf16_little || sample.encoding == Encoding::utf16_big;
    if (!wide && is_binary(head))
        throw Fault(
            path + " is no text. Survey files are tables as text: export the data as CSV, XYZ or ASEG-GDF2.");
    LineStream lines(path, sample.encoding);
    std::string_view line;
    sample.whole = true;
    while (lines.next(line)) {
        if (sample.lines.size() == most_lines) {
            sample.whole = false;
            break;
        }
        sample.lines.push_back(text_of_bytes(line, sample.encoding));
    }
    return sample;
}

}  // namespace anomalis::intake
