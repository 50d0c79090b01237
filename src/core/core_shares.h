#pragma once

#include <functional>
#include <optional>

#include "core/pacer.h"

// Numbered pieces of work, of many milliseconds each, on all cores while the caller serves who waits.
namespace anomalis {

/// What one core does of it.
class CoreShare {
  public:
    virtual ~CoreShare() = default;
    /// The number of a piece that nobody has begun; none: all are taken.
    virtual std::optional<int> next() = 0;
    /// Raises Stopped where the work is to be left.
    virtual Pacer& pacer() = 0;
};

struct SharedWork {
    int first = 0, last = 0;  ///< numbers of the pieces, without the last
    int cores = 0;            ///< 0: all there are
    std::function<void(CoreShare&)> core;
    std::function<bool()> leave;  ///< asked now and then by who waits; true: what is under way is left
};

/// Ends when all of it is done, or left: false. Who waits breathes by `pacer`, which may raise Stopped; so
/// may a failure of a core be raised. No core is at work afterwards. On a thread of the pool, or where the
/// system grants no thread, the caller does all of it.
bool share_among_cores(const SharedWork& work, Pacer& pacer);

}  // namespace anomalis
