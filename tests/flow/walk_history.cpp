// Long random walks over the history of changes: walk_history WALKS|SECONDSs ACTIONS. Ends with 1 at the
// first step whose rows are not those of a fresh load.

#include <cstdio>
#include <cstdlib>

#include "flow/history_walk.h"
#include "support/chance.h"

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    int compared = 0;
    const anomalis::Budget budget(argv[1]);
    for (int done = 0; budget.allows(done); ++done) {
        const std::uint32_t seed = anomalis::seed_of_chance() + static_cast<std::uint32_t>(done);
        anomalis::flow::HistoryWalk walk(seed);
        const std::string broken = walk.run(std::atoi(argv[2]));
        compared += walk.steps_compared();
        if (broken.empty()) continue;
        std::printf("seed %u: %s\n", seed, broken.c_str());
        return 1;
    }
    std::printf("%d steps compared\n", compared);
    return 0;
}
