#pragma once

#include <csignal>
#include <exception>
#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace anomalis {

/// Runs `work` in a process of its own and returns what it returns; 99 after an exception, 128 and the
/// signal's number when it was killed.
template <class Work>
int run_in_child(Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        int result = 99;
        try {
            result = work();
        } catch (const std::exception&) {
        }
        ::_exit(result);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

/// For use in a child: from here on no file can grow beyond `bytes`, as on a full disk.
inline void limit_file_size(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

/// For use in a child: from here on permissions hold, even when the tests run as root.
inline bool obey_permissions() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct none[2]{};
    return ::syscall(SYS_capset, &header, none) == 0;
}

}  // namespace anomalis
