// Long random walks over the history of changes: walk_history SEEDS ACTIONS. Ends with 1 at the first step
// whose rows are not those of a fresh load.

#include <cstdio>
#include <cstdlib>

#include "flow/history_walk.h"

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    int compared = 0;
    for (int seed = 1; seed <= std::atoi(argv[1]); ++seed) {
        anomalis::flow::HistoryWalk walk(static_cast<std::uint32_t>(seed));
        const std::string broken = walk.run(std::atoi(argv[2]));
        compared += walk.steps_compared();
        if (broken.empty()) continue;
        std::printf("seed %d: %s\n", seed, broken.c_str());
        return 1;
    }
    std::printf("%d steps compared\n", compared);
    return 0;
}
