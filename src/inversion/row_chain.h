#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "core/faults.h"
#include "core/gaps.h"
#include "core/inversion_state.h"
#include "core/workspace.h"

// The way of a calculated curve from its raw row to the row that is fitted, in double precision: what
// `filter::filter_data` does in singles. Floating base and regional are left to whoever projects them off.
namespace anomalis::inversion {

/// A symmetric kernel, or an odd one.
struct RowKernel {
    std::vector<double> taps;  ///< tap 0 is the centre; empty lets the row through
    int step = 1;              ///< stations from tap to tap
    double beyond = 0;         ///< sum of the taps that are not stored
    bool odd = false;          ///< right less left
    bool subtract = false;     ///< the output is input less filtered input
};

class RowChain {
  public:
    /// Raises Fault subscript for a window that the line does not hold, and a Fault with a text for one
    /// without a reading of the channel.
    RowChain(Workspace& workspace, std::int32_t channel, std::int32_t target, Faults& faults);

    /// The stations whose raw values it wants, numbered from 1: those of the window, or all.
    int first_station() const { return first_; }
    int last_station() const { return last_; }
    std::size_t raw_count() const { return static_cast<std::size_t>(last_ - first_) + 1; }
    /// Rows that it gives: one a station of the window at which the channel has a reading.
    std::size_t row_count() const { return window_; }
    /// The stations of the rows, rising.
    std::span<const std::int32_t> stations() const { return std::span(stations_).subspan(skipped_, window_); }
    /// The raw value that stands for a row.
    std::size_t raw_place(std::size_t row) const {
        return static_cast<std::size_t>(stations_[skipped_ + row] - first_);
    }
    /// Rows at which a stretch of the line begins (core/gaps.h): the first, and those behind gaps.
    std::vector<std::size_t> starts() const;
    /// The channel has a reading at every station, and no gap.
    bool whole() const { return whole_; }
    /// It lets the raw row through.
    bool plain() const { return kernels_.empty() && !nothing_; }
    /// A sum of raw rows gives the sum of their rows.
    bool linear() const { return !total_; }

    /// Raw values to rows.
    void values(std::span<const double> raw, std::span<double> rows);
    /// A change of the raw values, small where the chain is not linear, to that of the rows: at the raw
    /// values of the last call of `values`. Several threads may ask at once.
    void change(std::span<const double> raw, std::span<double> rows) const;

  private:
    struct Part {
        std::size_t first = 0, count = 0;  ///< of `stations_`
    };
    void find_parts(const ChannelGaps& gaps, const Channel& channel, std::int32_t raw_row);
    /// The raw values at readings, filtered but for the gradients whose length is wanted.
    void gather(std::span<const double> raw, std::vector<double>& row) const;
    void filter(const RowKernel& kernel, std::vector<double>& row) const;
    void take_window(const std::vector<double>& row, std::span<double> rows) const;

    int first_ = 1, last_ = 0;
    std::vector<std::int32_t> stations_;  ///< with a reading, of those whose raw values it wants
    std::vector<Part> parts_;             ///< that filters stay within
    bool whole_ = true;
    std::size_t window_ = 0, skipped_ = 0;  ///< readings of the window, and those before it
    std::vector<RowKernel> kernels_;        ///< one after the other
    bool total_ = false;                    ///< the last two are the gradients whose length is wanted
    bool nothing_ = false;                  ///< the row is not calculated at all
    std::vector<double> row_, horizontal_, vertical_;
};

}  // namespace anomalis::inversion
