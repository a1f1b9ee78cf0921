// What the generated remote handlers are written with.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "bridge/dispatcher.h"
#include "bridge/handle_registry.h"
#include "bridge/wire.h"
#include "tvAPIC.h"

namespace tvapic::bridge {

struct NameEntry {
    const char* name;
    Handler handler;
};
extern const NameEntry kNameTable[];
extern const std::size_t kNameTableSize;

// Functions that are not remotable read nothing and write nothing.
inline void EmptyHandler(ByteStream&) {}

inline void* AsHandle(std::uint64_t wire) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(wire)); }
inline std::uint64_t AsWire(void* handle) { return reinterpret_cast<std::uintptr_t>(handle); }

// Handle arguments: only 0 and handles the bridge gave out reach a function.
inline std::uint64_t Admit(std::uint64_t wire) { return HandleRegistry::Instance().Admit(wire); }
// Object results: remembered as they are sent.
inline std::uint64_t Remember(std::uint64_t wire) { return HandleRegistry::Instance().Remember(wire); }

// The empty vectors a handler passes for parameters that do not travel are
// its own: whatever a function filled into them is given back here.
template <class CV>
void ReleaseOwn(CV* v) {
    std::free(v->data);
}
inline void ReleaseOwn(StringVector_t* v) {
    for (std::uint64_t i = 0; i < v->size; ++i) std::free(v->data[i]);
    std::free(v->data);
}
inline void ReleaseOwn(ObjectReferenceVector_t* v) {
    for (std::uint64_t i = 0; i < v->size; ++i) {
        if (v->data[i]) IAPIObject_Release(v->data[i]);
    }
    std::free(v->data);
}

}  // namespace tvapic::bridge
