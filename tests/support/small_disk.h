#pragma once

#include <fcntl.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <unistd.h>

namespace anomalis {

namespace small_disk_detail {

inline void write_to(const char* path, const std::string& text) {
    const int file = ::open(path, O_WRONLY | O_CLOEXEC);
    if (file < 0) return;
    [[maybe_unused]] const auto written = ::write(file, text.data(), text.size());
    ::close(file);
}

}  // namespace small_disk_detail

/// For use in a child: lays a disk of so many kilobytes over a folder, for this process alone. Needs no root
/// where the system lets people have name spaces of their own. False where it does not.
inline bool mount_small_disk(const std::string& folder, int kilobytes) {
    const uid_t user = ::getuid();
    const gid_t group = ::getgid();
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) {
        small_disk_detail::write_to("/proc/self/setgroups", "deny");
        small_disk_detail::write_to("/proc/self/uid_map", "0 " + std::to_string(user) + " 1");
        small_disk_detail::write_to("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
    } else if (::unshare(CLONE_NEWNS) != 0) {
        return false;
    }
    // Nothing of this may show outside.
    if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return false;
    const std::string size = "size=" + std::to_string(kilobytes) + "k";
    return ::mount("small", folder.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

}  // namespace anomalis
