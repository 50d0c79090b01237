// The filter chain of one stage against a hand-written dot product of the same length at every station, in
// the same vectors.

#include <benchmark/benchmark.h>
#include <random>
#include <vector>

#include "allocations.h"
#include "core/faults.h"
#include "filter/filters.h"
#include "timing.h"
#include "vector/vector_levels.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace anomalis {
namespace {

constexpr int stations = 8193;

void fill(std::span<float> row) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> noise(-100, 100);
    for (float& value : row) value = noise(random);
}

/// Four sums side by side hide the latency of the additions.
float dot_plain(const float* x, const float* taps, int count) {
    float sum[4] = {};
    int i = 0;
    for (; i + 4 <= count; i += 4)
        for (int k = 0; k < 4; ++k) sum[k] += x[i + k] * taps[i + k];
    for (; i < count; ++i) sum[0] += x[i] * taps[i];
    return (sum[0] + sum[1]) + (sum[2] + sum[3]);
}

#if defined(__x86_64__)
[[gnu::target("avx2,fma")]] float dot_avx2(const float* x, const float* taps, int count) {
    __m256 a = _mm256_setzero_ps(), b = a, c = a, d = a;
    int i = 0;
    for (; i + 32 <= count; i += 32) {
        a = _mm256_fmadd_ps(_mm256_loadu_ps(x + i), _mm256_loadu_ps(taps + i), a);
        b = _mm256_fmadd_ps(_mm256_loadu_ps(x + i + 8), _mm256_loadu_ps(taps + i + 8), b);
        c = _mm256_fmadd_ps(_mm256_loadu_ps(x + i + 16), _mm256_loadu_ps(taps + i + 16), c);
        d = _mm256_fmadd_ps(_mm256_loadu_ps(x + i + 24), _mm256_loadu_ps(taps + i + 24), d);
    }
    for (; i + 8 <= count; i += 8) a = _mm256_fmadd_ps(_mm256_loadu_ps(x + i), _mm256_loadu_ps(taps + i), a);
    a = _mm256_add_ps(_mm256_add_ps(a, b), _mm256_add_ps(c, d));
    __m128 half = _mm_add_ps(_mm256_castps256_ps128(a), _mm256_extractf128_ps(a, 1));
    half = _mm_add_ps(half, _mm_movehl_ps(half, half));
    float sum = _mm_cvtss_f32(half) + _mm_cvtss_f32(_mm_shuffle_ps(half, half, 1));
    for (; i < count; ++i) sum += x[i] * taps[i];
    return sum;
}

[[gnu::target("avx512f")]] float dot_avx512(const float* x, const float* taps, int count) {
    __m512 a = _mm512_setzero_ps(), b = a, c = a, d = a;
    int i = 0;
    for (; i + 64 <= count; i += 64) {
        a = _mm512_fmadd_ps(_mm512_loadu_ps(x + i), _mm512_loadu_ps(taps + i), a);
        b = _mm512_fmadd_ps(_mm512_loadu_ps(x + i + 16), _mm512_loadu_ps(taps + i + 16), b);
        c = _mm512_fmadd_ps(_mm512_loadu_ps(x + i + 32), _mm512_loadu_ps(taps + i + 32), c);
        d = _mm512_fmadd_ps(_mm512_loadu_ps(x + i + 48), _mm512_loadu_ps(taps + i + 48), d);
    }
    for (; i < count; i += 16) {
        const int left = std::min(count - i, 16);
        const auto mask = static_cast<__mmask16>((1U << left) - 1U);
        a = _mm512_fmadd_ps(_mm512_maskz_loadu_ps(mask, x + i), _mm512_maskz_loadu_ps(mask, taps + i), a);
    }
    float lanes[16];
    _mm512_storeu_ps(lanes, _mm512_add_ps(_mm512_add_ps(a, b), _mm512_add_ps(c, d)));
    float sum[4] = {};
    for (int k = 0; k < 16; ++k) sum[k % 4] += lanes[k];
    return (sum[0] + sum[1]) + (sum[2] + sum[3]);
}
#endif

using Dot = float (*)(const float*, const float*, int);

Dot widest_dot() {
#if defined(__x86_64__)
    if (vector::widest_vector_level() == vector::VectorLevel::avx512) return dot_avx512;
    if (vector::widest_vector_level() == vector::VectorLevel::avx2 && __builtin_cpu_supports("fma"))
        return dot_avx2;
#endif
    return dot_plain;
}

/// The same three passes as dot products over a row whose ends are extended already.
class DotProducts {
  public:
    explicit DotProducts(int half_width)
        : taps_(static_cast<std::size_t>(2 * half_width + 1), 0.01F),
          row_(static_cast<std::size_t>(stations + 2 * half_width)),
          out_(stations) {
        fill(row_);
    }
    void run(int passes) {
        const Dot dot = widest_dot();
        const int count = static_cast<int>(taps_.size());
        for (int pass = 0; pass < passes; ++pass) {
            for (std::size_t i = 0; i < out_.size(); ++i) out_[i] = dot(row_.data() + i, taps_.data(), count);
            benchmark::DoNotOptimize(out_.data());
            benchmark::ClobberMemory();
        }
    }

