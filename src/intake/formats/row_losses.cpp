#include "intake/formats/row_losses.h"

#include "intake/formats/byte_source.h"

namespace anomalis::intake {

namespace {

constexpr std::size_t longest_quoted = 40;

std::string quoted(std::string_view text, Encoding encoding) {
    std::string shown = "\"" + text_of_bytes(text.substr(0, longest_quoted), encoding);
    return shown + (text.size() > longest_quoted ? "..." : "") + "\"";
}

std::string reason(LossKind kind, std::string_view text, Encoding encoding) {
    switch (kind) {
        case LossKind::missing_field:
            return "a field is missing";
        case LossKind::no_number:
            return quoted(text, encoding) + " stands where a number is wanted";
        case LossKind::no_line:
            return "it names no line";
        case LossKind::cut_at_end:
            return "the row is cut at the end of the file";
        case LossKind::record_type:
            return "no record of type " + quoted(text, encoding) + " is defined";
    }
    return "";
}

}  // namespace

void RowLosses::add(LossKind kind, const std::string& column, std::string_view text, Encoding encoding,
                    long file_line) {
    for (std::size_t i = 0; i < list_.size(); ++i) {
        if (kinds_[i] != kind || list_[i].column != column) continue;
        ++list_[i].count;
        return;
    }
    kinds_.push_back(kind);
    list_.push_back({reason(kind, text, encoding), column, 1, file_line});
}

}  // namespace anomalis::intake
