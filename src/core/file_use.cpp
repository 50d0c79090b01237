#include "core/file_use.h"

#include "core/same_file.h"

namespace anomalis {

std::string overwrite_refusal(const FileUse& output, std::span<const FileUse> kept) {
    for (const FileUse& file : kept) {
        if (same_file(output.path, file.path))
            return output.what + " " + output.path + " would be written over " + file.what + " " + file.path +
                   ". Nothing was written";
    }
    return {};
}

}  // namespace anomalis
