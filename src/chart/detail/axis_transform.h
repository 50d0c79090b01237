#pragma once

#include <limits>

namespace anomalis::chart {

/// What an unset limit holds.
inline constexpr double unset_limit = -99999.0;
/// What a missing value is stored as, and the bound that tells one.
inline constexpr double null_value = -1e32;
inline constexpr double null_bound = -1e30;
inline constexpr bool is_null(double value) {
    return !(value > null_bound);
}

/// The transform of one axis: linear (type 0), or logarithmic on both sides of a linear band that reaches
/// from -cutoff to +cutoff and maps to -1..1 (type 1).
class AxisTransform {
  public:
    int type = 0;

    double base() const { return base_; }
    double cutoff() const { return cutoff_; }
    bool logarithmic() const { return type == 1; }
    /// False, and nothing changed, for a base that has no logarithm to divide by: 0 or less, 1, not finite.
    bool set_base(double base);
    /// Snapped down to a power of the base, not below 1E-6 on base 10; 0 or less becomes 1.
    void set_cutoff(double cutoff);

    /// User units to transformed units; missing values pass unchanged.
    double forward(double value) const;
    /// Back again; 0 for a type that is neither 0 nor 1 (held by
    /// AxisTransform.an_unknown_type_has_no_inverse).
    double inverse(double value) const;
    /// The power of the base that the cutoff is.
    double cutoff_power() const;
    bool operator==(const AxisTransform&) const = default;

  private:
    double base_ = 10.0;
    double log_base_ = 2.302585092994046;
    double cutoff_ = 1.0;
};

/// The forward transform of a Y value: what is missing (at or below -1E30, equal to `data_null`, not finite)
/// becomes `null_value`.
inline double forward_or_null(const AxisTransform& scale, double value, double data_null) {
    // Every comparison with a value that is no number is false.
    const bool there =
        value > null_bound && value <= std::numeric_limits<double>::max() && value != data_null;
    if (!there) return null_value;
    return scale.logarithmic() ? scale.forward(value) : value;
}

}  // namespace anomalis::chart
