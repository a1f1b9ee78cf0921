// Checked mode's cost: the call frame's exports with checking on, paired with
// the same exports with checking off, in one process (the static twin lets
// the benchmark switch it between calls; the shared library reads it once,
// at load). Objects handed out are given back with IAPIObject_Release and
// vectors deleted with their _Delete, so that the checked calls also count
// them back.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "check/check.h"
#include "fast_host.h"
#include "paired.h"
#include "tvAPIC.h"

namespace {

constexpr int kCallsPerBlock = 1000;

void* Object() {
    static void* object = bench::NewFastObject();
    return object;
}

template <bool Checked, class Call>
auto Switched(Call call) {
    return [call] {
        tvapic::check::enabled = Checked;
        call();
    };
}

template <class Call>
void Cost(benchmark::State& state, Call call) {
    tvapic::check::Start();  // this thread is the host's: no finding
    bench::RunPaired(state, kCallsPerBlock, Switched<true>(call), Switched<false>(call));
    tvapic::check::enabled = false;
    if (bench::ReferenceCount(Object()) != 1) state.SkipWithError("a reference was not given back");
}

const int registered = [] {
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("checked/scalar_getter", [](benchmark::State& s) {
        Cost(s, [] { benchmark::DoNotOptimize(IDrawingObject_GetLayerNumber(Object())); });
    });
    RegisterBenchmark("checked/text_getter", [](benchmark::State& s) {
        Cost(s, [] {
            tvWChar* const name = ITavraDocument_GetName(Object());
            benchmark::DoNotOptimize(name);
            std::free(name);
        });
    });
    RegisterBenchmark("checked/object_getter", [](benchmark::State& s) {
        Cost(s, [] {
            void* const curve = IDrawingObject_GetCurve2D(Object());
            benchmark::DoNotOptimize(curve);
            IAPIObject_Release(curve);
        });
    });
    RegisterBenchmark("checked/out_parameters", [](benchmark::State& s) {
        Cost(s, [] {
            double x = 0, y = 0;
            benchmark::DoNotOptimize(ICurve2D_PointOn(Object(), 0.5, &x, &y));
            benchmark::DoNotOptimize(x + y);
        });
    });
    RegisterBenchmark("checked/vector_result", [](benchmark::State& s) {
        Cost(s, [] {
            DoubleVector_t* const points = ICurve2D_CalculatePolygon(Object(), 0.01);
            benchmark::DoNotOptimize(points);
            DoubleVector_Delete(points);
        });
    });
    return 0;
}();

}  // namespace
