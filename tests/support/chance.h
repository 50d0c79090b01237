#pragma once

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <random>
#include <string_view>

namespace anomalis {

/// The number after which tests of chance go: ANOMALIS_SEED of the environment, else 1.
inline std::uint32_t seed_of_chance() {
    const char* given = std::getenv("ANOMALIS_SEED");
    return given && *given ? static_cast<std::uint32_t>(std::strtoul(given, nullptr, 10)) : 1;
}

/// How much a test of chance does: so many cases ("300"), or what fits into so many seconds of processor time
/// ("60s"), from now on.
class Budget {
  public:
    explicit Budget(const char* text)
        : amount_(std::atof(text)), in_seconds_(std::string_view(text).ends_with('s')) {}
    /// ANOMALIS_CASES of the environment, else `usual`.
    static Budget of_environment(const char* usual) {
        const char* given = std::getenv("ANOMALIS_CASES");
        return Budget(given && *given ? given : usual);
    }

    bool allows(long done) const {
        if (!in_seconds_) return static_cast<double>(done) < amount_;
        return static_cast<double>(std::clock() - begin_) < amount_ * static_cast<double>(CLOCKS_PER_SEC);
    }

  private:
    double amount_;
    bool in_seconds_;
    std::clock_t begin_ = std::clock();
};

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
