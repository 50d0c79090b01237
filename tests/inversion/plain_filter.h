#pragma once

#include <vector>

namespace anomalis {

/// The filter rule as one would write it down first: one station after the other, tap by tap, in singles.
inline std::vector<float> plain_filter(const std::vector<float>& in, const std::vector<float>& c, long step,
                                       bool odd, bool subtract) {
    const long n = static_cast<long>(in.size());
    std::vector<float> out(in.size());
    for (long i = 0; i < n; ++i) {
        float sum = c[0] * in[static_cast<std::size_t>(i)];
        for (long j = 1; j < static_cast<long>(c.size()); ++j) {
            const long left = i - j * step;
            const long right = i + j * step;
            const float l = left < 0 ? in.front() : in[static_cast<std::size_t>(left)];
            const float r = right >= n ? in.back() : in[static_cast<std::size_t>(right)];
            const float pair = odd ? r - l : l + r;
            sum = sum + pair * c[static_cast<std::size_t>(j)];
        }
        out[static_cast<std::size_t>(i)] = subtract ? in[static_cast<std::size_t>(i)] - sum : sum;
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

}  // namespace anomalis
