#include "filter/convolution.h"

#include <gtest/gtest.h>

#include "filter/plain_filter.h"

namespace anomalis::filter {

namespace {

std::vector<float> run_at(vector::VectorLevel level, const std::vector<float>& in,
                          const std::vector<float>& taps, bool odd, bool subtract) {
    const std::size_t margin = taps.size() - 1;
    const std::vector<double> wide(taps.begin(), taps.end());
    std::vector<double> padded(margin, in.front());
    padded.insert(padded.end(), in.begin(), in.end());
    padded.insert(padded.end(), margin, in.back());
    std::vector<float> out(in.size());
    Convolution pass;
    pass.input = padded.data() + margin;
    pass.output = out.data();
    pass.stations = static_cast<int>(in.size());
    pass.coefficients = wide.data();
    pass.near_taps = pass.stored_taps = static_cast<int>(margin);
    pass.odd = odd;
    pass.subtract = subtract;
    convolve_at(level)(pass);
    return out;
}

}  // namespace

TEST(Convolution, every_vector_level_gives_the_bits_of_the_plain_loop) {
    const std::vector<float> taps{0.7F, -0.123F, 0.0456F, 0.00789F, -0.3F, 0.21F};
    for (const vector::VectorLevel level :
         {vector::VectorLevel::baseline, vector::VectorLevel::avx2, vector::VectorLevel::avx512}) {
        if (level > vector::widest_vector_level()) continue;
        for (const int stations : {1, 2, 7, 16, 33, 129, 300}) {
            const std::vector<float> row = rough_row(stations, 56000);
            for (const bool odd : {false, true})
                for (const bool subtract : {false, true})
                    EXPECT_EQ(run_at(level, row, taps, odd, subtract),
                              plain_filter(row, taps, 1, odd, subtract))
                        << vector::vector_level_name(level) << " " << stations;
        }
    }
}

}  // namespace anomalis::filter
