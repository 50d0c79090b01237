#pragma once

#include "core/filter_scratch.h"
#include "core/pacer.h"
#include "core/workspace.h"

namespace anomalis {
class Faults;
}  // namespace anomalis

// Symmetric convolution filters and the chain that takes a channel from its raw row to the rows that the
// charts and the inversion read. Observed and calculated data pass through the same chain.
namespace anomalis::filter {

/// Filter codes of the chain. The smoothing codes are `filter_smoothing` plus the list index 0 to 4.
enum FilterCode : int {
    filter_vertical_gradient = 2,
    filter_horizontal_derivative = 3,
    filter_smoothing = 100,
    filter_triangular = 100,
    filter_sinc2 = 101,
    filter_hanning = 102,
    filter_hamming = 103,
    filter_boxcar = 104
};
inline constexpr int last_smoothing_type = 4;

/// Whether a code names a kernel.
bool has_kernel(int filter_code);

/// How many taps of a kernel are stored at most. The taps beyond, on a short line, see the end values alone,
/// and their sum, known in closed form, is added at once.
inline constexpr int longest_stored_kernel = 65536;

/// Whether a pass adds its taps one by one, which every kernel of usual width does: up to 256 taps a side
/// (2048 for the gradients, whose half are zeros), and more as long as all stations together cost at most
/// 2^24 additions. Wider kernels are sums of moving windows, at a cost that does not grow with the width.
bool is_added_tap_by_tap(int filter_code, int half_width, int stations);

/// Fills `scratch.coefficients` with taps 0 to min(half_width, longest) of a kernel and `tail_sum` with the
/// sum of the taps beyond. Taps are singles. A code without a kernel, or a half-width not above 0, leaves
/// the scratch as it is. Sinc^2, Hanning and Hamming keep a centre tap of 1, so their gain is 2 - 1/S with
/// S the sum of the raw taps; Triangular and Boxcar have a gain of 1; the gradient taps sum to 0.
void define_filter_coefficients(int filter_code, int half_width, int longest, FilterScratch& scratch,
                                Faults& faults);

/// One pass over one row.
struct FilterPass {
    int filter_code = 0;
    int half_width = 0;  ///< taps on each side
    int tap_step = 1;    ///< stations from tap to tap
    int first_station = 1;
    int station_count = 0;  ///< from there on
    int stage = stage_observed;
    int input_row = row_raw;
    int output_row = row_smoothed;
    bool subtract = false;  ///< the output is input less filtered input
};

/// Convolves stations of a row of `data` into another one; beyond the first and the last of them the row goes
/// on with their values.
/// Where taps are added one by one (`is_added_tap_by_tap`), it is in their order to a sum that is stored in a
/// single after each of them, each sum being formed in doubles: the result is that of the plain loop to the
/// bit. Wider kernels are summed in doubles, off by less than 1e-7 of the sum of |tap x value|, and a value
/// that is huge or no number reaches as far as its kernel and no farther.
/// Memory: at most 8 doubles a station. A negative tap step leaves the row (subscript fault); a sum beyond
/// single precision is an overflow. Tells `pacer` of its work in pieces of a few milliseconds; a pass that is
/// left has changed nothing but a part of its output row.
void apply_filter(const FilterPass& pass, ChannelTable& data, FilterScratch& scratch, Faults& faults,
                  Pacer& pacer = no_pace());

/// The whole chain of one channel (0 magnetics, 1 gravity) and stage: smoothing, residual, base level,
/// gradients. Does nothing without stations or while the chain's mark is set; sets the mark at its end. A
/// chain that is left at a turn of `pacer` has written some of its rows and has no mark.
/// On a line with gaps (core/gaps.h, found in the observed raw row) each stretch of readings is filtered as
/// if it were a line of its own, and of both stages alike: calculated values at stations without a reading
/// take no part, and all rows but the raw one are missing there. Means are over readings.
void filter_data(Workspace& workspace, int channel, int stage, ChannelTable& data, Faults& faults,
                 Pacer& pacer = no_pace());

/// About what one chain has to do, in units of core/pacer.h.
double chain_work(const Workspace& workspace);

/// The chain leaves rows that are not chosen as they are. This makes them 0, as a load leaves them: what they
/// held came from other settings.
void clear_rows_left_out(Workspace& workspace);

}  // namespace anomalis::filter
