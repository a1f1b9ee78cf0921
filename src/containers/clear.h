// The clear operations of the vector families, shared by the exported
// `_Clear` / `_Delete` members and by the converters' refill.
#pragma once


#include "core/heap.h"
#include "tvAPIC.h"

namespace tvapic::containers {

// Plain families: the block goes, the header stays with no storage at all.
template <class CV>
void ClearPlain(CV* v) {
    if (!v) return;
    heap::Free(v->data);
    v->data = nullptr;
    v->size = 0;
}

// Families that own their elements: each element is released in ascending
// order, then the block. `data` keeps the freed block's address; a second
// clear of the same vector would free it again, so owning vectors are deleted
// without being cleared first.
template <class CV, class ReleaseElement>
void ClearOwning(CV* v, ReleaseElement release) {
    if (!v) return;
    for (std::uint64_t i = 0; i < v->size; ++i) release(v->data[i]);
    heap::Free(v->data);
    v->size = 0;
}

inline void Clear(StringVector_t* v) {
    ClearOwning(v, [](tvWChar* s) { heap::Free(s); });
}

template <class CV>
void Clear(CV* v) {
    ClearPlain(v);
}

}  // namespace tvapic::containers
