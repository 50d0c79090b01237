#include "core/zero_allocator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <new>
#include <span>
#include <sys/mman.h>
#include <vector>

#include "core/array.h"
#include "core/zero_values.h"

namespace anomalis {
namespace {

using ::testing::Each;
using ::testing::SizeIs;

using Table = ColumnTable<float, 3>;

TEST(ColumnTable, every_assign_gives_zeros) {
    Table table;
    for (const int rows : {5, 5, 2, 100000, 5, 0, 4}) {
        table.assign(rows);
        EXPECT_EQ(table.rows(), rows);
        EXPECT_THAT(table.span(), SizeIs(static_cast<std::size_t>(rows) * 3));
        EXPECT_THAT(table.span(), Each(0.0F));
        for (float& value : table.span()) value = 7;
    }
}

TEST(ColumnTable, the_same_size_keeps_its_storage) {
    Table table;
    table.assign(1000);
    const float* before = table.span().data();
    table.assign(1000);
    EXPECT_EQ(table.span().data(), before);
}

TEST(ColumnTable, a_table_that_was_moved_away_can_be_used_again) {
    Table table;
    table.assign(3);
    const Table taken = std::move(table);
    table.assign(3);
    EXPECT_THAT(table.span(), SizeIs(9));
    EXPECT_THAT(table.column(1), Each(0.0F));
    EXPECT_EQ(taken.rows(), 3);
}

TEST(ColumnTable, copies_hold_the_values) {
    Table table;
    table.assign(3);
    table(2, 2) = 5;
    const Table copy = table;
    EXPECT_EQ(copy, table);
    table(2, 2) = 6;
    EXPECT_FALSE(copy == table);
    EXPECT_EQ(copy(2, 2), 5);
}

TEST(ZeroAllocator, more_than_memory_can_hold_is_refused) {
    ZeroAllocator<double> allocator;
    EXPECT_THROW(allocator.allocate(static_cast<std::size_t>(-1) / 4), std::bad_array_new_length);
}

/// Memory that cannot be written.
class SealedZeros {
  public:
    SealedZeros() : place_(::mmap(nullptr, bytes, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
        if (place_ == MAP_FAILED) throw std::bad_alloc();
    }
    ~SealedZeros() { ::munmap(place_, bytes); }
    SealedZeros(const SealedZeros&) = delete;
    SealedZeros& operator=(const SealedZeros&) = delete;
    std::span<float> values() const { return {static_cast<float*>(place_), bytes / sizeof(float)}; }

  private:
    static constexpr std::size_t bytes = 65536;
    void* place_;
};

TEST(ZeroValues, what_is_zero_is_not_written) {
    const SealedZeros zeros;
    make_zero(zeros.values());
    EXPECT_TRUE(all_clear(zeros.values()));
}

TEST(ZeroValues, all_else_becomes_a_positive_zero) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    for (const float odd : {1.0F, -0.0F, 1e-45F, nan}) {
        std::vector<float> values{0, 0, odd, 0, odd};
        EXPECT_FALSE(all_clear(values));
        make_zero(values);
        EXPECT_TRUE(all_clear(values));
        EXPECT_THAT(values, Each(0.0F));
    }
    make_zero({});
    EXPECT_TRUE(all_clear({}));
}

}  // namespace
}  // namespace anomalis
