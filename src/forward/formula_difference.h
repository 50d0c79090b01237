#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/model_body.h"
#include "core/workspace.h"
#include "forward/polyhedron/polyhedron.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

namespace anomalis::forward {

/// How far the classic curves of a body are from its exact ones: the largest difference as a share of the
/// exact curve's largest value. 0 for a channel that is absent or has no response in either.
struct FormulaDifference {
    double magnetic = 0;
    double gravity = 0;
    /// Why the body was not compared; "" when it was. Its exact curve costs more than is granted, or than a
    /// comparison in passing may take.
    std::string left_out;

    double largest() const { return magnetic > gravity ? magnetic : gravity; }
};

/// The difference above this share is worth a warning.
inline constexpr double notable_difference = 0.05;
/// What counts when the exact curve is zero and the classic one is not.
inline constexpr double no_common_measure = 99.99;

/// A comparison that takes longer is left out, in the units of core/pacer.h: a tenth of a second.
inline constexpr double most_comparison_units = 1e8;

/// Compares the response table of a body, which must be up to date and classic, with the exact formulas, some
/// stations at a time, so that a window can go on in between. A body that is switched off, or a workspace
/// that has the exact formulas in force, differs by nothing. The workspace outlives the comparison and stays
/// as it is meanwhile.
class FormulaComparison {
  public:
    /// Of 3 ms, a tenth of a picture.
    static constexpr double usual_piece = 3e6;

    /// Each piece is of about so many units of core/pacer.h.
    FormulaComparison(const Workspace& workspace, int body_number, double piece_units = usual_piece);
    /// The next piece. False when there is nothing left to do.
    bool advance(Faults& faults);
    /// What was found; of a comparison that has not ended, nothing.
    const FormulaDifference& found() const { return found_; }

  private:
    void begin(int body_number);
    void compare_piece();
    void end_channel();

    const Workspace& workspace_;
    int body_number_;
    double piece_units_;
    bool begun_ = false;
    ModelBody body_;             ///< a copy, which the exact formulas may fit to their ways
    std::vector<int> channels_;  ///< that are left to compare
    std::size_t next_ = 0;       ///< station, from 0
    std::size_t piece_ = 0;      ///< stations
    double peak_ = 0, largest_ = 0;
    Polyhedron polyhedron_;
    std::vector<double> values_;
    FormulaDifference found_;
};

/// The same in one go.
FormulaDifference formula_difference(const Workspace& workspace, int body_number, Faults& faults);

}  // namespace anomalis::forward
