#include "core/array.h"

#include <gtest/gtest.h>
#include <numeric>

namespace anomalis {
namespace {

TEST(Array1, is_numbered_from_one) {
    Array1<int> array(3, 7);
    EXPECT_EQ(array.count(), 3);
    array[1] = 1;
    array[3] = 3;
    EXPECT_EQ(array.first(), 1);
    EXPECT_EQ(array[2], 7);
    EXPECT_EQ(array.last(), 3);
    EXPECT_EQ(std::accumulate(array.span().begin(), array.span().end(), 0), 11);
}

TEST(Array1, an_index_outside_raises_a_fault) {
    Array1<int> array(3);
    EXPECT_THROW(array[0], Fault);
    EXPECT_THROW(array[4], Fault);
    EXPECT_THROW(array[-1], Fault);
    EXPECT_THROW(Array1<int>().first(), Fault);
    EXPECT_THROW(Array1<int>().last(), Fault);
}

TEST(Array1, a_resize_keeps_what_remains) {
    Array1<double> array(2, 1.5);
    array.resize(4, 9);
    EXPECT_EQ(array[2], 1.5);
    EXPECT_EQ(array[4], 9);
    array.resize(1);
    EXPECT_EQ(array.count(), 1);
    array.release();
    EXPECT_TRUE(array.empty());
}

TEST(Array1, a_smaller_assignment_keeps_its_storage) {
    Array1<double> array(100);
    const double* storage = array.span().data();
    array.assign(50, 2);
    EXPECT_EQ(array.span().data(), storage);
    EXPECT_EQ(array[50], 2);
}

TEST(ColumnTable, the_row_runs_fastest) {
    ColumnTable<int, 3> table;
    table.assign(4);
    table(1, 2) = 12;
    table(2, 2) = 22;
    table(4, 3) = 43;
    EXPECT_EQ(table.column(2)[0], 12);
    EXPECT_EQ(table.column(2)[1], 22);
    EXPECT_EQ(&table(2, 2), &table(1, 2) + 1);
    EXPECT_EQ(table.span().size(), 12U);
    EXPECT_EQ(table.span().back(), 43);
}

TEST(ColumnTable, columns_start_where_the_type_says) {
    ColumnTable<double, 5, 0> table;
    table.assign(2);
    table(2, 4) = 1;
    table(2, 0) = 5;
    EXPECT_EQ(table.column(0)[1], 5);
    EXPECT_EQ(table(2, 4), 1);
    EXPECT_THROW(table(1, 5), Fault);
    EXPECT_THROW(table(1, -1), Fault);
}

TEST(ColumnTable, an_index_outside_raises_a_fault) {
    ColumnTable<float, 3> table;
    table.assign(2);
    EXPECT_THROW(table(0, 1), Fault);
    EXPECT_THROW(table(3, 1), Fault);
    EXPECT_THROW(table(1, 0), Fault);
    EXPECT_THROW(table(1, 4), Fault);
    EXPECT_THROW(table.column(0), Fault);
    table.release();
    EXPECT_EQ(table.rows(), 0);
    EXPECT_TRUE(table.column(3).empty());
}

}  // namespace
}  // namespace anomalis
