#pragma once

#include <algorithm>
#include <vector>

namespace anomalis::filter {

/// The filter rule as one would write it down first: one station after the other, tap by tap, each sum formed
/// in doubles and stored in a single.
inline std::vector<float> plain_filter(const std::vector<float>& in, const std::vector<float>& c, long step,
                                       bool odd, bool subtract) {
    const long n = static_cast<long>(in.size());
    std::vector<float> out(in.size());
    for (long i = 0; i < n; ++i) {
        const auto at = [&](long k) {
            return static_cast<double>(in[static_cast<std::size_t>(std::clamp(k, 0L, n - 1))]);
        };
        const auto tap = [&](long j) { return static_cast<double>(c[static_cast<std::size_t>(j)]); };
        auto sum = static_cast<float>(tap(0) * at(i));
        for (long j = 1; j < static_cast<long>(c.size()); ++j) {
            const double pair =
                odd ? at(i + j * step) - at(i - j * step) : at(i - j * step) + at(i + j * step);
            sum = static_cast<float>(static_cast<double>(sum) + pair * tap(j));
        }
        out[static_cast<std::size_t>(i)] =
            subtract ? static_cast<float>(at(i) - static_cast<double>(sum)) : sum;
    }
    return out;
}

/// A row with structure at every wavelength; the same on every machine.
inline std::vector<float> rough_row(int stations, float level = 0) {
    std::vector<float> row;
    unsigned state = 12345;
    for (int i = 0; i < stations; ++i) {
        state = state * 1664525U + 1013904223U;
        row.push_back(level + static_cast<float>(state >> 8) / 100000.0F - 80.0F);
    }
    return row;
}

}  // namespace anomalis::filter
