#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

namespace anomalis {

/// What renames a file on this kind of processor.
#ifdef SYS_rename
inline constexpr long rename_call = SYS_rename;
#else
inline constexpr long rename_call = SYS_renameat;
#endif

namespace failing_calls_detail {

/// The system's filter looks at each call: `first` and `first + count` are what is allowed, the last two
/// statements let it through or answer for it.
template <std::size_t size>
bool install(std::array<sock_filter, size> statements) {
    const sock_fprog program{static_cast<unsigned short>(size), statements.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

inline constexpr std::uint32_t number_of_call = offsetof(seccomp_data, nr);
/// The lower half of an argument, numbered from 0, on this kind of processor.
constexpr std::uint32_t argument(unsigned place) {
    return static_cast<std::uint32_t>(offsetof(seccomp_data, args) + place * sizeof(std::uint64_t));
}

}  // namespace failing_calls_detail

/// For use in a child: from here on a call of the system (SYS_fsync) ends with that error, as where a file
/// system does not support it. False where the system allows no such filter.
inline bool fail_call(long call, int error) {
    using namespace failing_calls_detail;
    return install(std::array<sock_filter, 4>{
        {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, number_of_call),
         BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call), 0, 1),
         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error)),
         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)}});
}

/// For use in a child: from here on no new file can be made by a name of its own, while old ones can be
/// written, as in a folder that is for reading alone. It holds for root too.
inline bool fail_new_files(int error) {
    using namespace failing_calls_detail;
    constexpr std::uint32_t own_name = O_CREAT | O_EXCL;
    return install(std::array<sock_filter, 7>{
        {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, number_of_call),
         BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 4),
         BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument(2)), BPF_STMT(BPF_ALU | BPF_AND | BPF_K, own_name),
         BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, own_name, 0, 1),
         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(error)),
         BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW)}});
}

}  // namespace anomalis
