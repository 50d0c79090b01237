#pragma once

#include <cstddef>
#include <malloc.h>

// Of the sanitizers, where they are built in.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes() __attribute__((weak));

namespace anomalis {

/// What this process has allocated and not freed, whatever the allocator keeps for later.
inline std::size_t live_bytes() {
    if (__sanitizer_get_current_allocated_bytes) return __sanitizer_get_current_allocated_bytes();
    return ::mallinfo2().uordblks;
}

}  // namespace anomalis
