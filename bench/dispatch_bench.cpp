// The name table: FindName over every name of the API, in a shuffled
// order, beside a linear scan of the same table.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "server/name_table.h"

namespace {

using tvapic::server::FindName;
using tvapic::server::kNameTable;
using tvapic::server::NameEntry;
using tvapic::server::kNameTableSize;

// The names as the server holds them after reading a request.
const std::vector<std::string>& Names() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (std::size_t i = 0; i < kNameTableSize; ++i) all.emplace_back(kNameTable[i].name);
        std::shuffle(all.begin(), all.end(), std::mt19937(20240607));
        return all;
    }();
    return names;
}

const NameEntry* LinearScan(const std::string& name) {
    for (std::size_t i = 0; i < kNameTableSize; ++i) {
        if (std::strcmp(kNameTable[i].name, name.c_str()) == 0) return &kNameTable[i];
    }
    return nullptr;
}

// Both lookups find every name, and find the same entry.
bool Agree() {
    for (std::size_t i = 0; i < Names().size(); i += 97) {
        const NameEntry* e = FindName(Names()[i]);
        if (!e || e != LinearScan(Names()[i])) return false;
    }
    return FindName("IDrawingObject_GetLayerNumber ") == nullptr;
}

template <const NameEntry* (*Lookup)(const std::string&)>
void EveryName(benchmark::State& state) {
    if (!Agree()) return state.SkipWithError("the lookups disagree");
    const std::vector<std::string>& names = Names();
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Lookup(names[next]));
        if (++next == names.size()) next = 0;
    }
    state.counters["names"] = static_cast<double>(names.size());
}

const NameEntry* FindByHash(const std::string& name) { return FindName(name); }

// One figure per name (a batch of lookups of it, timed together), then the
// median and 99th percentile over all names.
void PerName(benchmark::State& state) {
    constexpr int kBatch = 32;
    using Clock = std::chrono::steady_clock;
    const std::vector<std::string>& names = Names();
    FindName(names[0]);  // the table is built on first use
    std::vector<double> ns(names.size());
    for (auto _ : state) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            auto start = Clock::now();
            for (int k = 0; k < kBatch; ++k) benchmark::DoNotOptimize(FindName(names[i]));
            ns[i] = std::chrono::duration<double, std::nano>(Clock::now() - start).count() / kBatch;
        }
    }
    std::sort(ns.begin(), ns.end());
    state.counters["p50_ns"] = ns[ns.size() / 2];
    state.counters["p99_ns"] = ns[ns.size() * 99 / 100];
}

const int registered = [] {
    benchmark::RegisterBenchmark("dispatch/find_handler", EveryName<FindByHash>);
    benchmark::RegisterBenchmark("dispatch/linear_scan", EveryName<LinearScan>);
    benchmark::RegisterBenchmark("dispatch/find_handler_per_name", PerName)->Iterations(1);
    return 0;
}();

}  // namespace
