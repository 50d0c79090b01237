#include "vector/vector_levels.h"

namespace anomalis::vector {

namespace {

VectorLevel ask_processor() {
#if defined(__x86_64__)
    if (!__builtin_cpu_supports("fma")) return VectorLevel::baseline;
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vl"))
        return VectorLevel::avx512;
    if (__builtin_cpu_supports("avx2")) return VectorLevel::avx2;
#endif
    return VectorLevel::baseline;
}

}  // namespace

VectorLevel widest_vector_level() {
    static const VectorLevel level = ask_processor();
    return level;
}

std::string_view vector_level_name(VectorLevel level) {
    switch (level) {
        case VectorLevel::avx512:
            return "avx512";
        case VectorLevel::avx2:
            return "avx2";
        default:
            return "baseline";
    }
}

}  // namespace anomalis::vector
