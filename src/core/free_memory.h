#pragma once

#include <cstdint>
#include <string>

// Work that would not fit into memory is refused before it begins: a system that grants more than it has
// would end the program in the middle of it.
namespace anomalis {

/// Bytes that this process may still take: what the system has left, what its own limits (`ulimit -v`, `-d`)
/// and the limit of its group leave. The largest number where nothing is known.
std::uint64_t free_memory();

/// "3.2 GB", "812 MB".
std::string memory_text(std::uint64_t bytes);

/// Raises Fault out_of_memory where `bytes` are more than `free`: "Out of memory (`what` need 3.2 GB, 1.1 GB
/// are free: `way_out`)".
void require_memory(std::uint64_t bytes, std::uint64_t free, const std::string& what,
                    const std::string& way_out);

/// Not worth a look at the system.
inline constexpr std::uint64_t little_memory = std::uint64_t{32} << 20;

/// The same with what is free now. Little is granted without a look.
void require_free_memory(std::uint64_t bytes, const std::string& what, const std::string& way_out);

}  // namespace anomalis
