#include "core/told_write.h"

#include "core/prompts.h"
#include "core/safe_file.h"

namespace anomalis {

void write_file_telling(Prompts& listener, const std::string& path, std::string_view contents) {
    const std::string remark = hard_link_remark(path, write_file_safely(path, contents));
    if (!remark.empty()) listener.remark(remark);
}

void write_pieces_telling(Prompts& listener, const std::string& path, const TextSource& source) {
    SafeFile file(path);
    source([&file](std::string_view piece) { file.write(piece); });
    const std::string remark = hard_link_remark(path, file.commit());
    if (!remark.empty()) listener.remark(remark);
}

FileWriter telling_writer(Prompts& listener) {
    return [&listener](const std::string& path, std::string_view contents) {
        write_file_telling(listener, path, contents);
    };
}

}  // namespace anomalis
