#include "intake/survey/survey_stamp.h"

#include "core/failure.h"
#include "core/paths.h"

namespace anomalis::intake {

void refuse_changed_survey(const std::string& path, const FileStamp& stamp) {
    const FileStamp now = stamp_file(path, StampDepth::times);
    if (now.exists == stamp.exists && now.size == stamp.size && now.modified == stamp.modified) return;
    throw Fault(
        file_name(path) +
        " was changed while it was read, so its last rows may be cut: wait until whoever writes it has "
        "finished, and read it again");
}

}  // namespace anomalis::intake
