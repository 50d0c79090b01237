#include "core/array.h"

#include <gtest/gtest.h>
#include <numeric>
#include <utility>

#include "support/response_values.h"

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

TEST(ResponseTable, a_column_takes_memory_when_it_is_written_and_reads_as_0_before) {
    ResponseTable table;
    table.assign(3);
    EXPECT_EQ(held_columns(table), 0);
    EXPECT_EQ(std::as_const(table)(3, 5), 0);
    EXPECT_TRUE(std::as_const(table).column(2).empty());
    table(2, 4) = 7;
    EXPECT_EQ(held_columns(table), 1);
    EXPECT_EQ(column_values(table, 4), (std::vector<float>{0, 7, 0}));
    table.drop(4);
    EXPECT_EQ(held_columns(table), 0);
    EXPECT_EQ(std::as_const(table)(2, 4), 0);
}

TEST(ResponseTable, is_compared_by_what_it_reads) {
    ResponseTable a, b;
    a.assign(3);
    b.assign(3);
    a(1, 2) = 0;
    EXPECT_EQ(a, b);
    b(1, 2) = 1;
    EXPECT_NE(a, b);
    a.release();
    b.release();
    EXPECT_EQ(a, b);
    b.assign(2);
    EXPECT_NE(a, b) << "another count of rows";
}

TEST(ResponseTable, zeros_of_the_same_count_keep_memory_and_those_of_another_do_not) {
    ResponseTable table;
    table.assign(3);
    table(1, 1) = 5;
    table.assign(3);
    EXPECT_EQ(held_columns(table), 1);
    EXPECT_EQ(std::as_const(table)(1, 1), 0);
    table.assign(4);
    EXPECT_EQ(held_columns(table), 0);
}

TEST(ResponseTable, an_index_outside_raises_a_fault) {
    ResponseTable table;
    table.assign(2);
    EXPECT_THROW(table(0, 1), Fault);
    EXPECT_THROW(std::as_const(table)(3, 1), Fault);
    EXPECT_THROW(table(1, 0), Fault);
    EXPECT_THROW(table.column(6), Fault);
}

}  // namespace
}  // namespace anomalis
