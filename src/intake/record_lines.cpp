#include "intake/record_lines.h"

#include "core/workspace.h"

namespace anomalis::intake {

RecordLines::RecordLines(const DataDefinition& definition)
    : read_increment_(definition.read_increment), last_data_line_(definition.last_data_line) {}

void RecordLines::accept_record() {
    ended_ = last_data_line_ != 0 && lines_read_ >= last_data_line_;
}

}  // namespace anomalis::intake
