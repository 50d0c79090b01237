#pragma once

namespace anomalis {

/// Allocations of this benchmark program so far; bench/allocations.cpp counts them.
long allocation_count();

}  // namespace anomalis
