#include "diagnostics/processor_facts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "vector/vector_levels.h"

namespace anomalis::diagnostics {
namespace {

using ::testing::Contains;
using ::testing::StartsWith;

TEST(ProcessorFacts, name_the_vectors_that_the_kernels_run_with) {
    const auto lines = processor_lines();
    EXPECT_THAT(lines, Contains("Vectors in use: " +
                                std::string(vector::vector_level_name(vector::widest_vector_level()))));
    EXPECT_THAT(lines, Contains(StartsWith("Processor: ")));
    if (vector::widest_vector_level() != vector::VectorLevel::baseline) {
        EXPECT_THAT(lines, Contains(::testing::HasSubstr(" avx2")));
    }
}

TEST(ProcessorFacts, tell_how_the_program_was_built) {
    const auto lines = build_lines();
    EXPECT_THAT(lines, Contains(StartsWith("Compiler: ")));
    EXPECT_THAT(lines, Contains(StartsWith("C library: 2.")));
}

}  // namespace
}  // namespace anomalis::diagnostics
