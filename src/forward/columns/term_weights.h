#pragma once

#include <span>
#include <vector>

#include "forward/columns/weighted_columns.h"

namespace anomalis::forward {

/// The weights of some columns, gathered one column after the other; terms of weight 0 are left out.
class TermWeights {
  public:
    /// One weight a term.
    void add_column(std::span<const double> weights) {
        for (std::size_t term = 0; term < weights.size(); ++term) {
            if (weights[term] == 0) continue;
            term_.push_back(static_cast<int>(term));
            weight_.push_back(weights[term]);
        }
        first_.push_back(static_cast<int>(term_.size()));
    }
    std::size_t size() const { return weight_.size(); }
    WeightedColumns columns(double* out, std::size_t stride) const {
        return {first_.data(), term_.data(), weight_.data(), static_cast<int>(first_.size()) - 1,
                out,           stride};
    }

  private:
    std::vector<int> first_{0}, term_;
    std::vector<double> weight_;
};

}  // namespace anomalis::forward
