#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "core/array.h"
#include "core/zero_allocator.h"

namespace anomalis {

/// The body's own contribution, station by column: 1 total magnetic anomaly in nT, 2 gravity in mGal,
/// 3 to 5 north, east and down components of the facet route in nT. Columns and stations are numbered from 1.
///
/// A column takes memory from when it is first written: a model of many bodies on a long line holds the
/// channels that it has and nothing else. The others read as 0.
class ResponseTable {
  public:
    static constexpr int columns = 5;

    int rows() const { return rows_; }

    /// Makes all values 0. With another count of rows no memory is kept.
    void assign(int rows) {
        if (rows != rows_) release();
        rows_ = rows;
        for (Column& values : held_) std::fill(values.begin(), values.end(), 0.0F);
    }
    void release() {
        rows_ = 0;
        for (Column& values : held_) Column().swap(values);
    }

    /// A column to write: as it is, or zeros.
    std::span<float> column(int c) {
        Column& values = held_[place(c)];
        if (values.empty()) values = Column(static_cast<std::size_t>(rows_));
        return values;
    }
    /// A column to read; empty where all of it is 0 and nothing is held.
    std::span<const float> column(int c) const { return held_[place(c)]; }
    /// The column is 0 and takes no memory.
    void drop(int c) { Column().swap(held_[place(c)]); }

    float& operator()(int row, int c) {
        check_index(row >= 1 && row <= rows_);
        return column(c)[static_cast<std::size_t>(row - 1)];
    }
    float operator()(int row, int c) const {
        check_index(row >= 1 && row <= rows_);
        const Column& values = held_[place(c)];
        return values.empty() ? 0.0F : values[static_cast<std::size_t>(row - 1)];
    }

    /// By what is read, whatever is held.
    bool operator==(const ResponseTable& other) const {
        if (rows_ != other.rows_) return false;
        for (std::size_t c = 0; c < held_.size(); ++c)
            if (!equal(held_[c], other.held_[c])) return false;
        return true;
    }

  private:
    using Column = std::vector<float, ZeroAllocator<float>>;

    static std::size_t place(int c) {
        check_index(c >= 1 && c <= columns);
        return static_cast<std::size_t>(c - 1);
    }
    static bool equal(const Column& a, const Column& b) {
        if (a.size() == b.size()) return a == b;
        const Column& held = a.empty() ? b : a;
        return std::all_of(held.begin(), held.end(), [](float value) { return value == 0; });
    }

    int rows_ = 0;
    std::array<Column, columns> held_;
};

}  // namespace anomalis
