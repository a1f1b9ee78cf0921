// The vector converters on 100,000 elements, argument (C vector -> host
// sequence) and result (host sequence -> new C vector), each paired with
// the least a hand-written conversion must do: an allocation and a memcpy for
// doubles; a loop of query and AddRef for objects.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "containers/convert.h"
#include "fast_host.h"
#include "paired.h"
#include "tvAPIC.h"
#include "tvapi/drawing.h"

namespace {

using tvapic::containers::NewVector;
using tvapic::containers::ToHost;
using Drawing = tvapi::SmartPtr<tvapi::IDrawingObject>;

constexpr std::size_t kElements = 100000;

template <class I>
I* QueryByHand(void* handle) {
    char iid[37];
    std::memcpy(iid, tvapi::IAPIObjectIID<I>::text, sizeof iid);
    return static_cast<I*>(static_cast<tvapi::IAPIObject*>(handle)->QueryInterface(iid));
}

// The caller's C vectors and the host's sequences, made once. The objects
// are distinct, as the elements of a real list are.
struct Inputs {
    DoubleVector_t* doubles = DoubleVector_Create(kElements);
    std::vector<double> host_doubles;
    ObjectReferenceVector_t* objects = ObjectReferenceVector_Create(kElements);
    std::vector<Drawing> host_objects;

    Inputs() {
        for (std::size_t i = 0; i < kElements; ++i) {
            doubles->data[i] = 0.5 * static_cast<double>(i);
            objects->data[i] = bench::NewFastObject();
            host_objects.emplace_back(QueryByHand<tvapi::IDrawingObject>(objects->data[i]));
        }
        host_doubles.assign(doubles->data, doubles->data + kElements);
    }
    // Every element back at the one reference it was made with (plus the
    // host sequence's own).
    bool Balanced() const {
        for (std::size_t i = 0; i < kElements; ++i) {
            if (bench::ReferenceCount(objects->data[i]) != 2) return false;
        }
        return true;
    }
};

const Inputs& In() {
    static const Inputs inputs;
    return inputs;
}

// The caller's object vector, with each element's reference given back, as
// its owner does when done with it.
void ReleaseElements(ObjectReferenceVector_t* v) {
    for (std::uint64_t i = 0; i < v->size; ++i) static_cast<tvapi::IAPIObject*>(v->data[i])->Release();
    ObjectReferenceVector_Delete(v);
}

void DoubleArgumentConverter() {
    std::vector<double> host = ToHost<double>(In().doubles);
    benchmark::DoNotOptimize(host.data());
}

void DoubleArgumentByHand() {
    const DoubleVector_t* c = In().doubles;
    std::unique_ptr<double[]> host(new double[c->size]);
    std::memcpy(host.get(), c->data, c->size * sizeof(double));
    benchmark::DoNotOptimize(host.get());
}

void DoubleResultConverter() {
    DoubleVector_t* const c = NewVector<DoubleVector_t>(In().host_doubles);
    benchmark::DoNotOptimize(c);
    DoubleVector_Delete(c);
}

void DoubleResultByHand() {
    const std::vector<double>& host = In().host_doubles;
    auto* const c = new DoubleVector_t{host.size(), static_cast<double*>(std::malloc(host.size() * sizeof(double)))};
    std::memcpy(c->data, host.data(), host.size() * sizeof(double));
    benchmark::DoNotOptimize(c);
    DoubleVector_Delete(c);
}

// Held for the call, given back after it, as an argument's references are.
void ObjectArgumentConverter() {
    std::vector<Drawing> host = ToHost<Drawing>(In().objects);
    benchmark::DoNotOptimize(host.data());
}

void ObjectArgumentByHand() {
    const ObjectReferenceVector_t* c = In().objects;
    std::unique_ptr<tvapi::IDrawingObject*[]> host(new tvapi::IDrawingObject*[c->size]);
    for (std::uint64_t i = 0; i < c->size; ++i) {
        tvapi::IDrawingObject* p = QueryByHand<tvapi::IDrawingObject>(c->data[i]);
        if (p) p->AddRef();
        host[i] = p;
    }
    benchmark::DoNotOptimize(host.get());
    for (std::uint64_t i = 0; i < c->size; ++i) {
        if (host[i]) host[i]->Release();
    }
}

void ObjectResultConverter() {
    ObjectReferenceVector_t* const c = NewVector<ObjectReferenceVector_t>(In().host_objects);
    benchmark::DoNotOptimize(c);
    ReleaseElements(c);
}

void ObjectResultByHand() {
    const std::vector<Drawing>& host = In().host_objects;
    auto* const c = new ObjectReferenceVector_t{host.size(), static_cast<void**>(std::malloc(host.size() * sizeof(void*)))};
    for (std::size_t i = 0; i < host.size(); ++i) {
        tvapi::IDrawingObject* p = host[i].get();
        p->AddRef();
        c->data[i] = QueryByHand<tvapi::IAPIObject>(p);
    }
    benchmark::DoNotOptimize(c);
    ReleaseElements(c);
}

template <void (*Converter)(), void (*ByHand)()>
void Conversion(benchmark::State& state) {
    In();  // made before anything is timed
    bench::RunPaired(state, 1, Converter, ByHand);
    if (!In().Balanced()) state.SkipWithError("a reference was not given back");
}

const int registered = [] {
    using benchmark::RegisterBenchmark;
    RegisterBenchmark("convert/double_argument", Conversion<DoubleArgumentConverter, DoubleArgumentByHand>);
    RegisterBenchmark("convert/double_result", Conversion<DoubleResultConverter, DoubleResultByHand>);
    RegisterBenchmark("convert/object_argument", Conversion<ObjectArgumentConverter, ObjectArgumentByHand>);
    RegisterBenchmark("convert/object_result", Conversion<ObjectResultConverter, ObjectResultByHand>);
    return 0;
}();

}  // namespace
