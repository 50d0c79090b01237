#pragma once

#include <cstdint>
#include <string_view>

#include "core/formulas.h"

namespace anomalis {
struct ModelBody;
struct Workspace;
}  // namespace anomalis

// What a body costs, known before anything is allocated for it: one price for drawing, exporting and for both
// kinds of formulas.
namespace anomalis::forward {

/// A number that does not fit 64 bits stays at the largest one.
struct BodyPrice {
    std::string_view name = {};               ///< of the body, which outlives its price
    std::uint64_t sectors = 0, segments = 0;  ///< of a pipe's solid, as its triangle size raises them
    std::uint64_t facets = 0;                 ///< of that solid, as it is drawn and exported
    std::uint64_t calculated = 0;      ///< facets, or edges of an endless ring, that the kernel is given
    std::uint64_t pairs = 0;           ///< facets seen by the points that share the demagnetisation
    std::uint64_t station_facets = 0;  ///< facets seen by the stations, for one channel
    std::uint64_t bytes = 0;           ///< for solid and kernel
};

/// More facets than this are refused: a pipe of 20,000 is already finer than any survey can tell.
inline constexpr std::uint64_t most_facets = 2'000'000;
/// An hour of one core.
inline constexpr std::uint64_t most_station_facets = 1'000'000'000'000;
inline constexpr std::uint64_t most_bytes = std::uint64_t{1} << 29;

/// The price of one channel of a body at so many stations; 0 stations for a drawing. Types without a solid
/// cost what their few faces do, an endless pipe of the classic formulas what a sheet does.
BodyPrice body_price(const ModelBody& body, Formulas formulas, std::int64_t stations);

/// Raises a Fault that tells the number, its limit and the way out when a price is above what is granted, and
/// which body it is.
void require_affordable(const BodyPrice& price);

/// About how long a channel of the body takes, in the units of core/pacer.h.
double work_of(const BodyPrice& price, std::int64_t stations);

/// The same for the channels that are wanted of a body of the workspace, both in one pass where it has one; 0
/// for a body that is off or refused.
double work_of_body(const Workspace& workspace, const ModelBody& body, bool mag, bool grav);

/// The same for all responses that are out of date.
double work_ahead(const Workspace& workspace);

/// Bytes that the responses which are out of date will take beside those that are held, with what the threads
/// need for them.
std::uint64_t memory_ahead(const Workspace& workspace);

}  // namespace anomalis::forward
