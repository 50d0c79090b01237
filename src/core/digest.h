#pragma once

#include <cstdint>
#include <string_view>

namespace anomalis {

/// Tells contents apart that chance made, not an enemy (FNV-1a, 64 bits: Fowler, Noll and Vo 1991).
constexpr std::uint64_t digest_of(std::string_view bytes) {
    constexpr std::uint64_t offset_basis = 14695981039346656037ULL, prime = 1099511628211ULL;
    std::uint64_t digest = offset_basis;
    for (const char byte : bytes) digest = (digest ^ static_cast<unsigned char>(byte)) * prime;
    return digest;
}

}  // namespace anomalis