  private:
    std::vector<float> taps_, row_, out_;
};

Workspace workspace_with(int half_width) {
    Workspace w;
    w.station_count = stations;
    w.first_station = 1;
    w.last_station = stations;
    w.mag.base = 0;
    w.mag.data.assign(stations);
    fill(w.mag.data.row(row_raw, stage_calculated));
    w.processing.smooth_filter_type = 2;
    w.processing.smooth_filter_width = w.processing.residual_filter_width = w.processing.vg_filter_width =
        half_width;
    return w;
}

/// Smoothing, residual and gradient pass with one half-width, base level and copies included.
void chain_of_one_stage(benchmark::State& state) {
    const auto half_width = static_cast<int>(state.range(0));
    Faults faults;
    Workspace w = workspace_with(half_width);
    DotProducts reference(half_width);
    BestTime chain, dots;
    long allocations = -1;
    for (auto _ : state) {
        const long before = allocation_count();
        const double seconds = chain.take([&] {
            w.mag.calculated_filtered = false;
            filter::filter_data(w, 0, stage_calculated, w.mag.data, faults);
        });
        allocations = allocations < 0 ? 0 : allocations + allocation_count() - before;
        dots.take([&] { reference.run(3); });
        state.SetIterationTime(seconds);
    }
    if (!faults.empty()) state.SkipWithError("the chain failed");
    state.counters["ratio_to_dot_products"] = chain.seconds() / dots.seconds();
    state.counters["dot_products_us"] = dots.seconds() * 1e6;
    state.counters["chain_us"] = chain.seconds() * 1e6;
    state.counters["allocations_after_first"] = static_cast<double>(allocations);
}
BENCHMARK(chain_of_one_stage)
    ->ArgName("half_width")
    ->Arg(5)
    ->Arg(50)
    ->Arg(500)
    ->Iterations(300)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

/// The cost by half-width on a short line, far beyond its length too.
void widest_kernels(benchmark::State& state) {
    Faults faults;
    Workspace w = workspace_with(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        w.mag.calculated_filtered = false;
        filter::filter_data(w, 0, stage_calculated, w.mag.data, faults);
    }
    state.counters["taps_MB"] = static_cast<double>(w.filter_scratch.coefficients.capacity()) * 4e-6;
}
BENCHMARK(widest_kernels)
    ->ArgName("half_width")
    ->Arg(stations)
    ->Arg(10 * stations)
    ->Arg(2147483647)
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);

/// One pass over a row of its own.
class OnePass {
  public:
    OnePass(int code, int half_width, int count) {
        data_.assign(count);
        fill(data_.row(row_raw, stage_observed));
        pass_.filter_code = code;
        pass_.half_width = half_width;
        pass_.station_count = count;
    }
    void run() { filter::apply_filter(pass_, data_, scratch_, faults_); }
    bool failed() const { return !faults_.empty(); }
    double scratch_bytes_a_station() const {
        const std::size_t values = scratch_.padded.capacity() + scratch_.sums.capacity() +
                                   scratch_.boxcar.capacity() + scratch_.phase.capacity() +
                                   scratch_.phase_sums.capacity() + scratch_.wide_coefficients.capacity();
        return 8 * static_cast<double>(values) / pass_.station_count;
    }

  private:
    filter::FilterPass pass_;
    ChannelTable data_;
    FilterScratch scratch_;
    Faults faults_;
};

/// A pass over a line of 2,000,000 stations by filter code and half-width, beside the widest kernel that is
/// always added tap by tap. What adding all taps would cost is reckoned from that one, which has its price
/// per tap.
void pass_over_a_long_line(benchmark::State& state) {
    constexpr int many = 2000000;
    const auto code = static_cast<int>(state.range(0)), half_width = static_cast<int>(state.range(1));
    const int narrow = code < filter::filter_smoothing ? 2048 : 256;
    OnePass pass(code, half_width, many), beside(code, narrow, many);
    BestTime own, other;
    for (auto _ : state) {
        state.SetIterationTime(own.take([&] { pass.run(); }));
        other.take([&] { beside.run(); });
    }
    if (pass.failed() || beside.failed()) state.SkipWithError("the pass failed");
    state.counters["pass_ms"] = own.seconds() * 1e3;
    state.counters["ratio_to_widest_narrow"] = own.seconds() / other.seconds();
    state.counters["ratio_to_tap_by_tap"] = own.seconds() / (other.seconds() * half_width / narrow);
    state.counters["scratch_bytes_a_station"] = pass.scratch_bytes_a_station();
}
BENCHMARK(pass_over_a_long_line)
    ->ArgNames({"code", "half_width"})
    ->ArgsProduct({{100, 101, 102, 103, 104, 2, 3}, {16, 256, 257, 2049, 10000, 1000000}})
    ->Iterations(2)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
