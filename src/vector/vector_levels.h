#pragma once

#include <string_view>

namespace anomalis::vector {

/// The instruction sets that a kernel is compiled for. `baseline` runs on every processor; the others exist
/// on x86-64 only. A lane is computed by the same roundings at every level, so the level changes the speed
/// and not the numbers.
enum class VectorLevel { baseline, avx2, avx512 };

/// The widest level that this processor can run. Asked of the processor once.
VectorLevel widest_vector_level();

/// "baseline", "avx2" or "avx512".
std::string_view vector_level_name(VectorLevel level);

}  // namespace anomalis::vector

/// Declares `result name parameters` in each level's namespace, and `name_at(level)`, which returns the
/// function of that level (of the widest one not above it). To be used inside namespace anomalis; how to
/// write the kernel stands in forward/vector_math.h.
#if defined(__x86_64__)
#define ANOMALIS_VECTOR_KERNEL(result, name, parameters)                     \
    namespace vector_baseline {                                              \
    result name parameters;                                                  \
    }                                                                        \
    namespace vector_avx2 {                                                  \
    result name parameters;                                                  \
    }                                                                        \
    namespace vector_avx512 {                                                \
    result name parameters;                                                  \
    }                                                                        \
    inline auto name##_at(vector::VectorLevel level)->result(*) parameters { \
        switch (level) {                                                     \
            case vector::VectorLevel::avx512:                                \
                return vector_avx512::name;                                  \
            case vector::VectorLevel::avx2:                                  \
                return vector_avx2::name;                                    \
            default:                                                         \
                return vector_baseline::name;                                \
        }                                                                    \
    }
#else
#define ANOMALIS_VECTOR_KERNEL(result, name, parameters)       \
    namespace vector_baseline {                                \
    result name parameters;                                    \
    }                                                          \
    inline auto name##_at(VectorLevel)->result(*) parameters { \
        return vector_baseline::name;                          \
    }
#endif
