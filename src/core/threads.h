#pragma once

namespace anomalis {

/// How many threads long work may take: as many as the machine has, or as `limit_threads` has it. 1 or more.
int thread_count();

/// From now on at most so many, 0 for as many as the machine has. Work under way keeps what it took. Results
/// do not hang on it.
void limit_threads(int most);

}  // namespace anomalis
