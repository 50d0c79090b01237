#pragma once

#include <csignal>
#include <exception>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

namespace anomalis {

enum class Interruption { killed, ended, refused };

/// Runs `work` in a process of its own and kills it at its `calls`-th way into or out of the system. `ended`
/// when the work was done before; `refused` where no process may be watched.
template <class Work>
Interruption kill_at_system_call(int calls, Work work) {
    constexpr int not_watched = 77;
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(not_watched);
        ::raise(SIGSTOP);
        try {
            work();
        } catch (const std::exception&) {
        }
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    for (int seen = 0; WIFSTOPPED(status); ++seen) {
        if (seen == calls || ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) {
            ::kill(child, SIGKILL);
            ::waitpid(child, &status, 0);
            return seen == calls ? Interruption::killed : Interruption::refused;
        }
        ::waitpid(child, &status, 0);
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? Interruption::ended : Interruption::refused;
}

/// Runs `work` over and over in a process of its own and kills it after so many microseconds.
template <class Work>
void kill_after(useconds_t delay, Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            for (;;) work();
        } catch (const std::exception&) {
        }
        ::_exit(1);
    }
    ::usleep(delay);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

}  // namespace anomalis
