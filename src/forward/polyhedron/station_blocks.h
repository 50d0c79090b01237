#pragma once

#include <cstddef>
#include <functional>

namespace anomalis::forward {

/// How many threads a job is worth: one below a millisecond, else one for each half millisecond, no more than
/// the processor has. `asked` above 0 overrules this. Never more than there are blocks.
int worker_count(double estimated_nanoseconds, std::size_t blocks, int asked);

/// Calls work(worker, block) once for every block, spread over `workers` threads of which the caller is one.
/// `worker` counts from 0 and tells apart what runs at one time, for scratch memory. `work` must not throw.
/// Fewer threads are used when the system grants no more.
void for_each_block(std::size_t blocks, int workers, const std::function<void(int, std::size_t)>& work);

}  // namespace anomalis::forward
