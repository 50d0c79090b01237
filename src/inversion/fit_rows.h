#pragma once

#include <Eigen/Core>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "core/faults.h"
#include "core/inversion_state.h"
#include "core/pacer.h"
#include "core/workspace.h"
#include "forward/body_columns.h"
#include "inversion/channel_fit.h"
#include "inversion/observed_rows.h"
#include "inversion/row_chain.h"

// The rows of a fit in double precision: what the bodies leave of the observed rows, and how that changes
// with the free parameters. Regional and floating base are projected off, so each is at its best whatever
// the bodies are (variable projection, Golub and Pereyra 1973; their polynomials do not hang on the bodies,
// so the projected columns are exact).
namespace anomalis::inversion {

/// What is fitted.
struct FitRequest {
    std::vector<std::int32_t> channels;
    std::int32_t target = target_data;
    std::vector<InversionParamPlace> places;  ///< of the parameters, in their order
};

/// The rows of one channel.
struct FittedRows {
    std::int32_t channel = channel_mag;
    RowChain chain;
    Eigen::VectorXd distance;  ///< m along the profile
    double spacing = 0;        ///< m from row to row beside the gaps of the line; 0: it has none
    Eigen::VectorXd observed;
    Eigen::MatrixXd basis;  ///< orthonormal columns that are projected off
    double sigma = 1;       ///< residuals are weighed by it
    bool sigma_given = false;
    double noise = 0;       ///< of the readings in this row, keyed or from the line; 0: not known
    Eigen::MatrixXd raw;    ///< of each body that a parameter changes, a column each
    Eigen::VectorXd fixed;  ///< sum of the bodies that no parameter changes
};

class FitRows {
  public:
    /// Reads the observed rows as they stand; the model must be up to date. Raises Fault for a window that
    /// the line does not hold.
    FitRows(Workspace& workspace, FitRequest request, Faults& faults, Pacer& pacer);
    /// The same fit with memory of its own, for another thread. The workspace must stay as it is.
    FitRows(const FitRows& other, Pacer& pacer);

    std::size_t row_count() const;
    std::size_t parameter_count() const { return request_.places.size(); }
    const FitRequest& request() const { return request_; }
    std::vector<FittedRows>& channels() { return channels_; }
    const std::vector<FittedRows>& channels() const { return channels_; }
    const std::vector<ModelBody>& bodies() const { return bodies_; }

    /// Calculated less observed, weighed and projected.
    void residuals(std::span<const float> values, Eigen::Ref<Eigen::VectorXd> out);
    /// The same with the amplitudes of the bodies (susceptibility, density) that are free and act linearly at
    /// their best for the other parameters, inside the limits and within a factor of `most_change` of what
    /// they were. They are written into `values`.
    void residuals_at_best_amplitudes(std::vector<float>& values, std::span<const float> lower,
                                      std::span<const float> upper, double most_change,
                                      Eigen::Ref<Eigen::VectorXd> out);
    /// What a body that a parameter changes adds to the residuals where they were last found; else 0.
    Eigen::VectorXd share_of(std::int32_t body);
    /// Of the residuals without a body, the others as they are.
    double sum_of_squares_without(std::int32_t body, std::span<const float> values);
    /// Columns of the residuals by the parameters, each in its own unit.
    void columns(std::span<const float> values, Eigen::Ref<Eigen::MatrixXd> out);
    /// Length of the residual vector that the single precision of the observed rows can make.
    double rounding() const;
    /// Without weights: what there is to know of a channel at the values of the last call.
    std::vector<ChannelFit> channel_fits(const Eigen::MatrixXd& columns,
                                         const Eigen::VectorXd& residuals) const;
    /// What went wrong in the bodies.
    const Faults& faults() const { return faults_; }
    /// Models evaluated so far.
    long evaluations() const { return evaluations_; }
    void count_evaluations(long more) { evaluations_ += more; }

  private:
    struct FreeBody {
        int number = 0;
        Eigen::Index column = 0;              ///< of the raw rows
        std::vector<std::size_t> parameters;  ///< indices
        std::vector<float> calculated_at;     ///< their values in the raw rows; empty: not yet
        std::size_t amplitude[2];             ///< index of the amplitude of each channel, or none
    };
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    /// What one body is asked with, on whatever thread.
    struct BodyAsk {
        forward::BodyBench& bench;
        forward::BodyNotes notes;
    };

    void add_channel(Workspace& workspace, std::int32_t channel, Faults& faults);
    void find_free_bodies();
    void calculate_fixed();
    void add_fixed(std::span<const int> numbers);
    std::size_t amplitude_of(const FreeBody& body, std::int32_t channel) const;
    /// Calls work(i, ask) for each of `count` bodies, the i-th of which is `number(i)`, on as many cores as
    /// the `units` of all of them are worth. What goes wrong is noted in their order.
    void share_bodies(std::size_t count, double units, const std::function<int(std::size_t)>& number,
                      const std::function<void(std::size_t, BodyAsk&)>& work);
    /// About how long the values of a body take in all channels, or with so many columns.
    double units_of(int number, std::size_t columns = 0) const;
    /// Null for a body that no parameter changes.
    FreeBody* free_body(int number);
    void body_values(int number, FittedRows& rows, std::span<double> values, BodyAsk& ask);
    /// `known`: the raw rows hold the values already.
    void body_columns(const FreeBody& body, FittedRows& rows, std::span<const int> codes, bool known,
                      std::span<double> columns, BodyAsk& ask);
    void fill_columns(FreeBody& body, std::span<const float> values, Eigen::Ref<Eigen::MatrixXd> out,
                      BodyAsk& ask);
    bool calculated(const FreeBody& body, std::span<const float> values) const;
    void set_values(FreeBody& body, std::span<const float> values);
    void calculate(std::span<const float> values);
    void collect(Eigen::Ref<Eigen::VectorXd> out);
    void rescale(std::span<const double> factors, std::vector<float>& values,
                 std::span<const std::size_t> parameters);

    const Workspace& workspace_;
    FitRequest request_;
    std::vector<FittedRows> channels_;
    std::vector<ModelBody> bodies_;  ///< own copies without responses, from 1
    std::vector<FreeBody> free_;
    std::vector<std::unique_ptr<forward::BodyBench>> benches_;  ///< of the threads
    Faults faults_;
    Pacer& pacer_;
    double calculated_length_ = 0;
    long evaluations_ = 0;
};

}  // namespace anomalis::inversion
