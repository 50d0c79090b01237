// The normal matrix of a fit against Eigen's rank update of the same columns, in turns, by the time that a
// person waits: rows by columns, milliseconds, and how many times faster, on all cores and on one.

#include <Eigen/Dense>
#include <benchmark/benchmark.h>
#include <chrono>

#include "inversion/normal_matrix.h"

namespace anomalis {
namespace {

template <class Work>
double seconds_of(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void normal_matrix(benchmark::State& state) {
    const Eigen::Index rows = state.range(0), columns = state.range(1);
    const Eigen::MatrixXd matrix = Eigen::MatrixXd::Random(rows, columns);
    double eigen = 1e9, all = 1e9, one = 1e9;
    for (auto _ : state) {
        eigen = std::min(eigen, seconds_of([&] {
                             Eigen::MatrixXd normal = Eigen::MatrixXd::Zero(columns, columns);
                             normal.selfadjointView<Eigen::Lower>().rankUpdate(matrix.transpose());
                             benchmark::DoNotOptimize(normal.data());
                         }));
        all = std::min(
            all, seconds_of([&] { benchmark::DoNotOptimize(inversion::normal_matrix(matrix, no_pace())); }));
        one = std::min(one, seconds_of([&] {
                           benchmark::DoNotOptimize(inversion::normal_matrix(matrix, no_pace(), 1));
                       }));
    }
    state.counters["eigen_ms"] = eigen * 1e3;
    state.counters["all_cores_ms"] = all * 1e3;
    state.counters["times_faster"] = eigen / all;
    state.counters["on_one_core"] = eigen / one;
}
BENCHMARK(normal_matrix)
    ->Args({500, 20})
    ->Args({2000, 240})
    ->Args({2000, 960})
    ->Args({20000, 480})
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace anomalis
