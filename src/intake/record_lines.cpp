#include "intake/record_lines.h"

#include "core/text.h"
#include "core/workspace.h"

namespace anomalis::intake {

std::string_view record_text(std::string_view line) {
    const auto first = line.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view() : trim_blanks(line.substr(first));
}

bool is_comment(std::string_view text) {
    return !text.empty() && (text.front() == '!' || text.front() == '\\');
}

RecordLines::RecordLines(const DataDefinition& definition)
    : read_increment_(definition.read_increment), last_data_line_(definition.last_data_line) {}

LineUse RecordLines::take(std::string_view text) {
    ++lines_read_;
    if (is_comment(text)) return LineUse::comment;
    ++step_;
    if (text.empty() || step_ < read_increment_) return LineUse::passed_over;
    step_ = 0;
    return LineUse::record;
}

void RecordLines::accept_record() {
    ended_ = last_data_line_ != 0 && lines_read_ >= last_data_line_;
}

}  // namespace anomalis::intake
