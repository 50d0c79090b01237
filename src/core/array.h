#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <span>
#include <vector>

#include "core/failure.h"
#include "core/zero_allocator.h"

namespace anomalis {

#ifdef NDEBUG
inline void check_index(bool) {}
#else
inline void check_index(bool inside) {
    if (!inside) throw Fault(FaultKind::subscript);
}
#endif

/// A contiguous array numbered from 1. The index is checked in debug builds.
template <class T>
class Array1 {
  public:
    Array1() = default;
    explicit Array1(int count, T value = T()) : values_(static_cast<std::size_t>(count), value) {}

    int count() const { return static_cast<int>(values_.size()); }
    bool empty() const { return values_.empty(); }

    T& operator[](int i) {
        check_index(i >= 1 && i <= count());
        return values_[static_cast<std::size_t>(i - 1)];
    }
    const T& operator[](int i) const {
        check_index(i >= 1 && i <= count());
        return values_[static_cast<std::size_t>(i - 1)];
    }

    T& first() { return (*this)[1]; }
    T& last() { return (*this)[count()]; }
    const T& first() const { return (*this)[1]; }
    const T& last() const { return (*this)[count()]; }

    /// All elements, numbered from 0: for loops over the whole.
    std::span<T> span() { return values_; }
    std::span<const T> span() const { return values_; }

    /// Gives the array `count` elements of `value`; storage is kept where it is large enough.
    void assign(int count, T value = T()) { values_.assign(static_cast<std::size_t>(count), value); }
    /// Changes the count and keeps the elements that remain.
    void resize(int count, T value = T()) { values_.resize(static_cast<std::size_t>(count), value); }
    void release() { std::vector<T>().swap(values_); }

    bool operator==(const Array1&) const = default;

  private:
    std::vector<T> values_;
};

/// A table of numbers in `Columns` columns numbered from `First`, rows numbered from 1, the row index running
/// fastest.
template <class T, int Columns, int First = 1>
class ColumnTable {
  public:
    int rows() const { return rows_; }

    T& operator()(int row, int column) { return values_[index(row, column)]; }
    const T& operator()(int row, int column) const { return values_[index(row, column)]; }

    /// One column, numbered from 0: for loops over all rows.
    std::span<T> column(int c) {
        check_index(c >= First && c < First + Columns);
        return {values_.data() + offset(c), static_cast<std::size_t>(rows_)};
    }
    std::span<const T> column(int c) const {
        check_index(c >= First && c < First + Columns);
        return {values_.data() + offset(c), static_cast<std::size_t>(rows_)};
    }

    std::span<T> span() { return values_; }
    std::span<const T> span() const { return values_; }

    /// Gives the table `rows` rows of zeros; storage is kept when it has that size already.
    void assign(int rows) {
        rows_ = rows;
        const std::size_t size = static_cast<std::size_t>(rows) * Columns;
        if (values_.size() == size) return std::fill(values_.begin(), values_.end(), T());
        Storage().swap(values_);
        values_ = Storage(size);
    }
    void release() {
        rows_ = 0;
        Storage().swap(values_);
    }

    bool operator==(const ColumnTable&) const = default;

  private:
    using Storage = std::vector<T, ZeroAllocator<T>>;

    std::size_t offset(int column) const {
        return static_cast<std::size_t>(column - First) * static_cast<std::size_t>(rows_);
    }
    std::size_t index(int row, int column) const {
        check_index(row >= 1 && row <= rows_ && column >= First && column < First + Columns);
        return offset(column) + static_cast<std::size_t>(row - 1);
    }

    int rows_ = 0;
    Storage values_;
};

}  // namespace anomalis
