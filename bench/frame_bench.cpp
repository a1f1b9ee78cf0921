// The call frame: five exports of different shapes through the shared
// library, each paired with the same host calls made by hand
// (hand_calls.cpp), and one bare virtual call for reference. All of them
// reach the same cheap host operation (fast_host.cpp).
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "fast_host.h"
#include "hand_calls.h"
#include "paired.h"
#include "tvAPIC.h"
#include "tvapi/drawing.h"

namespace {

constexpr int kCallsPerBlock = 1000;

// One host object for the whole run; every benchmark must leave its
// reference count as it found it.
void* Object() {
    static void* object = bench::NewFastObject();
    return object;
}

void CheckBalanced(benchmark::State& state) {
    if (bench::ReferenceCount(Object()) != 1) state.SkipWithError("a reference was not given back");
}

template <class Call>
auto ScalarGetter(Call call) {
    return [call] { benchmark::DoNotOptimize(call(Object())); };
}

template <class Call>
auto TextGetter(Call call) {
    return [call] {
        tvWChar* const name = call(Object());
        benchmark::DoNotOptimize(name);
        std::free(name);
    };
}

template <class Call>
auto ObjectGetter(Call call) {
    return [call] {
        void* const curve = call(Object());
        benchmark::DoNotOptimize(curve);
        static_cast<tvapi::IAPIObject*>(curve)->Release();
    };
}

template <class Call>
auto OutParameters(Call call) {
    return [call] {
        double x = 0, y = 0;
        benchmark::DoNotOptimize(call(Object(), 0.5, &x, &y));
        benchmark::DoNotOptimize(x + y);
    };
}

template <class Call>
auto VectorResult(Call call) {
    return [call] {
        DoubleVector_t* const points = call(Object(), 0.01);
        benchmark::DoNotOptimize(points);
        DoubleVector_Delete(points);
    };
}

// Both paths reach the host and answer alike before they are timed.
bool SameAnswers() {
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    bool points = ICurve2D_PointOn(Object(), 0.5, &x1, &y1) && bench::hand::PointOn(Object(), 0.5, &x2, &y2) &&
                  x1 == bench::kPointX && y1 == bench::kPointY && x2 == x1 && y2 == y1;
    DoubleVector_t* polygon = ICurve2D_CalculatePolygon(Object(), 0.01);
    bool vector = polygon && polygon->size == bench::kPolygonValues;
    DoubleVector_Delete(polygon);
    return points && vector && IDrawingObject_GetLayerNumber(Object()) == bench::kLayerNumber &&
           bench::hand::GetLayerNumber(Object()) == bench::kLayerNumber;
}

template <class Measured, class Baseline>
void Frame(benchmark::State& state, Measured measured, Baseline baseline) {
    if (!SameAnswers()) return state.SkipWithError("the host was not reached");
    bench::RunPaired(state, kCallsPerBlock, measured, baseline);
    CheckBalanced(state);
}

// The host operation alone, on an interface pointer queried beforehand (an
// opaque pointer: the call stays virtual), paired with the scalar getter export.
void BareVirtualCall(benchmark::State& state) {
    auto* base = static_cast<tvapi::IAPIObject*>(Object());
    auto* drawing = static_cast<tvapi::IDrawingObject*>(base->QueryInterface(tvapi::IAPIObjectIID<tvapi::IDrawingObject>::text));
    auto bare = [drawing] { benchmark::DoNotOptimize(drawing->GetLayerNumber()); };
    Frame(state, ScalarGetter(IDrawingObject_GetLayerNumber), bare);
}

const int registered = [] {
    using benchmark::RegisterBenchmark;
    namespace hand = bench::hand;
    RegisterBenchmark("frame/scalar_getter", [](benchmark::State& s) {
        Frame(s, ScalarGetter(IDrawingObject_GetLayerNumber), ScalarGetter(hand::GetLayerNumber));
    });
    RegisterBenchmark("frame/text_getter", [](benchmark::State& s) {
        Frame(s, TextGetter(ITavraDocument_GetName), TextGetter(hand::GetName));
    });
    RegisterBenchmark("frame/object_getter", [](benchmark::State& s) {
        Frame(s, ObjectGetter(IDrawingObject_GetCurve2D), ObjectGetter(hand::GetCurve2D));
    });
    RegisterBenchmark("frame/out_parameters", [](benchmark::State& s) {
        Frame(s, OutParameters(ICurve2D_PointOn), OutParameters(hand::PointOn));
    });
    RegisterBenchmark("frame/vector_result", [](benchmark::State& s) {
        Frame(s, VectorResult(ICurve2D_CalculatePolygon), VectorResult(hand::CalculatePolygon));
    });
    RegisterBenchmark("frame/bare_virtual_call", BareVirtualCall);
    return 0;
}();

}  // namespace

BENCHMARK_MAIN();
