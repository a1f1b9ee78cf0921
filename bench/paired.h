// A measured path and its baseline timed in alternating blocks within one
// benchmark, so that both see the same machine: other work on a shared
// machine slows both alike, and a block that was interrupted spoils one
// pair only, which the median leaves out.
//
// The benchmarks hand benchmark::DoNotOptimize const values only: its
// read-write form (a non-const lvalue) gave back wrong pointers with GCC 12
// under the sanitizers when the value was used afterwards.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace bench {

// Per iteration, one block of `calls` runs of each; odd iterations run the
// baseline first. Reports per run the median block time of each path
// ("measured_ns", "baseline_ns") and the median of the pairs' ratios ("ratio").
template <class Measured, class Baseline>
void RunPaired(benchmark::State& state, int calls, Measured measured, Baseline baseline) {
    using Clock = std::chrono::steady_clock;
    auto block = [calls](auto& run) {
        auto start = Clock::now();
        for (int i = 0; i < calls; ++i) run();
        return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / calls;
    };
    std::vector<double> m, b, ratio;
    bool baseline_first = false;
    for (auto _ : state) {
        double b_ns = baseline_first ? block(baseline) : 0;
        double m_ns = block(measured);
        if (!baseline_first) b_ns = block(baseline);
        baseline_first = !baseline_first;
        m.push_back(m_ns);
        b.push_back(b_ns);
        ratio.push_back(m_ns / b_ns);
    }
    auto median = [](std::vector<double>& v) {
        std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
        return v[v.size() / 2];
    };
    if (ratio.empty()) return;
    state.counters["measured_ns"] = median(m);
    state.counters["baseline_ns"] = median(b);
    state.counters["ratio"] = median(ratio);
}

}  // namespace bench
