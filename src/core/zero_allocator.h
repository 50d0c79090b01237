#pragma once

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <type_traits>
#include <utility>

namespace anomalis {

/// Memory that is zero from the start. The system gives zero pages only when they are touched, so the columns
/// and tables of a long line that nobody uses cost nothing.
template <class T>
struct ZeroAllocator {
    static_assert(std::is_arithmetic_v<T>);
    using value_type = T;

    ZeroAllocator() = default;
    template <class U>
    explicit ZeroAllocator(const ZeroAllocator<U>&) {}

    T* allocate(std::size_t count) {
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) throw std::bad_array_new_length();
        if (void* memory = std::calloc(count, sizeof(T))) return static_cast<T*>(memory);
        throw std::bad_alloc();
    }
    void deallocate(T* memory, std::size_t) { std::free(memory); }

    /// A number that is made without a value is the zero that stands there.
    template <class U>
    void construct(U*) noexcept {}
    template <class U, class... Args>
    void construct(U* place, Args&&... args) {
        ::new (static_cast<void*>(place)) U(std::forward<Args>(args)...);
    }

    bool operator==(const ZeroAllocator&) const = default;
};

}  // namespace anomalis
