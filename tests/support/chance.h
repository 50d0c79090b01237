#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>

namespace anomalis {

/// The number after which tests of chance go: ANOMALIS_SEED of the environment, else 1.
inline std::uint32_t seed_of_chance() {
    const char* given = std::getenv("ANOMALIS_SEED");
    return given && *given ? static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10)) : 1;
}

/// How many cases a test of chance tries: ANOMALIS_CASES of the environment, else `usual`.
inline int cases_of_chance(int usual) {
    const char* given = std::getenv("ANOMALIS_CASES");
    return given && *given ? std::atoi(given) : usual;
}

/// Numbers that follow from a seed, the same on every machine.
class Chance {
  public:
    Chance(std::uint32_t seed, std::uint32_t number) {
        std::seed_seq both{seed, number};
        random_.seed(both);
    }

    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    bool one_in(int count) { return below(count) == 0; }
    double between(double low, double high) { return low + (high - low) * random_() / 4294967296.0; }
    std::uint32_t bits() { return random_(); }

  private:
    std::mt19937 random_;
};

}  // namespace anomalis
