#include "core/private_folder.h"

#include <cerrno>
#include <filesystem>
#include <sys/stat.h>

#include "core/failure.h"
#include "core/paths.h"

namespace anomalis {

void set_private(const std::string& path, mode_t rights) {
    [[maybe_unused]] const int unsupported = ::chmod(path.c_str(), rights);
}

bool make_private_folder(const std::string& folder) {
    const std::string above = std::filesystem::path(folder).parent_path().string();
    if (!above.empty() && above != folder && !folder_exists(above)) make_private_folder(above);
    if (::mkdir(folder.c_str(), S_IRWXU) == 0) {
        set_private(folder, S_IRWXU);
        return true;
    }
    if (errno != EEXIST) throw FileFault(errno, folder);
    if (!folder_exists(folder)) throw FileFault(ENOTDIR, folder);
    return false;
}

}  // namespace anomalis
